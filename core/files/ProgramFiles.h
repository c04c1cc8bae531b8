// Files that belong to the running program.
#pragma once

#include <filesystem>
#include <string_view>

namespace quillmark {

/// `relative` below the folder around the program's own: PREFIX/share/… for PREFIX/bin/program. So
/// it is found in the build tree, when installed, and when all of it is moved; nowhere else is
/// looked for it. PREFIX is /usr where the system does not tell which program runs.
[[nodiscard]] std::filesystem::path besideProgram(std::string_view relative);

} // namespace quillmark
