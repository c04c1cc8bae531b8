#include "text/Encoding.h"

#include "text/Utf8.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace quillmark {
namespace {

/// Mac OS Roman from 0x80 on (Apple's ROMAN.TXT); 0xF0 is the Apple logo, a private-use character.
constexpr std::u16string_view macRomanUpperHalf =
    u"\u00C4\u00C5\u00C7\u00C9\u00D1\u00D6\u00DC\u00E1\u00E0\u00E2\u00E4\u00E3\u00E5\u00E7\u00E9"
    u"\u00E8"
    u"\u00EA\u00EB\u00ED\u00EC\u00EE\u00EF\u00F1\u00F3\u00F2\u00F4\u00F6\u00F5\u00FA\u00F9\u00FB"
    u"\u00FC"
    u"\u2020\u00B0\u00A2\u00A3\u00A7\u2022\u00B6\u00DF\u00AE\u00A9\u2122\u00B4\u00A8\u2260\u00C6"
    u"\u00D8"
    u"\u221E\u00B1\u2264\u2265\u00A5\u00B5\u2202\u2211\u220F\u03C0\u222B\u00AA\u00BA\u03A9\u00E6"
    u"\u00F8"
    u"\u00BF\u00A1\u00AC\u221A\u0192\u2248\u2206\u00AB\u00BB\u2026\u00A0\u00C0\u00C3\u00D5\u0152"
    u"\u0153"
    u"\u2013\u2014\u201C\u201D\u2018\u2019\u00F7\u25CA\u00FF\u0178\u2044\u20AC\u2039\u203A\uFB01"
    u"\uFB02"
    u"\u2021\u00B7\u201A\u201E\u2030\u00C2\u00CA\u00C1\u00CB\u00C8\u00CD\u00CE\u00CF\u00CC\u00D3"
    u"\u00D4"
    u"\uF8FF\u00D2\u00DA\u00DB\u00D9\u0131\u02C6\u02DC\u00AF\u02D8\u02D9\u02DA\u00B8\u02DD\u02DB"
    u"\u02C7";
static_assert(macRomanUpperHalf.size() == 128);

std::string_view asCharacters(std::span<const std::byte> bytes)
{
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// Bytes of a one-byte encoding whose lower half is ASCII.
template <typename UpperHalf>
std::string decodeBytes(std::span<const std::byte> bytes, UpperHalf upperHalf)
{
    if (const auto characters = asCharacters(bytes); Utf8::isAscii(characters))
        return std::string(characters);
    std::string text;
    text.reserve(bytes.size());
    for (const std::byte byte : bytes) {
        const auto value = std::to_integer<std::uint8_t>(byte);
        if (value < 0x80)
            text.push_back(static_cast<char>(value));
        else
            Utf8::append(text, upperHalf(value));
    }
    return text;
}

/// Copies big-endian UTF-16 as if it were ASCII, and returns whether it is. With the two halves of
/// a unit kept apart, the compiler looks at many of them at once.
bool copiedIfAscii(std::span<const std::byte> bytes, char* to)
{
    std::byte highSeen{};
    std::byte lowSeen{};
    for (std::size_t i = 0; 2 * i < bytes.size(); ++i) {
        highSeen |= bytes[2 * i];
        lowSeen |= bytes[2 * i + 1];
        to[i] = std::to_integer<char>(bytes[2 * i + 1]);
    }
    return highSeen == std::byte{} && lowSeen < std::byte{0x80};
}

bool isHighSurrogate(char32_t unit)
{
    return unit >= 0xD800 && unit < 0xDC00;
}
bool isLowSurrogate(char32_t unit)
{
    return unit >= 0xDC00 && unit < 0xE000;
}

} // namespace

std::string decodeUtf8(std::span<const std::byte> bytes)
{
    return repairedUtf8(asCharacters(bytes));
}

std::string repairedUtf8(std::string_view text)
{
    if (Utf8::isAscii(text)) return std::string(text);
    std::string repaired;
    repaired.reserve(text.size());
    while (!text.empty()) {
        const Utf8::Character character = Utf8::first(text);
        Utf8::append(repaired, character.codePoint);
        text.remove_prefix(character.length);
    }
    return repaired;
}

std::string decodeUtf16BigEndian(std::span<const std::byte> bytes)
{
    const std::size_t count = bytes.size() / 2;
    // Nearly all names are ASCII: copy as if, and see afterwards whether that was right.
    std::string text(count, '\0');
    if (copiedIfAscii(bytes.first(2 * count), text.data())) return text;

    const auto unit = [bytes](std::size_t i) {
        return std::to_integer<char32_t>(bytes[2 * i]) << 8U |
               std::to_integer<char32_t>(bytes[2 * i + 1]);
    };
    // Most of the others are ASCII but for a few characters.
    constexpr std::size_t runSize = 16;
    std::array<char, runSize> run{};
    text.clear();
    for (std::size_t i = 0; i < count;) {
        if (count - i >= runSize && copiedIfAscii(bytes.subspan(2 * i, 2 * runSize), run.data())) {
            text.append(run.data(), runSize);
            i += runSize;
            continue;
        }
        const std::size_t end = std::min(i + runSize, count);
        while (i < end) {
            char32_t codePoint = unit(i++);
            if (isHighSurrogate(codePoint) && i < count && isLowSurrogate(unit(i)))
                codePoint = 0x10000 + ((codePoint - 0xD800) << 10U) + (unit(i++) - 0xDC00);
            else if (isHighSurrogate(codePoint) || isLowSurrogate(codePoint))
                codePoint = Utf8::replacementCharacter;
            Utf8::append(text, codePoint);
        }
    }
    return text;
}

std::string decodeMacRoman(std::span<const std::byte> bytes)
{
    return decodeBytes(bytes, [](std::uint8_t value) -> char32_t {
        return macRomanUpperHalf[value - std::size_t{0x80}];
    });
}

std::string decodeLatin1(std::span<const std::byte> bytes)
{
    return decodeBytes(bytes, [](std::uint8_t value) -> char32_t { return value; });
}

std::string decodeAscii(std::span<const std::byte> bytes)
{
    return decodeBytes(bytes, [](std::uint8_t) { return Utf8::replacementCharacter; });
}

} // namespace quillmark
