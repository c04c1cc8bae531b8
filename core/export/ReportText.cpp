#include "export/ReportText.h"

#include "assessment/Brand.h"
#include "assessment/Classifier.h"
#include "text/Printable.h"
#include "text/WebLink.h"

#include <span>
#include <utility>

namespace quillmark {

Ink ink(Verdict verdict)
{
    switch (verdict) {
    case Verdict::restricted:
        return Ink::restricted;
    case Verdict::unknown:
        return Ink::unknown;
    case Verdict::likelyOK:
        return Ink::likelyOK;
    }
    return Ink::black;
}

std::string Paragraph::text() const
{
    std::string joined;
    for (const TextRun& run : runs)
        joined += run.text;
    return joined;
}

namespace ReportText {
namespace {

constexpr double bodyLeading = 11.25;
constexpr double emphasisLeading = 12;
constexpr double titleLeading = 20;

constexpr std::size_t detailHang = 4; // under a reason's first word

Paragraph paragraph(std::string_view text, Ink ink, std::size_t hang = 0)
{
    return {.runs = {{printable(text), Weight::regular, ink}},
            .size = bodySize,
            .leading = bodyLeading,
            .hang = hang};
}

Paragraph emptyLine()
{
    return {.runs = {}, .size = bodySize, .leading = bodyLeading};
}

/// A link at the text that is shown and ends at `end`, when it is an address and shown as it is.
std::optional<TextLink> link(std::string_view shown, std::size_t end, std::string_view text)
{
    auto address = webLink(text);
    if (!address || shown != text) return std::nullopt;
    return TextLink{end - shown.size(), end, std::move(*address)};
}

/// "  Label: value"
Paragraph fact(std::string_view label, std::string_view value)
{
    std::string text = "  ";
    text += label;
    text += value;
    return paragraph(text, Ink::grey, detailHang);
}

Paragraph linkedFact(std::string_view label, std::string_view value)
{
    Paragraph made = fact(label, value);
    made.link = link(printable(value), made.runs.front().text.size(), value);
    return made;
}

void appendFacts(std::vector<Paragraph>& block, const AuditRow& row)
{
    const FontFacts& facts = row.facts;
    block.push_back(fact("PostScript: ", facts.postScriptName));
    block.push_back(fact("License: ", label(row.assessment.license)));
    if (facts.licenseURL) block.push_back(linkedFact("License URL: ", *facts.licenseURL));
    if (facts.manufacturer) block.push_back(fact("Maker: ", *facts.manufacturer));
    if (row.pdf)
        block.push_back(
            fact("In the PDF: ", embeddedText(*row.pdf) + "; pages " + pageList(*row.pdf)));
    if (facts.filePath) block.push_back(fact("File: ", *facts.filePath));
}

/// The lines of a text that a person has typed, tabs as blanks.
std::vector<std::string> typedLines(std::string_view text)
{
    std::vector<std::string> lines(1);
    for (std::size_t at = 0; at < text.size(); ++at) {
        const char character = text[at];
        if (character == '\r' && at + 1 < text.size() && text[at + 1] == '\n') continue;
        if (character == '\n' || character == '\r')
            lines.emplace_back();
        else
            lines.back() += character == '\t' ? ' ' : character;
    }
    return lines;
}

void appendNote(std::vector<Paragraph>& block, const LicenseNote& note)
{
    std::string text = "  Your note: ";
    const auto add = [&text, start = text.size()](std::string_view before, std::string_view part) {
        if (text.size() > start) text += "; ";
        text += before;
        text += part;
    };
    if (note.license != HeldLicense::notSet) add({}, label(note.license));
    if (!note.boughtFrom.empty()) add("from ", printable(note.boughtFrom));
    std::optional<TextLink> noteLink;
    if (!note.url.empty()) {
        const std::string url = printable(note.url);
        add({}, url);
        noteLink = link(url, text.size(), note.url);
    }
    if (note.attachmentName) add("file: ", printable(*note.attachmentName));
    std::vector<std::string> lines = typedLines(note.text);
    if (!note.text.empty()) add({}, lines.front());
    block.push_back(paragraph(text, Ink::grey, detailHang));
    block.back().link = std::move(noteLink);
    for (const std::string& line : std::span(lines).subspan(1)) {
        block.push_back(paragraph(line, Ink::grey, detailHang));
        block.back().indent = detailHang;
    }
}

Paragraph summaryLine(const AuditSummary& summary)
{
    const auto count = [](int number, std::string_view words, Verdict verdict) {
        std::string text = std::to_string(number);
        text += words;
        return TextRun{std::move(text), Weight::bold, ink(verdict)};
    };
    const int all = summary.restricted + summary.unknown + summary.likelyOK;
    const auto plain = [](std::string text) { return TextRun{std::move(text), Weight::bold}; };
    return {.runs = {plain(std::to_string(all) + " fonts: "),
                     count(summary.restricted, " restricted", Verdict::restricted), plain(", "),
                     count(summary.unknown, " unknown", Verdict::unknown), plain(", "),
                     count(summary.likelyOK, " likely OK", Verdict::likelyOK), plain(".")},
            .size = emphasisSize,
            .leading = emphasisLeading};
}

} // namespace

std::vector<Paragraph> heading(std::string_view title, std::string_view subtitle,
                               std::string_view date, const AuditSummary& summary)
{
    std::string check = "Checked ";
    check += date;
    check += " with ";
    check += Brand;
    check += '.';
    std::string disclaimer(Classifier::disclaimer);
    disclaimer += " Each verdict reads the font's own fields (embedding bits, license text and "
                  "URL, copyright, where it's installed), not the license you hold.";
    std::vector<Paragraph> paragraphs{
        {.runs = {{printable(title), Weight::bold}}, .size = titleSize, .leading = titleLeading},
        paragraph(subtitle, Ink::black),
        paragraph(check, Ink::grey),
        summaryLine(summary),
        paragraph(disclaimer, Ink::grey),
        emptyLine(),
    };
    constexpr double groupSpace = 5; // around the counts, which are what a reader looks for first
    paragraphs[3].spaceBefore = groupSpace;
    paragraphs[4].spaceBefore = groupSpace;
    return paragraphs;
}

std::vector<Paragraph> block(const AuditRow& row, const LicenseNote* note)
{
    const Verdict verdict = row.assessment.verdict;
    std::vector<Paragraph> paragraphs;
    paragraphs.push_back(
        {.runs = {{printable(row.facts.displayName()), Weight::bold, Ink::black},
                  {"  [" + std::string(label(verdict)) + "]", Weight::bold, ink(verdict)}},
         .size = emphasisSize,
         .leading = emphasisLeading});
    paragraphs.push_back(paragraph(row.assessment.headline, Ink::black));
    for (const std::string& reason : row.assessment.reasons)
        paragraphs.push_back(paragraph("  - " + reason, Ink::black, detailHang));
    appendFacts(paragraphs, row);
    if (note) appendNote(paragraphs, *note);
    paragraphs.push_back(emptyLine());
    return paragraphs;
}

std::string footer(std::size_t pageNumber)
{
    std::string text(Brand);
    text += " audit, page ";
    text += std::to_string(pageNumber);
    text += ". ";
    text += Classifier::disclaimer;
    return text;
}

} // namespace ReportText
} // namespace quillmark
