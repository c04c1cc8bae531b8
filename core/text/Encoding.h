// Bytes to UTF-8. Every decoder takes any bytes and always yields valid UTF-8.
// For trimming see Trim.h; for making text safe to show see Printable.h.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace quillmark {

/// UTF-8 with one U+FFFD for every maximal ill-formed part (Unicode 15, table 3-8).
[[nodiscard]] std::string decodeUtf8(std::span<const std::byte> bytes);

/// The same for text that arrived as characters, such as a file name.
[[nodiscard]] std::string repairedUtf8(std::string_view text);

/// UTF-16 big-endian; unpaired surrogates become U+FFFD. An odd last byte is ignored.
[[nodiscard]] std::string decodeUtf16BigEndian(std::span<const std::byte> bytes);

/// Mac OS Roman, in the mapping with the euro sign at 0xDB.
[[nodiscard]] std::string decodeMacRoman(std::span<const std::byte> bytes);

/// ISO 8859-1: each byte is the character with the same code point.
[[nodiscard]] std::string decodeLatin1(std::span<const std::byte> bytes);

/// ASCII; every byte above 0x7F becomes U+FFFD.
[[nodiscard]] std::string decodeAscii(std::span<const std::byte> bytes);

} // namespace quillmark
