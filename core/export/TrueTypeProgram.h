// TrueType font programs for a large share of a font's glyphs, which are copied as the font has
// them. For few glyphs, and for fonts in other formats, CFFProgram.h draws the outlines anew.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace quillmark {

/// Reads from a font's tables.
struct FontTables {
    /// The table's length in bytes; 0 when there is no such table.
    std::function<std::size_t(std::string_view tag)> size;
    /// Fills `into` with the table's bytes from `offset` on; whether it has as many.
    std::function<bool(std::string_view tag, std::size_t offset, std::span<char> into)> read;
};

/// A font with the outlines of `glyphs`, of those they are composed of, and of the one for what is
/// missing. Every glyph keeps its number; one whose outline cannot be found is left blank. The
/// font's names and its embedding rights are in it too. Absent when the font is not a sound
/// TrueType font.
[[nodiscard]] std::optional<std::string> trueTypeProgram(const FontTables& tables,
                                                         std::span<const unsigned> glyphs);

} // namespace quillmark
