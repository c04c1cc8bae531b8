// Paths as text for people: what is not UTF-8 in them becomes U+FFFD.
#pragma once

#include "library/FileName.h"
#include "text/Encoding.h"

#include <string>
#include <string_view>

namespace quillmark {

[[nodiscard]] inline std::string shownPath(std::string_view path)
{
    return repairedUtf8(path);
}

/// The last component; the whole of a path that has none, such as "/".
[[nodiscard]] inline std::string shownName(std::string_view path)
{
    const std::string_view name = FileName::ofPath(path);
    return repairedUtf8(name.empty() ? path : name);
}

} // namespace quillmark
