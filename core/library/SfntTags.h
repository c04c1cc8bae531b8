// The sfnt vocabulary that the readers of files and containers share.
#pragma once

#include "fontfile/SFNT.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace quillmark {

/// A tag of four characters as the number that stands for it in a font.
constexpr std::uint32_t sfntTag(std::string_view characters)
{
    std::uint32_t value = 0;
    for (const char character : characters)
        value = value << 8U | static_cast<unsigned char>(character);
    return value;
}

/// Whether a face with this sfnt version and so many tables is one that is read, wherever a
/// container states the two.
[[nodiscard]] inline bool isSfntFace(std::uint32_t version, std::uint16_t tableCount)
{
    const auto byteOf = [](std::uint32_t value, unsigned shift) {
        return static_cast<std::byte>(value >> shift & 0xFFU);
    };
    const std::array<std::byte, 6> header{
        byteOf(version, 24), byteOf(version, 16),   byteOf(version, 8),
        byteOf(version, 0),  byteOf(tableCount, 8), byteOf(tableCount, 0),
    };
    return SFNT::directorySize(header).has_value();
}

} // namespace quillmark
