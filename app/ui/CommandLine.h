// What the program was started with: quillmark [FILE|FOLDER…].
#pragma once

#include <filesystem>
#include <span>
#include <string>
#include <variant>
#include <vector>

namespace quillmark {

/// The window is to be shown.
struct WindowStart {
    std::vector<std::filesystem::path> files; // handed in, absolute, in their order
    std::vector<std::string> toolkitOptions;  // for QApplication, with their values
    bool operator==(const WindowStart&) const = default;
};

/// All has been said; the program ends.
struct CommandLineAnswer {
    std::string output; // for standard output
    std::string errors; // for standard error
    int exitCode{};
    bool operator==(const CommandLineAnswer&) const = default;
};

/// Needs neither a display nor an application object. `arguments` are without the program's name;
/// they are bytes, as the system hands them over, and relative ones start at the current folder.
[[nodiscard]] std::variant<WindowStart, CommandLineAnswer>
readCommandLine(std::span<const std::string> arguments);

} // namespace quillmark
