// Strings of a font by name identifier, as NameTable.h reads them.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quillmark {

/// Strings by name identifier, in the order of the identifiers and not limited to the cases of
/// NameID. A font has about a dozen, and thousands of fonts are read at a time: so they lie in a
/// row and not in a tree.
class NameStrings {
public:
    using value_type = std::pair<std::uint16_t, std::string>;
    using iterator = std::vector<value_type>::iterator;
    using const_iterator = std::vector<value_type>::const_iterator;

    NameStrings() = default;
    NameStrings(std::initializer_list<value_type> strings);

    /// Adds a string unless the identifier has one. Quick when added in order.
    void add(std::uint16_t id, std::string text);

    [[nodiscard]] iterator find(std::uint16_t id);
    [[nodiscard]] const_iterator find(std::uint16_t id) const;
    [[nodiscard]] iterator begin() { return m_strings.begin(); }
    [[nodiscard]] iterator end() { return m_strings.end(); }
    [[nodiscard]] const_iterator begin() const { return m_strings.begin(); }
    [[nodiscard]] const_iterator end() const { return m_strings.end(); }
    [[nodiscard]] std::size_t size() const { return m_strings.size(); }
    [[nodiscard]] bool empty() const { return m_strings.empty(); }

    bool operator==(const NameStrings&) const = default;

private:
    std::vector<value_type> m_strings;
};

} // namespace quillmark
