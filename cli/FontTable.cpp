#include "cli/FontTable.h"

#include "text/DisplayWidth.h"

#include <algorithm>
#include <array>
#include <span>
#include <string_view>
#include <utility>

namespace quillmark::cli {
namespace {

constexpr std::size_t gap = 2; // blanks between columns
constexpr std::size_t tableIndent = 4;
constexpr std::size_t verdictWidth = 10; // the longest short label

enum Column : std::size_t { name, postScriptName, format, file, columnCount };

/// Wider columns than these would, for one long text, push the next column away from all the rest.
constexpr std::array<std::size_t, columnCount> widest{40, 32, 20, 72};
/// A file's path is cut to what room is left, if it is at least this.
constexpr std::size_t narrowestFile = 20;

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

Cells cells(const AuditRow& row, const std::string& folder)
{
    const FontFacts& facts = row.facts;
    Cells cells;
    cells[name] = oneLine(facts.displayName());
    // A font whose two names are the same needs to be told only once.
    if (facts.postScriptName != facts.displayName())
        cells[postScriptName] = oneLine(facts.postScriptName);
    cells[format] = oneLine(facts.format.value_or(std::string()));
    cells[file] = oneLine(below(folder, facts.filePath.value_or(std::string())));
    return cells;
}

std::array<std::size_t, columnCount> naturalWidths(const std::vector<Line>& table)
{
    std::array<std::size_t, columnCount> widths{};
    for (const Line& line : table)
        for (std::size_t column = 0; column < columnCount; ++column)
            widths[column] = std::max(widths[column], displayWidth(line.cells[column]));
    for (std::size_t column = 0; column < columnCount; ++column)
        widths[column] = std::min(widths[column], widest[column]);
    return widths;
}

/// The widths that fit into `available` columns; zero for a column that is left out.
std::array<std::size_t, columnCount> fitted(std::array<std::size_t, columnCount> widths,
                                            std::size_t available)
{
    std::size_t used = widths[name] = std::min(widths[name], available);
    bool isFull = false;
    for (std::size_t column = name + 1; column < columnCount; ++column) {
        const std::size_t room = available - std::min(available, used + gap);
        if (column == file && room >= narrowestFile)
            widths[column] = std::min(widths[column], room);
        isFull = isFull || widths[column] > room;
        if (isFull) widths[column] = 0;
        if (widths[column] > 0) used += gap + widths[column];
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

std::string fontCount(std::size_t count)
{
    return std::to_string(count) + (count == 1 ? " font" : " fonts");
}

void writeGroupHeading(TextLines& lines, Verdict verdict, std::size_t count)
{
    writeVerdict(lines, verdict);
    lines.text(" · " + fontCount(count), Ink::faint).endLine();
}

void writeLine(TextLines& lines, const Line& line,
               const std::array<std::size_t, columnCount>& widths)
{
    const bool isTerminal = lines.page().columns.has_value();
    // A line that is taken out of a pipe should say by itself what it says about the font.
    if (isTerminal)
        lines.skip(tableIndent);
    else
        lines.skip(2).cell(shortLabel(line.row->assessment.verdict), verdictWidth).skip(gap);
    lines.cell(line.cells[name], widths[name]);
    for (const Column column : {postScriptName, format, file}) {
        if (widths[column] == 0) continue;
        const std::string& text = line.cells[column];
        const bool isCutPath = column == file && isTerminal;
        lines.skip(gap).cell(isCutPath ? endOfPath(text, widths[column]) : text, widths[column],
                             Ink::faint);
    }
    lines.endLine();
}

/// The first of `lines`, which are not empty, with those after it that `projection` calls equal.
std::span<const Line> group(std::span<const Line> lines, auto projection)
{
    const auto end = std::ranges::find_if(lines, [&](const Line& line) {
        return projection(*line.row) != projection(*lines.front().row);
    });
    return {lines.begin(), end};
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
    const auto verdict = [](const AuditRow& row) { return row.assessment.verdict; };
    const auto headline = [](const AuditRow& row) -> std::string_view {
        return row.assessment.headline;
    };
    std::ranges::stable_sort(table, {}, [&](const Line& line) {
        return std::pair(verdict(*line.row), headline(*line.row));
    });

    auto widths = naturalWidths(table);
    if (const auto columns = lines.page().columns)
        widths = fitted(widths, *columns - std::min(*columns - 1, tableIndent));

    std::span<const Line> rest = table;
    while (!rest.empty()) {
        auto sameVerdict = group(rest, verdict);
        rest = rest.subspan(sameVerdict.size());
        writeGroupHeading(lines, verdict(*sameVerdict.front().row), sameVerdict.size());
        while (!sameVerdict.empty()) {
            const auto sameHeadline = group(sameVerdict, headline);
            sameVerdict = sameVerdict.subspan(sameHeadline.size());
            lines.emptyLine();
            lines.skip(2).paragraph(headline(*sameHeadline.front().row), 2);
            for (const Line& line : sameHeadline)
                writeLine(lines, line, widths);
        }
        if (!rest.empty()) lines.emptyLine();
    }
}

} // namespace quillmark::cli
