#include "cli/FontDetails.h"

#include "cli/FontTable.h"
#include "fontfile/EmbeddingRights.h"
#include "pdf/SubsetPrefix.h"
#include "text/DisplayWidth.h"

#include <algorithm>
#include <optional>
#include <string_view>

namespace quillmark::cli {
namespace {

constexpr std::size_t labelWidth = 17; // the longest label and a gap of two
constexpr std::size_t detailIndent = 2;
/// On a terminal narrower than this, what stands beside a label has a line of its own.
constexpr std::size_t narrowPage = 50;

void writeDetail(TextLines& lines, std::string_view label, std::string_view value)
{
    if (value.empty()) return;
    const auto columns = lines.page().columns;
    if (columns && *columns < narrowPage) {
        lines.skip(detailIndent).text(label, Ink::faint).endLine();
        lines.skip(2 * detailIndent).paragraph(value, 2 * detailIndent);
        return;
    }
    lines.skip(detailIndent).cell(label, labelWidth, Ink::faint);
    lines.paragraph(value, detailIndent + labelWidth);
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

std::string embeddingBits(const FontFacts& facts)
{
    const auto fsType = facts.fsType();
    if (!fsType) return "None (no OS/2 table)";
    const EmbeddingRights rights{*fsType};
    return rights.summary() + " (fsType " + rights.hex() + ")";
}

void writeFile(TextLines& lines, const FontFacts& facts)
{
    const auto detail = [&](std::string_view label, const std::optional<std::string>& value) {
        if (value) writeDetail(lines, label, *value);
    };
    writeDetail(lines, "PostScript name", facts.postScriptName);
    writeDetail(lines, "Family", facts.family);
    detail("Copyright", facts.copyright);
    detail("Trademark", facts.trademark);
    detail("Maker", facts.manufacturer);
    detail("Designer", facts.designer);
    if (facts.licenseDescription)
        writeDetail(lines, "License", startOfText(*facts.licenseDescription));
    detail("License file", facts.licenseFile);
    detail("License URL", facts.licenseURL);
    writeDetail(lines, "Embedding bits", embeddingBits(facts));
    if (facts.os2) detail("Vendor ID", facts.os2->vendorID);
    detail("Format", facts.format);
}

std::string whatWasRead(const PDFFontInfo& pdf)
{
    if (pdf.readEmbeddedData && pdf.matchedPath)
        return "The font data inside the PDF, and the matched font file";
    if (pdf.readEmbeddedData) return "The font data inside the PDF";
    if (pdf.matchedPath) return "The matched font file";
    return "Only its name";
}

void writeUse(TextLines& lines, const PDFFontInfo& pdf)
{
    std::string match = "No installed or scanned font with this name";
    if (pdf.matchedPath) match = *pdf.matchedPath + (pdf.matchedByFamily ? " (by family)" : "");
    writeDetail(lines, "Pages", pageRanges(pdf.pages));
    writeDetail(lines, "In the PDF", embeddedText(pdf));
    writeDetail(lines, "Font type", pdf.subtype);
    writeDetail(lines, "Read from", whatWasRead(pdf));
    writeDetail(lines, "Matched to", match);
}

/// The PDF's name for a font that it calls otherwise than the font calls itself.
std::optional<std::string> otherName(const AuditRow& row)
{
    if (!row.pdf || row.pdf->pdfNames.empty()) return std::nullopt;
    const auto isOwnName = [&](const std::string& pdfName) {
        return splitSubsetPrefix(pdfName).cleanName == row.facts.postScriptName;
    };
    if (std::ranges::any_of(row.pdf->pdfNames, isOwnName)) return std::nullopt;
    return row.pdf->pdfNames.front();
}

} // namespace

void writeFontDetails(TextLines& lines, const AuditRow& row)
{
    const Assessment& assessment = row.assessment;
    writeVerdict(lines, assessment.verdict);
    lines.skip(2).text(row.facts.displayName(), Ink::strong);
    if (const auto name = otherName(row)) lines.skip(2).text(*name, Ink::faint);
    lines.endLine();
    lines.skip(2).paragraph(assessment.headline, 2);
    for (const std::string& reason : assessment.reasons)
        lines.skip(2).text("- ").paragraph(reason, 4);
    if (row.pdf)
        writeUse(lines, *row.pdf);
    else
        writeFile(lines, row.facts);
}

std::string pageRanges(const std::vector<int>& pages)
{
    std::string text;
    for (auto first = pages.begin(); first != pages.end();) {
        auto last = first;
        while (last + 1 != pages.end() && *(last + 1) == *last + 1)
            ++last;
        if (!text.empty()) text += ", ";
        text += std::to_string(*first);
        if (last != first) text += "-" + std::to_string(*last);
        first = last + 1;
    }
    return text;
}

} // namespace quillmark::cli
