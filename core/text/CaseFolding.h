// Finding text whatever its case.
#pragma once

#include <string>
#include <string_view>

namespace quillmark {

/// Brings texts that differ only in case, or in how their accents are encoded, into one form, in
/// which one can be looked for in the other. Immutable once made; callable from any thread.
class CaseFolding {
public:
    /// By the rules of `locale` (an ICU locale id such as "tr_TR"), or of the user's, taken from
    /// the environment, when it is empty. Only Turkish and Azerbaijani differ from the others: with
    /// and without a dot, i is two letters there.
    explicit CaseFolding(const std::string& locale = {});

    /// Full case folding (Unicode 15, section 3.13), normalised to NFC. Valid UTF-8 whenever `text`
    /// is.
    [[nodiscard]] std::string folded(std::string_view text) const;

private:
    bool m_dottedAndDotless;
};

} // namespace quillmark
