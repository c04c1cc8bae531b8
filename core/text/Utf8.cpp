#include "text/Utf8.h"

#include <algorithm>
#include <cstdint>

namespace quillmark::Utf8 {
namespace {

std::uint32_t byteAt(std::string_view text, std::size_t at)
{
    return static_cast<unsigned char>(text[at]);
}

bool isContinuation(std::uint32_t byte)
{
    return (byte & 0xC0U) == 0x80U;
}

} // namespace

Character first(std::string_view text)
{
    const std::uint32_t lead = byteAt(text, 0);
    if (lead < 0x80) return {lead, 1};
    // 0xC0 and 0xC1 could only start overlong forms, 0xF5 and above lie beyond U+10FFFF.
    if (lead < 0xC2 || lead > 0xF4) return {replacementCharacter, 1};

    const std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    // The second byte alone decides about overlong forms, surrogates and the end of Unicode.
    const std::uint32_t lowest = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    const std::uint32_t highest = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    if (text.size() < 2 || byteAt(text, 1) < lowest || byteAt(text, 1) > highest)
        return {replacementCharacter, 1};

    char32_t codePoint = (lead & (0x7FU >> length)) << 6U | (byteAt(text, 1) & 0x3FU);
    for (std::size_t i = 2; i < length; ++i) {
        if (i == text.size() || !isContinuation(byteAt(text, i))) return {replacementCharacter, i};
        codePoint = codePoint << 6U | (byteAt(text, i) & 0x3FU);
    }
    return {codePoint, length};
}

Character last(std::string_view text)
{
    if (const std::uint32_t byte = byteAt(text, text.size() - 1); byte < 0x80) return {byte, 1};
    // A character is at most 4 bytes long; the longest that reaches the end is the last one.
    for (std::size_t length = std::min<std::size_t>(text.size(), 4); length > 1; --length) {
        const Character character = first(text.substr(text.size() - length));
        if (character.length == length) return character;
    }
    return first(text.substr(text.size() - 1));
}

void append(std::string& text, char32_t codePoint)
{
    const auto put = [&text](char32_t byte) {
        text.push_back(static_cast<char>(static_cast<unsigned char>(byte)));
    };
    if (codePoint < 0x80) {
        put(codePoint);
    } else if (codePoint < 0x800) {
        put(0xC0U | codePoint >> 6U);
        put(0x80U | (codePoint & 0x3FU));
    } else if (codePoint < 0x10000) {
        put(0xE0U | codePoint >> 12U);
        put(0x80U | (codePoint >> 6U & 0x3FU));
        put(0x80U | (codePoint & 0x3FU));
    } else {
        put(0xF0U | codePoint >> 18U);
        put(0x80U | (codePoint >> 12U & 0x3FU));
        put(0x80U | (codePoint >> 6U & 0x3FU));
        put(0x80U | (codePoint & 0x3FU));
    }
}

bool isAscii(std::string_view text)
{
    // Without a way out of the loop the compiler looks at many bytes at once.
    unsigned seen = 0;
    for (const char character : text)
        seen |= static_cast<unsigned char>(character);
    return seen < 0x80;
}

} // namespace quillmark::Utf8
