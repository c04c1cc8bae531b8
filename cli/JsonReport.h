// The report for programs that read it whole; JsonLinesReport.h is for those that do not.
// docs/json.md describes it, docs/schema has its JSON Schema.
#pragma once

#include "cli/FontList.h"
#include "cli/Output.h"
#include "coding/JsonWriter.h"
#include "notes/NotesBook.h"

#include <span>
#include <string>

namespace quillmark::cli {

/// Writes each list as it comes, so that memory holds one list at a time.
class JsonReport {
public:
    using Row = TextRow;

    /// Output and notes are borrowed until the report is finished.
    JsonReport(Output& output, const NotesBook& notes);

    [[nodiscard]] TextRow row(const AuditRow& row) const;
    void add(const FontList<TextRow>& list);
    void finish(std::span<const InputError> errors);

private:
    Output& m_output;
    const NotesBook& m_notes;
    JsonWriter m_writer;
};

} // namespace quillmark::cli
