// All about one font: its verdict with every reason, what it or the PDF says, what the user noted.
#pragma once

#include "cli/TextLines.h"
#include "notes/NotesBook.h"
#include "pdf/AuditRow.h"

namespace quillmark::cli {

/// How much is said about a font.
struct Detail {
    /// A document's font, too, with what the font says about itself; licence texts in full.
    bool everything{};
    const NotesBook* notes{}; // null: nothing is said about notes
};

/// Writes a block of lines for `row`.
void writeFontDetails(TextLines& lines, const AuditRow& row, const Detail& detail);

/// Writes what a note says, each line `indent` columns from the left.
void writeNote(TextLines& lines, const LicenseNote& note, std::size_t indent);

} // namespace quillmark::cli
