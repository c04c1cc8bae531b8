#include "fontfile/NameStrings.h"

#include <algorithm>
#include <utility>

namespace quillmark {

NameStrings::NameStrings(std::initializer_list<value_type> strings)
{
    for (const auto& [id, text] : strings)
        add(id, text);
}

void NameStrings::add(std::uint16_t id, std::string text)
{
    constexpr std::size_t usualCount = 16;
    if (m_strings.empty()) m_strings.reserve(usualCount);
    if (m_strings.empty() || m_strings.back().first < id) {
        m_strings.emplace_back(id, std::move(text));
        return;
    }
    // Never the end: the last identifier is not less.
    const auto place = std::ranges::lower_bound(m_strings, id, {}, &value_type::first);
    if (place->first != id) m_strings.emplace(place, id, std::move(text));
}

NameStrings::iterator NameStrings::find(std::uint16_t id)
{
    const auto found = std::ranges::lower_bound(m_strings, id, {}, &value_type::first);
    return found != end() && found->first == id ? found : end();
}

NameStrings::const_iterator NameStrings::find(std::uint16_t id) const
{
    const auto found = std::ranges::lower_bound(m_strings, id, {}, &value_type::first);
    return found != end() && found->first == id ? found : end();
}

} // namespace quillmark
