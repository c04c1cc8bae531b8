#include "cli/PdfReport.h"

#include "export/PDFReport.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace quillmark::cli {
namespace {

void appendListed(std::string& text, std::string_view item)
{
    if (!text.empty()) text += ", ";
    text += item;
}

} // namespace

void PdfReport::add(FontList<AuditRow> list)
{
    appendListed(m_titles, list.source.title);
    appendListed(m_subtitles, list.source.subtitle);
    if (m_rows.empty())
        m_rows = std::move(list.rows);
    else
        std::ranges::move(list.rows, std::back_inserter(m_rows));
}

void PdfReport::finish(std::chrono::system_clock::time_point date, Console& console)
{
    AuditExport::ReportSetting setting;
    setting.diagnostic = [&console](std::string_view line) { console.message(line); };
    std::string title = "Font license audit";
    if (!m_titles.empty()) title += ": " + m_titles; // empty when nothing could be read
    const auto bytes = AuditExport::pdfReport(title, m_subtitles, m_rows, m_notes, date, setting);
    if (!bytes) throw std::runtime_error("there is no font to write the report with");
    m_output.buffer().append(reinterpret_cast<const char*>(bytes->data()), bytes->size());
}

} // namespace quillmark::cli
