// The order in which people expect names: by language, and with numbers by their value.
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace quillmark {

/// Compares names as file managers do: by the rules of a language, digits by numeric value.
/// Immutable once made; `compare` and `sortKey` may be called from any thread.
class Collator {
public:
    /// A collator for `locale` (an ICU locale id such as "sv_SE"), or for the user's locale, taken
    /// from the environment, when it is empty. An unknown locale gives the root order.
    explicit Collator(const std::string& locale = {});
    ~Collator();
    Collator(const Collator&) = delete;
    Collator& operator=(const Collator&) = delete;
    Collator(Collator&&) = delete;
    Collator& operator=(Collator&&) = delete;

    /// Negative, zero or positive as `left` comes before, with or after `right`.
    [[nodiscard]] int compare(std::string_view left, std::string_view right) const;

    /// Bytes that compare, as plain strings, in the order of `compare`; for sorting long lists.
    [[nodiscard]] std::string sortKey(std::string_view text) const;

private:
    struct Implementation;
    std::unique_ptr<Implementation> m_implementation;
};

} // namespace quillmark
