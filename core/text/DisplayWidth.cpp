#include "text/DisplayWidth.h"

#include "text/Utf8.h"

#include <unicode/uchar.h>

namespace quillmark {
namespace {

/// Vowels and final consonants that join the Hangul syllable before them.
bool joinsSyllable(UHangulSyllableType type)
{
    return type == U_HST_VOWEL_JAMO || type == U_HST_TRAILING_JAMO;
}

std::size_t width(char32_t character)
{
    if (character < 0x300) return 1; // Latin letters, by far the most frequent
    const auto codePoint = static_cast<UChar32>(character);
    const auto category = U_GET_GC_MASK(codePoint);
    if ((category & (U_GC_MN_MASK | U_GC_ME_MASK | U_GC_CF_MASK)) != 0) return 0;
    if (joinsSyllable(static_cast<UHangulSyllableType>(
            u_getIntPropertyValue(codePoint, UCHAR_HANGUL_SYLLABLE_TYPE))))
        return 0;
    const int eastAsian = u_getIntPropertyValue(codePoint, UCHAR_EAST_ASIAN_WIDTH);
    return eastAsian == U_EA_WIDE || eastAsian == U_EA_FULLWIDTH ? 2 : 1;
}

} // namespace

std::size_t displayWidth(std::string_view text)
{
    if (Utf8::isAscii(text)) return text.size();
    std::size_t columns = 0;
    while (!text.empty()) {
        const Utf8::Character character = Utf8::first(text);
        columns += width(character.codePoint);
        text.remove_prefix(character.length);
    }
    return columns;
}

std::string_view prefixOfWidth(std::string_view text, std::size_t columns)
{
    std::size_t end = 0;
    std::size_t used = 0;
    while (end < text.size()) {
        const Utf8::Character character = Utf8::first(text.substr(end));
        used += width(character.codePoint);
        if (used > columns) break;
        end += character.length;
    }
    return text.substr(0, end);
}

} // namespace quillmark
