// The report for paper.
#pragma once

#include "cli/Console.h"
#include "cli/FontList.h"
#include "cli/Output.h"
#include "notes/NotesBook.h"

#include <chrono>
#include <string>
#include <vector>

namespace quillmark::cli {

/// Keeps the rows of all lists, for the first page already counts them, and writes one document
/// whose title names each list.
class PdfReport {
public:
    using Row = AuditRow;

    /// Output and notes are borrowed until the report is finished.
    PdfReport(Output& output, const NotesBook& notes) : m_output(output), m_notes(notes) {}

    void add(FontList<AuditRow> list);
    /// `date` is the one that the report gives for the check. What is wrong with the report's own
    /// fonts is said on the console.
    void finish(std::chrono::system_clock::time_point date, Console& console);

private:
    Output& m_output;
    const NotesBook& m_notes;
    std::string m_titles;    // of the lists, joined
    std::string m_subtitles; // likewise
    std::vector<AuditRow> m_rows;
};

} // namespace quillmark::cli
