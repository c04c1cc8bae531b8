// The fixed words for the format of a font.
#pragma once

#include <string_view>

namespace quillmark {

/// The values of FontFacts::format, but for the upper-cased extension of an unrecognised format.
namespace FormatLabel {
inline constexpr std::string_view trueType = "TrueType";
inline constexpr std::string_view trueTypeCollection = "TrueType collection";
inline constexpr std::string_view openTypeCFF = "OpenType (CFF)";
inline constexpr std::string_view postScriptType1 = "PostScript Type 1";
inline constexpr std::string_view bitmap = "Bitmap";
inline constexpr std::string_view font = "Font";
inline constexpr std::string_view bareProgram = "CFF/Type 1";
} // namespace FormatLabel

} // namespace quillmark
