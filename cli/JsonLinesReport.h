// The report for programs that take one font after the other. docs/json.md describes it.
#pragma once

#include "cli/FontList.h"
#include "cli/Output.h"
#include "notes/NotesBook.h"

namespace quillmark::cli {

/// Writes one JSON object a line, and hands each line on at once.
class JsonLinesReport {
public:
    using Row = TextRow;

    /// Output and notes are borrowed until the last row.
    JsonLinesReport(Output& output, const NotesBook& notes) : m_output(output), m_notes(notes) {}

    [[nodiscard]] TextRow row(const AuditRow& row) const;
    void add(const FontList<TextRow>& list);

private:
    Output& m_output;
    const NotesBook& m_notes;
};

} // namespace quillmark::cli
