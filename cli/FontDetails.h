// All about one font: its verdict with every reason, and what it or the PDF says.
#pragma once

#include "cli/TextLines.h"
#include "pdf/AuditRow.h"

#include <string>
#include <vector>

namespace quillmark::cli {

/// Writes a block of lines for `row`: for a document's font how the PDF uses it, for any other
/// what the font file says about itself.
void writeFontDetails(TextLines& lines, const AuditRow& row);

/// Ascending page numbers with runs of them joined: "1-3, 7".
[[nodiscard]] std::string pageRanges(const std::vector<int>& pages);

} // namespace quillmark::cli
