#include "cli/CsvReport.h"

#include "export/AuditExport.h"
#include "text/Printable.h"

#include <string_view>

namespace quillmark::cli {
namespace {

/// `text` with its lines as they are and everything in them printable.
std::string printableLines(std::string_view text)
{
    std::string safe;
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        const bool hasReturn = line.ends_with('\r');
        safe += printable(hasReturn ? line.substr(0, line.size() - 1) : line);
        if (hasReturn) safe += '\r';
        const bool hasEnd = line.size() < text.size();
        if (hasEnd) safe += '\n';
        text.remove_prefix(line.size() + (hasEnd ? 1 : 0));
    }
    return safe;
}

} // namespace

CsvReport::CsvReport(Output& output, const NotesBook& notes, Target target)
    : m_output(output), m_notes(notes), m_target(target)
{
    AuditExport::appendCsvHeader(m_output.buffer());
}

TextRow CsvReport::row(const AuditRow& row) const
{
    TextRow result{row.assessment.verdict, {}};
    AuditExport::appendCsvRow(result.text, row, m_notes);
    if (m_target == Target::terminal) result.text = printableLines(result.text);
    return result;
}

void CsvReport::add(const FontList<TextRow>& list)
{
    for (const TextRow& row : list.rows) {
        m_output.buffer() += row.text;
        m_output.drain();
    }
}

void CsvReport::finish()
{
    AuditExport::appendCsvDisclaimer(m_output.buffer());
}

} // namespace quillmark::cli
