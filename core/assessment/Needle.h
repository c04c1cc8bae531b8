// Words looked for in licence texts, whatever their case.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace quillmark {

/// A fixed piece of text that occurs in another when the other, lower-cased by Unicode's rules,
/// contains it. A whole licence is searched for twenty of them, for every font of a scan: therefore
/// a search copies nothing, and looks at only two of the needle's characters in most places.
class Needle {
public:
    /// Whether `text` can be searched for by comparing ASCII letters alone. That could go wrong
    /// with other than lower-case ASCII characters, with a k (the Kelvin sign lower-cases to it),
    /// and with an i at its end (a dotted capital I lower-cases to an i and a combining dot). Nor
    /// can it hold a sign without the bit that tells small letters from capitals, such as an
    /// underscore or an at sign: the search sets that bit in what it looks at.
    [[nodiscard]] static constexpr bool isSuitable(std::string_view text)
    {
        constexpr unsigned smallLetterBit = 0x20;
        const auto isSearchable = [](char character) {
            return character >= ' ' && character <= 'z' && character != 'k' &&
                   (static_cast<unsigned>(character) & smallLetterBit) != 0;
        };
        return text.size() >= 2 && !text.ends_with('i') &&
               std::all_of(text.begin(), text.end(), isSearchable);
    }

    /// Refuses, when compiled, a text that is not suitable.
    consteval Needle(const char* text) : m_text(text)
    {
        if (!isSuitable(m_text)) throw "unsuitable needle";
        for (std::size_t i = 0; i < m_text.size(); ++i)
            if (rarity(m_text[i]) > rarity(m_text[m_rarest])) m_rarest = i;
        m_second = m_rarest == 0 ? 1 : 0;
        for (std::size_t i = 0; i < m_text.size(); ++i)
            if (i != m_rarest && rarity(m_text[i]) > rarity(m_text[m_second])) m_second = i;
    }

    [[nodiscard]] bool occursIn(std::string_view text) const;

private:
    /// Greater for characters that are rarer in English texts.
    static consteval std::size_t rarity(char character)
    {
        constexpr std::string_view commonFirst = " etaoinsrhlcdufpmgywbv.,-jxqz";
        const std::size_t rank = commonFirst.find(character);
        return rank == std::string_view::npos ? commonFirst.size() : rank;
    }

    template <std::size_t blockSize>
    [[nodiscard]] bool occursInBlocksOf(std::string_view text) const;
    [[nodiscard]] bool matchesAt(const char* start) const;
    [[nodiscard]] bool startsAmong(const char* starts, std::size_t count) const;

    std::string_view m_text;
    std::size_t m_rarest{};
    std::size_t m_second{};
};

} // namespace quillmark
