#include "ui/AuditColumn.h"

#include "export/AuditExport.h"
#include "fontfile/EmbeddingRights.h"
#include "model/FileSentence.h"
#include "model/QtText.h"
#include "text/Printable.h"
#include "text/Utf8.h"
#include "ui/VerdictLook.h"

#include <algorithm>
#include <cstddef>
#include <string>

namespace quillmark {

namespace {

struct Column {
    std::string_view title;
    std::string_view documentTitle;
    ColumnWidths widths;
    std::string (*text)(const AuditRow& row);
};

std::string sourceText(const AuditRow& row)
{
    if (row.pdf) return embeddedText(*row.pdf);
    if (row.assessment.appleBundled) return "Came with macOS";
    return row.facts.filePath ? shownName(*row.facts.filePath) : std::string();
}

std::string embeddingText(const AuditRow& row)
{
    const auto fsType = row.facts.fsType();
    return fsType ? std::string(EmbeddingRights{*fsType}.label()) : "No OS/2 table";
}

// In the order of the enumeration.
constexpr auto columns = std::to_array<Column>({
    {"Font", "Font", {160, 230}, [](const AuditRow& row) { return row.facts.displayName(); }},
    {"Verdict",
     "Verdict",
     {96, 110, 140},
     [](const AuditRow& row) { return std::string(shortLabel(row.assessment.verdict)); }},
    {"License in the font",
     "License in the font",
     {120, 170},
     [](const AuditRow& row) { return std::string(label(row.assessment.license)); }},
    {"Embedding bits", "Embedding bits", {100, 150}, embeddingText},
    {"Pages",
     "Pages",
     {50, 90},
     [](const AuditRow& row) { return row.pdf ? pageRanges(*row.pdf) : std::string(); }},
    {"Source", "In the PDF", {100, 170}, sourceText},
});
static_assert(columns.size() == rawValues<AuditColumn>.size());

const Column& entryOf(AuditColumn column)
{
    return columns.at(static_cast<std::size_t>(column));
}

constexpr auto ofDocuments = allCases<AuditColumn>;
constexpr std::array ofFonts{AuditColumn::font, AuditColumn::verdict, AuditColumn::license,
                             AuditColumn::embedding, AuditColumn::source};

/// A name can have megabytes. More than this no display shows in one line.
constexpr std::size_t longestCell = 500; // bytes

QString cellText(const std::string& text)
{
    if (text.size() <= longestCell) return qtText(printable(text));
    std::string start;
    for (std::string_view rest = text; start.size() < longestCell;) {
        const Utf8::Character character = Utf8::first(rest);
        start += rest.substr(0, character.length);
        rest.remove_prefix(character.length);
    }
    return qtText(printable(start) + "…");
}

} // namespace

std::span<const AuditColumn> columnsOf(ListKind kind)
{
    switch (kind) {
    case ListKind::fonts:
        return ofFonts;
    case ListKind::document:
        return ofDocuments;
    }
    return {};
}

QString columnTitle(AuditColumn column, ListKind kind)
{
    const Column& found = entryOf(column);
    return qtText(kind == ListKind::document ? found.documentTitle : found.title);
}

ColumnWidths columnWidths(AuditColumn column)
{
    return entryOf(column).widths;
}

QString columnText(AuditColumn column, const AuditRow& row)
{
    return cellText(entryOf(column).text(row));
}

QString secondaryText(AuditColumn column, const AuditRow& row)
{
    return column == AuditColumn::font ? cellText(row.otherName().value_or(std::string()))
                                       : QString();
}

QString spokenText(AuditColumn column, const AuditRow& row)
{
    if (column == AuditColumn::verdict) return verdictLook(row.assessment.verdict).accessibleLabel;
    const QString text = columnText(column, row);
    const QString beside = secondaryText(column, row);
    return beside.isEmpty() ? text : text + QStringLiteral(", ") + beside;
}

QString copiedText(ListKind kind, const AuditRow& row)
{
    QString line;
    for (const AuditColumn column : columnsOf(kind)) {
        std::string cell = stdText(spokenText(column, row));
        AuditExport::guardFormula(cell);
        if (column != columnsOf(kind).front()) line += QLatin1Char('\t');
        line += qtText(cell);
    }
    return line;
}

} // namespace quillmark
