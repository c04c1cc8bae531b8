// Many fonts at a glance: one line each, under their verdict and its headline.
#pragma once

#include "cli/TextLines.h"
#include "pdf/AuditRow.h"

#include <string>
#include <vector>

namespace quillmark::cli {

/// Writes `rows` grouped by verdict, the worst first, then by headline; within that in their order.
/// File paths below `folder` are shown without it.
void writeFontTable(TextLines& lines, const std::vector<const AuditRow*>& rows,
                    const std::string& folder);

/// Writes a verdict with its sign.
void writeVerdict(TextLines& lines, Verdict verdict);

} // namespace quillmark::cli
