#include "cli/FontTable.h"

#include "fontfile/EmbeddingRights.h"
#include "text/DisplayWidth.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace quillmark::cli {
namespace {

constexpr std::size_t gap = 2; // blanks between columns

enum Column : std::size_t { font, verdict, license, embedding, source, columnCount };

struct ColumnLook {
    std::string_view title;
    std::size_t least;  // columns below which it says too little
    std::size_t widest; // wider ones push the next column away from all the rest
};
/// The columns that the application's table has. The least widths of all but the embedding bits
/// fill a terminal of 80 columns.
constexpr std::array<ColumnLook, columnCount> looks{{
    {"Font", 28, 40},
    {"Verdict", 12, 12},
    {"License in the font", 18, 40},
    {"Embedding bits", 22, 40},
    {"Source", 16, 72},
}};

/// The sign that stands beside a verdict's words.
std::string_view symbol(Verdict verdict)
{
    switch (verdict) {
    case Verdict::restricted:
        return "✗";
    case Verdict::unknown:
        return "?";
    case Verdict::likelyOK:
        return "✓";
    }
    return {};
}

using Cells = std::array<std::string, columnCount>;

struct Line {
    const AuditRow* row{};
    Cells cells;
};

std::string below(const std::string& folder, const std::string& path)
{
    if (!folder.empty() && path.size() > folder.size() && path.starts_with(folder) &&
        (folder.ends_with('/') || path[folder.size()] == '/'))
        return path.substr(folder.ends_with('/') ? folder.size() : folder.size() + 1);
    return path;
}

std::string embeddingText(const FontFacts& facts)
{
    const auto fsType = facts.fsType();
    return fsType ? std::string(EmbeddingRights{*fsType}.label()) : "No OS/2 table";
}

Cells cells(const AuditRow& row, const std::string& folder)
{
    const Assessment& assessment = row.assessment;
    Cells cells;
    cells[font] = oneLine(row.facts.displayName());
    cells[verdict] =
        std::string(symbol(assessment.verdict)) + ' ' + std::string(shortLabel(assessment.verdict));
    cells[license] = label(assessment.license);
    cells[embedding] = embeddingText(row.facts);
    cells[source] = assessment.appleBundled
                        ? "Came with macOS"
                        : oneLine(below(folder, row.facts.filePath.value_or(std::string())));
    return cells;
}

using Widths = std::array<std::size_t, columnCount>;

Widths naturalWidths(const std::vector<Line>& table)
{
    Widths widths{};
    for (std::size_t column = 0; column < columnCount; ++column)
        widths[column] = displayWidth(looks[column].title);
    for (const Line& line : table)
        for (std::size_t column = 0; column < columnCount; ++column)
            widths[column] = std::max(widths[column], displayWidth(line.cells[column]));
    for (std::size_t column = 0; column < columnCount; ++column)
        widths[column] = std::min(widths[column], looks[column].widest);
    return widths;
}

std::size_t total(const Widths& widths)
{
    std::size_t sum = 0;
    for (const std::size_t width : widths)
        if (width > 0) sum += (sum > 0 ? gap : 0) + width;
    return sum;
}

/// The widths that fit into `available` columns; zero for a column that is left out.
Widths fitted(const Widths& natural, std::size_t available)
{
    Widths widths{};
    for (std::size_t column = 0; column < columnCount; ++column)
        widths[column] = std::min(natural[column], looks[column].least);
    for (const Column dispensable : {embedding, license, source})
        if (total(widths) > available) widths[dispensable] = 0;
    if (total(widths) > available) {
        const std::size_t rest = gap + widths[verdict];
        widths[font] = available > rest + 1 ? available - rest : 1;
    }
    // What is left goes to those whose texts are read from their start, and then to the paths.
    for (const Column column : {font, license, embedding, source}) {
        if (widths[column] == 0) continue;
        const std::size_t left = available - std::min(available, total(widths));
        widths[column] = std::min(natural[column], widths[column] + left);
    }
    return widths;
}

/// The end of a path, which tells more than its start.
std::string endOfPath(const std::string& path, std::size_t columns)
{
    const std::size_t width = displayWidth(path);
    if (width <= columns) return path;
    std::string_view end = path;
    end.remove_prefix(prefixOfWidth(end, width - columns + 1).size());
    // A wide character that did not fit into that start.
    if (displayWidth(end) >= columns) end.remove_prefix(prefixOfWidth(end, 2).size());
    return "…" + std::string(end);
}

void writeTitles(TextLines& lines, const Widths& widths)
{
    for (std::size_t column = 0; column < columnCount; ++column)
        if (widths[column] > 0)
            lines.cell(looks[column].title, widths[column], Ink::faint).skip(gap);
    lines.endLine();
}

void writeLine(TextLines& lines, const Line& line, const Widths& widths)
{
    const bool isTerminal = lines.page().columns.has_value();
    for (std::size_t column = 0; column < columnCount; ++column) {
        if (widths[column] == 0) continue;
        const std::string& text = line.cells[column];
        switch (static_cast<Column>(column)) {
        case font:
            lines.cell(text, widths[column], Ink::strong);
            break;
        case verdict:
            lines.cell(text, widths[column], ink(line.row->assessment.verdict));
            break;
        case source:
            lines.cell(isTerminal ? endOfPath(text, widths[column]) : text, widths[column],
                       Ink::faint);
            break;
        case license:
        case embedding:
        case columnCount:
            lines.cell(text, widths[column]);
            break;
        }
        lines.skip(gap);
    }
    lines.endLine();
}

} // namespace

void writeVerdict(TextLines& lines, Verdict verdict)
{
    lines.text(symbol(verdict), ink(verdict)).skip(1).text(label(verdict), ink(verdict));
}

void writeFontTable(TextLines& lines, const std::vector<const AuditRow*>& rows,
                    const std::string& folder)
{
    std::vector<Line> table;
    table.reserve(rows.size());
    for (const AuditRow* row : rows)
        table.push_back({row, cells(*row, folder)});
    auto widths = naturalWidths(table);
    if (const auto columns = lines.page().columns) widths = fitted(widths, *columns);
    writeTitles(lines, widths);
    for (const Line& line : table)
        writeLine(lines, line, widths);
}

} // namespace quillmark::cli
