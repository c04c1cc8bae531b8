// How much text records hold, for limits on what hostile files may cost.
#pragma once

#include "fontfile/BareFontInfo.h"
#include "fontfile/FontFacts.h"

#include <cstddef>

namespace quillmark {

/// The bytes that a record's texts take together.
[[nodiscard]] std::size_t textSize(const FontFacts& facts);
[[nodiscard]] std::size_t textSize(const BareFontInfo& info);

} // namespace quillmark
