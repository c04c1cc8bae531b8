// The command-line tool, as a function that tests can call.
#pragma once

#include "cli/Environment.h"

#include <span>
#include <string>

namespace quillmark::cli {

/// Does what `arguments` (without the program's name) ask for; returns the exit code.
[[nodiscard]] int run(std::span<const std::string> arguments, const Environment& environment);

} // namespace quillmark::cli
