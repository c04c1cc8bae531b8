// Scripts with which shells complete the command line, made from OptionTable.h.
#pragma once

#include "cli/Options.h"

#include <string>

namespace quillmark::cli {

/// The script for a shell, to be put where it looks for such or to be run when it starts.
[[nodiscard]] std::string completionScript(Shell shell);

} // namespace quillmark::cli
