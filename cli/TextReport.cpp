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

/// The order in which the application shows its tables.
bool comesBefore(const AuditRow* left, const AuditRow* right)
{
    const Verdict leftVerdict = left->assessment.verdict;
    const Verdict rightVerdict = right->assessment.verdict;
    if (leftVerdict != rightVerdict) return leftVerdict < rightVerdict;
    return left->facts.displayName() < right->facts.displayName();
}

} // namespace

void TextReport::add(List list)
{
    if (m_setting.form == TextSetting::Form::blocks) {
        std::vector<const AuditRow*> rows;
        append(rows, list);
        if (!rows.empty() && std::exchange(m_started, true)) m_lines.emptyLine();
        writeInFull(rows);
        return;
    }
    if (list.source.kind == ListSource::Kind::file) {
        m_files.push_back(std::move(list));
        return;
    }
    writeFiles();
    if (list.source.kind == ListSource::Kind::document)
        writeDocument(list);
    else
        writeList(list);
    writeSummary(list.summary(), list.hidden);
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
    if (!list.rows.empty()) {
        std::vector<const AuditRow*> rows;
        append(rows, list);
        writeInFull(rows);
    } else if (list.hidden == 0) {
        m_lines.paragraph("No fonts in this PDF. It may be all images, or its text was turned into "
                          "outlines.",
                          0);
    } else {
        m_lines.paragraph("None of the fonts in this PDF is one of those.", 0);
    }
    m_lines.emptyLine();
    if (m_setting.tips && std::ranges::any_of(list.rows, isUnmatched)) {
        m_lines.paragraph(fontsTip, 0);
        m_lines.emptyLine();
        m_setting.tips = false; // once is enough
    }
}

void TextReport::writeList(const List& list)
{
    writeHeading(list.source.title, list.source.subtitle);
    std::vector<const AuditRow*> rows;
    append(rows, list);
    if (!rows.empty())
        writeFonts(rows, list.source.path.value_or(std::string()));
    else if (list.hidden > 0)
        m_lines.paragraph("None of the fonts is one of those.", 0);
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
    Rows rows;
    AuditSummary summary;
    std::size_t hidden = 0;
    for (const List& list : files) {
        append(rows, list);
        addTo(summary, list.summary());
        hidden += list.hidden;
    }
    if (files.size() == 1)
        writeHeading(files.front().source.title, files.front().source.subtitle);
    else
        writeHeading(std::to_string(files.size()) + " font files", {});
    if (rows.empty())
        m_lines.paragraph("None of the fonts is one of those.", 0);
    else if (files.size() > 1)
        writeFonts(rows, {});
    else
        writeInFull(ordered(rows));
    m_lines.emptyLine();
    writeSummary(summary, hidden);
}

TextReport::Rows TextReport::ordered(const Rows& rows) const
{
    if (m_setting.selection == nullptr || !m_setting.selection->sorts()) {
        Rows ordered = rows;
        std::ranges::stable_sort(ordered, comesBefore);
        return ordered;
    }
    // Several files make one table, so it is not enough that each of them is sorted.
    std::vector<std::pair<std::string, const AuditRow*>> keyed;
    for (const AuditRow* row : rows)
        keyed.emplace_back(m_setting.selection->key(*row), row);
    std::ranges::stable_sort(keyed, {}, &std::pair<std::string, const AuditRow*>::first);
    Rows ordered;
    for (const auto& [key, row] : keyed)
        ordered.push_back(row);
    return ordered;
}

void TextReport::writeFonts(const Rows& rows, const std::string& folder)
{
    if (m_setting.form == TextSetting::Form::table)
        writeFontTable(m_lines, ordered(rows), folder);
    else
        writeInFull(ordered(rows));
}

void TextReport::writeInFull(const Rows& rows)
{
    const bool everything = m_setting.form != TextSetting::Form::table;
    for (const AuditRow* row : rows) {
        if (row != rows.front()) m_lines.emptyLine();
        writeFontDetails(m_lines, *row, {.everything = everything, .notes = m_setting.notes});
    }
}

void TextReport::writeSummary(const AuditSummary& summary, std::size_t hidden)
{
    m_lines.text(summary.text(), Ink::strong);
    if (hidden > 0) m_lines.text(" (" + std::to_string(hidden) + " more not shown)", Ink::faint);
    m_lines.endLine();
    addTo(m_total, summary);
    m_totalHidden += hidden;
    ++m_summaryCount;
}

void TextReport::finish()
{
    writeFiles();
    if (!m_started) return; // what could not be read was told on standard error
    if (m_summaryCount > 1) {
        m_lines.emptyLine();
        m_lines.text("In all, " + m_total.text(), Ink::strong);
        if (m_totalHidden > 0)
            m_lines.text(" (" + std::to_string(m_totalHidden) + " more not shown)", Ink::faint);
        m_lines.endLine();
    }
    if (m_summaryCount == 0) m_lines.emptyLine();
    m_lines.paragraph(Classifier::disclaimer, 0, Ink::faint);
}

} // namespace quillmark::cli
