#include "ui/CommandLine.h"

#include "library/AbsolutePath.h"
#include "model/QtText.h"
#include "text/Printable.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace quillmark {
namespace {

constexpr int wrongUse = 2;

// At most 79 columns, so that nothing wraps on the usual terminal.
constexpr std::string_view help = R"(Usage: quillmark [FILE|FOLDER...]

Opens the window of Quillmark. PDFs are checked, folders are scanned for fonts.
If the window is open already it comes to the front and takes them over.

Options:
  -h, --help            show this help
      --version         show the version

On the command line without a window: quillmark-cli.
)";

/// Options that QApplication understands and that desktops and session managers hand to programs.
constexpr std::array<std::string_view, 7> toolkitOptions{
    "display", "name", "platform", "platformtheme", "qwindowgeometry", "session", "style",
};

bool isToolkitOption(std::string_view argument)
{
    // One hyphen or two, and the value behind it.
    argument.remove_prefix(argument.starts_with("--") ? 2 : 1);
    return std::ranges::find(toolkitOptions, argument) != toolkitOptions.end();
}

CommandLineAnswer unknownOption(std::string_view option)
{
    return {
        .output = {},
        .errors =
            "quillmark: there is no option \"" + printable(option) + "\"; see quillmark --help\n",
        .exitCode = wrongUse,
    };
}

} // namespace

std::variant<WindowStart, CommandLineAnswer> readCommandLine(std::span<const std::string> arguments)
{
    WindowStart start;
    bool optionsEnded = false;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        if (optionsEnded || !argument.starts_with('-') || argument == "-") {
            // Nothing is meant by an empty argument, least of all the current folder.
            if (!argument.empty())
                start.files.push_back(absolutePath(pathOfFileURL(argument).value_or(argument)));
        } else if (argument == "--") {
            optionsEnded = true;
        } else if (argument == "-h" || argument == "--help") {
            return CommandLineAnswer{.output = std::string(help), .errors = {}, .exitCode = 0};
        } else if (argument == "--version") {
            return CommandLineAnswer{
                .output = "quillmark " QUILLMARK_VERSION "\n", .errors = {}, .exitCode = 0};
        } else if (isToolkitOption(argument) && i + 1 < arguments.size()) {
            start.toolkitOptions.push_back(argument);
            start.toolkitOptions.push_back(arguments[++i]);
        } else {
            return unknownOption(argument);
        }
    }
    return start;
}

} // namespace quillmark
