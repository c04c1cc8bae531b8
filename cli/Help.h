// The texts of --help and --version, made from OptionTable.h.
#pragma once

#include "cli/OptionTable.h"

#include <string>
#include <string_view>

namespace quillmark::cli {

/// The name under which messages are printed and the program is installed.
inline constexpr std::string_view programName = "quillmark-cli";

/// Such as "1.2.3".
[[nodiscard]] std::string_view version();

/// How the program, or a command, is called: one line without its end.
[[nodiscard]] std::string usage();
[[nodiscard]] std::string usage(Command command);

/// Every command and every option, at most 79 columns wide.
[[nodiscard]] std::string helpText();

/// One command with the options that go with it.
[[nodiscard]] std::string helpText(Command command);

/// The help, and then that of each command.
[[nodiscard]] std::string helpOfEverything();

/// One line.
[[nodiscard]] std::string versionText();

} // namespace quillmark::cli
