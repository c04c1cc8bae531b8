// Hands files and links to the programs that the user has for them.
#pragma once

#include <filesystem>
#include <string_view>

namespace quillmark {

/// Whether opening the file could run it: it may be executed, or it is of a type that a desktop
/// starts, such as a script, a launcher or an installer. Judged by its name and its first bytes.
[[nodiscard]] bool isProgram(const std::filesystem::path& file);

/// Whether there is a program to hand it to. `file` is absolute.
[[nodiscard]] bool openWithProgram(const std::filesystem::path& file);

/// Opens an http or https address in the browser; false for any other text.
[[nodiscard]] bool openLink(std::string_view url);

} // namespace quillmark
