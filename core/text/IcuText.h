// How text is handed to ICU. Only for the sources of this folder that call ICU.
#pragma once

#include <unicode/stringpiece.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string_view>

namespace quillmark {

/// ICU counts bytes in 32 bits; a text longer than that (none can come from a font) is cut.
inline icu::StringPiece icuText(std::string_view text)
{
    constexpr std::size_t longest = std::numeric_limits<std::int32_t>::max();
    return {text.data(), static_cast<std::int32_t>(std::min(text.size(), longest))};
}

} // namespace quillmark
