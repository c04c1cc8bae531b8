#include "cli/TextReport.h"

#include "assessment/Classifier.h"
#include "cli/FontDetails.h"
#include "cli/FontTable.h"

#include <algorithm>
#include <string>
#include <utility>

namespace quillmark::cli {
namespace {

constexpr std::string_view fontsTip =
    "Tip: PDF writers often strip the license fields from the fonts they embed. Name the folder "
    "with the fonts you used, --fonts FOLDER, so each one can be matched.";

/// Whether nothing but the name of a font in a PDF is known, although its glyphs are in there.
bool isUnmatched(const AuditRow& row)
{
    return row.pdf && row.pdf->program != EmbeddedProgram::notEmbedded && !row.pdf->matchedPath &&
           !row.pdf->readEmbeddedData;
}

std::string pageCount(int pages)
{
    return std::to_string(pages) + (pages == 1 ? " page" : " pages");
}

void addTo(AuditSummary& total, const AuditSummary& summary)
{
    total.likelyOK += summary.likelyOK;
    total.restricted += summary.restricted;
    total.unknown += summary.unknown;
}

void append(std::vector<const AuditRow*>& rows, const TextReport::List& list)
{
    for (const AuditRow& row : list.rows)
        rows.push_back(&row);
}

} // namespace

void TextReport::add(List list)
{
    if (list.source.kind == ListSource::Kind::file) {
        m_files.push_back(std::move(list));
        return;
    }
    writeFiles();
    if (list.source.kind == ListSource::Kind::document)
        writeDocument(list);
    else
        writeTable(list);
    writeSummary(list.summary());
}

void TextReport::writeHeading(std::string_view title, std::string_view subtitle)
{
    if (std::exchange(m_started, true)) m_lines.emptyLine();
    m_lines.text(title, Ink::strong).endLine();
    if (!subtitle.empty()) m_lines.text(subtitle, Ink::faint).endLine();
    m_lines.emptyLine();
}

void TextReport::writeDocument(const List& list)
{
    writeHeading(list.source.title,
                 *list.source.path + " · " + pageCount(list.source.document->pageCount));
    if (list.rows.empty())
        m_lines.paragraph("No fonts in this PDF. It may be all images, or its text was turned into "
                          "outlines.",
                          0);
    for (const AuditRow& row : list.rows) {
        if (&row != &list.rows.front()) m_lines.emptyLine();
        writeFontDetails(m_lines, row);
    }
    m_lines.emptyLine();
    if (m_tips == Tips::shown && std::ranges::any_of(list.rows, isUnmatched)) {
        m_lines.paragraph(fontsTip, 0);
        m_lines.emptyLine();
        m_tips = Tips::hidden; // once is enough
    }
}

void TextReport::writeTable(const List& list)
{
    writeHeading(list.source.title, list.source.subtitle);
    std::vector<const AuditRow*> rows;
    append(rows, list);
    if (!rows.empty())
        writeFontTable(m_lines, rows, list.source.path.value_or(std::string()));
    else if (list.source.kind == ListSource::Kind::folder)
        m_lines.paragraph("No font files were found in " + list.source.title + ".", 0);
    else
        m_lines.paragraph("No fonts found.", 0);
    m_lines.emptyLine();
}

void TextReport::writeFiles()
{
    const std::vector<List> files = std::exchange(m_files, {});
    if (files.empty()) return;
    std::vector<const AuditRow*> rows;
    for (const List& list : files)
        append(rows, list);
    if (files.size() == 1) {
        writeHeading(files.front().source.title, files.front().source.subtitle);
        std::ranges::stable_sort(rows, {},
                                 [](const AuditRow* row) { return row->assessment.verdict; });
        for (const AuditRow* row : rows) {
            if (row != rows.front()) m_lines.emptyLine();
            writeFontDetails(m_lines, *row);
        }
    } else {
        writeHeading(std::to_string(files.size()) + " font files", {});
        writeFontTable(m_lines, rows, {});
    }
    m_lines.emptyLine();
    AuditSummary summary;
    for (const List& list : files)
        addTo(summary, list.summary());
    writeSummary(summary);
}

void TextReport::writeSummary(const AuditSummary& summary)
{
    m_lines.text(summary.text(), Ink::strong).endLine();
    addTo(m_total, summary);
    ++m_summaryCount;
}

void TextReport::finish()
{
    writeFiles();
    if (m_summaryCount == 0) return; // what could not be read was told on standard error
    if (m_summaryCount > 1) {
        m_lines.emptyLine();
        m_lines.text("In all, " + m_total.text(), Ink::strong).endLine();
    }
    m_lines.paragraph(Classifier::disclaimer, 0, Ink::faint);
}

} // namespace quillmark::cli
