#include "cli/FontDetails.h"

#include "cli/FontTable.h"
#include "listing/FontFactsText.h"
#include "text/DateText.h"
#include "text/DisplayWidth.h"

#include <optional>
#include <string_view>

namespace quillmark::cli {
namespace {

constexpr std::size_t labelWidth = 17; // the longest label and a gap of two
constexpr std::size_t blockIndent = 2;
constexpr std::size_t boxIndent = 4;
/// On a terminal narrower than this, what stands beside a label has a line of its own.
constexpr std::size_t narrowPage = 50;

void writeDetail(TextLines& lines, std::string_view label, std::string_view value,
                 std::size_t indent)
{
    if (value.empty()) return;
    const auto columns = lines.page().columns;
    if (columns && *columns < narrowPage) {
        lines.skip(indent).text(label, Ink::faint).endLine();
        lines.skip(indent + 2).paragraph(value, indent + 2);
        return;
    }
    // The values of all boxes stand in one column.
    const std::size_t width = boxIndent + labelWidth - indent;
    lines.skip(indent).cell(label, width, Ink::faint);
    lines.paragraph(value, indent + width);
}

/// A licence text can fill pages; its start tells which one it is.
std::string startOfText(const std::string& text)
{
    constexpr std::size_t columns = 300;
    std::string line = oneLine(text);
    if (displayWidth(line) <= columns) return line;
    line.resize(prefixOfWidth(line, columns).size());
    return line + "…";
}

void writeBox(TextLines& lines, std::string_view title, const std::vector<Fact>& facts,
              bool everything)
{
    lines.skip(blockIndent).text(title, Ink::strong).endLine();
    // What comes after a pipe finds whole texts.
    const bool isWhole = everything || !lines.page().columns;
    for (const Fact& fact : facts)
        writeDetail(lines, fact.label, isWhole ? fact.value : startOfText(fact.value), boxIndent);
}

} // namespace

void writeNote(TextLines& lines, const LicenseNote& note, std::size_t indent)
{
    writeDetail(lines, "License type", label(note.license), indent);
    writeDetail(lines, "Bought from", note.boughtFrom, indent);
    writeDetail(lines, "Notes", note.text, indent);
    writeDetail(lines, "Link", note.url, indent);
    writeDetail(lines, "Attached file", note.attachmentName.value_or(std::string()), indent);
    writeDetail(lines, "Saved", dateText(note.updated), indent);
}

void writeFontDetails(TextLines& lines, const AuditRow& row, const Detail& detail)
{
    const Assessment& assessment = row.assessment;
    writeVerdict(lines, assessment.verdict);
    lines.skip(2).text(row.facts.displayName(), Ink::strong);
    if (const auto name = row.otherName()) lines.skip(2).text(*name, Ink::faint);
    lines.endLine();
    lines.skip(blockIndent).paragraph(assessment.headline, blockIndent);
    for (const std::string& reason : assessment.reasons)
        lines.skip(blockIndent).text("- ").paragraph(reason, blockIndent + 2);
    writeDetail(lines, "PostScript name", row.facts.postScriptName, blockIndent);
    if (!row.pdf)
        writeDetail(lines, "File", row.facts.filePath.value_or(std::string()), blockIndent);
    if (!row.pdf || detail.everything)
        writeBox(lines, "What the font says", factsOfFont(row.facts), detail.everything);
    if (row.pdf) writeBox(lines, "In this PDF", factsOfUse(*row.pdf), detail.everything);
    if (detail.notes == nullptr) return;
    lines.skip(blockIndent).text("Your license notes", Ink::strong).endLine();
    if (const LicenseNote* note = detail.notes->note(row.facts.postScriptName))
        writeNote(lines, *note, boxIndent);
    else
        lines.skip(boxIndent).text("None", Ink::faint).endLine();
}

} // namespace quillmark::cli
