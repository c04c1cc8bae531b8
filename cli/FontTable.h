// Many fonts at a glance, one line each.
#pragma once

#include "cli/TextLines.h"
#include "pdf/AuditRow.h"

#include <string>
#include <vector>

namespace quillmark::cli {

/// Writes a line of titles and one for each of `rows`. File paths below `folder` are shown without
/// it.
void writeFontTable(TextLines& lines, const std::vector<const AuditRow*>& rows,
                    const std::string& folder);

/// Writes a verdict with its sign.
void writeVerdict(TextLines& lines, Verdict verdict);

} // namespace quillmark::cli
