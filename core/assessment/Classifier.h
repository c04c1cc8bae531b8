// From what a font says about itself to a verdict with its reasons.
#pragma once

#include "assessment/Assessment.h"
#include "fontfile/FontFacts.h"

#include <string>
#include <string_view>

namespace quillmark::Classifier {

/// Stands beside verdicts wherever they are shown.
inline constexpr std::string_view disclaimer =
    "Check the license; this reads the font's own data. Not legal advice.";

/// The same facts always give the same assessment.
[[nodiscard]] Assessment assess(const FontFacts& facts);

/// Where the licence words were read, as a parenthesised note with a leading space.
[[nodiscard]] std::string sourceNote(const FontFacts& facts);

} // namespace quillmark::Classifier
