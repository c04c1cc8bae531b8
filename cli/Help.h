// The texts of --help and --version.
#pragma once

#include <string>
#include <string_view>

namespace quillmark::cli {

/// The name under which messages are printed and the program is installed.
inline constexpr std::string_view programName = "quillmark-cli";

/// Such as "1.2.3".
[[nodiscard]] std::string_view version();

[[nodiscard]] std::string helpText();

/// One line.
[[nodiscard]] std::string versionText();

} // namespace quillmark::cli
