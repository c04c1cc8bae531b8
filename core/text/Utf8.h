// Single characters of UTF-8, for the text functions. Whole texts are decoded by Encoding.h.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace quillmark::Utf8 {

inline constexpr char32_t replacementCharacter = 0xFFFD;

/// A code point and the number of bytes that stand for it.
struct Character {
    char32_t codePoint{};
    std::size_t length{};
};

/// The character at the start of `text`, which must not be empty. A maximal ill-formed part
/// (Unicode 15, table 3-8) counts as one U+FFFD.
[[nodiscard]] Character first(std::string_view text);

/// The character at the end of `text`, which must not be empty.
[[nodiscard]] Character last(std::string_view text);

/// Appends one Unicode scalar value.
void append(std::string& text, char32_t codePoint);

/// Whether every byte is below 0x80.
[[nodiscard]] bool isAscii(std::string_view text);

/// An ASCII capital as its small letter, anything else as it is.
[[nodiscard]] constexpr char asciiLower(char character)
{
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a')
                                                : character;
}

} // namespace quillmark::Utf8
