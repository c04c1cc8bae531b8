// What `explain` prints: how verdicts are reached.
#pragma once

#include "cli/TextLines.h"

namespace quillmark::cli {

void writeExplanation(TextLines& lines);

} // namespace quillmark::cli
