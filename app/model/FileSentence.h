// What is said to the user about files.
#pragma once

#include "library/FileName.h"
#include "text/Encoding.h"

#include <string>
#include <string_view>

namespace quillmark {

/// A path as text: what is not UTF-8 in it becomes U+FFFD.
[[nodiscard]] inline std::string shownPath(std::string_view path)
{
    return repairedUtf8(path);
}

/// The last component of a path as text; the whole of one that has none, such as "/".
[[nodiscard]] inline std::string shownName(std::string_view path)
{
    const std::string_view name = FileName::ofPath(path);
    return repairedUtf8(name.empty() ? path : name);
}

/// Why something could not be done with a file, or with what is named instead of a path; `done` is
/// a participle such as "opened".
[[nodiscard]] inline std::string failureSentence(std::string_view path, std::string_view done,
                                                 std::string_view reason)
{
    return shownPath(path).append(" could not be ").append(done).append(": ").append(reason) + ".";
}

} // namespace quillmark
