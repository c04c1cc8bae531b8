// The report for spreadsheets: docs/csv.md describes it.
#pragma once

#include "cli/FontList.h"
#include "cli/Output.h"
#include "notes/NotesBook.h"

namespace quillmark::cli {

/// Writes the rows of all lists one after the other under one header, each list as it comes.
class CsvReport {
public:
    using Row = TextRow;
    /// On a terminal, what could control it is replaced, which a spreadsheet has to get as it is.
    enum class Target { file, terminal };

    /// Output and notes are borrowed until the report is finished.
    CsvReport(Output& output, const NotesBook& notes, Target target);

    [[nodiscard]] TextRow row(const AuditRow& row) const;
    void add(const FontList<TextRow>& list);
    void finish();

private:
    Output& m_output;
    const NotesBook& m_notes;
    Target m_target;
};

} // namespace quillmark::cli
