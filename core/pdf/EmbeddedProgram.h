// The kind of font program that a PDF embeds for a font.
#pragma once

#include "text/RawValue.h"

#include <array>
#include <string_view>

namespace quillmark {

enum class EmbeddedProgram {
    notEmbedded,
    trueType, // FontFile2
    openType, // FontFile3, subtype OpenType
    cff,      // FontFile3, any other subtype
    type1,    // FontFile
    type3,    // glyphs are drawn by the document's own content streams
};

template <>
inline constexpr auto rawValues<EmbeddedProgram> = std::to_array<std::string_view>({
    "notEmbedded",
    "trueType",
    "openType",
    "cff",
    "type1",
    "type3",
});

[[nodiscard]] std::string_view label(EmbeddedProgram program);

} // namespace quillmark
