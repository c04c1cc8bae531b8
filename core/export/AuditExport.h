// Lists of fonts as files for other programs.
#pragma once

#include "notes/NotesBook.h"
#include "pdf/AuditRow.h"

#include <cstddef>
#include <span>
#include <string>

namespace quillmark::AuditExport {

/// The rows as comma-separated values, in the order given: a line of headers, a line for each row,
/// and the disclaimer. UTF-8 without a byte-order mark; lines end with CR LF.
[[nodiscard]] std::string csv(std::span<const AuditRow> rows, const NotesBook& notes);

// The pieces that `csv` is made of, for lists that are written one after the other.
void appendCsvHeader(std::string& text);
void appendCsvRow(std::string& text, const AuditRow& row, const NotesBook& notes);
void appendCsvDisclaimer(std::string& text);

/// Puts an apostrophe in front of the field that stands in `text` from `start` on, if a spreadsheet
/// would evaluate it as a formula.
void guardFormula(std::string& text, std::size_t start = 0);

} // namespace quillmark::AuditExport
