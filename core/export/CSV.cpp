#include "assessment/Classifier.h"
#include "export/AuditExport.h"
#include "fontfile/EmbeddingRights.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace quillmark::AuditExport {
namespace {

using Text = std::optional<std::string>;

/// A column's value is appended as it is; the caller escapes it afterwards, in place.
struct Column {
    std::string_view header;
    void (*append)(std::string& field, const AuditRow& row, const LicenseNote* note);
};

void append(std::string& field, const Text& text)
{
    if (text) field += *text;
}

constexpr auto columns = std::to_array<Column>({
    {"Font", [](auto& field, auto& row, auto*) { field += row.facts.displayName(); }},
    {"PostScript name", [](auto& field, auto& row, auto*) { field += row.facts.postScriptName; }},
    {"Family", [](auto& field, auto& row, auto*) { field += row.facts.family; }},
    {"Style", [](auto& field, auto& row, auto*) { field += row.facts.style; }},
    {"Verdict", [](auto& field, auto& row, auto*) { field += label(row.assessment.verdict); }},
    {"Why", [](auto& field, auto& row, auto*) { field += row.assessment.headline; }},
    {"License in font",
     [](auto& field, auto& row, auto*) { field += label(row.assessment.license); }},
    {"License URL", [](auto& field, auto& row, auto*) { append(field, row.facts.licenseURL); }},
    {"Embedding bits",
     [](auto& field, auto& row, auto*) {
         field += row.facts.os2 ? EmbeddingRights{row.facts.os2->fsType}.summary() : "no OS/2 table";
     }},
    {"fsType",
     [](auto& field, auto& row, auto*) {
         if (row.facts.os2) field += EmbeddingRights{row.facts.os2->fsType}.hex();
     }},
    {"Vendor ID",
     [](auto& field, auto& row, auto*) {
         if (row.facts.os2) append(field, row.facts.os2->vendorID);
     }},
    {"Maker", [](auto& field, auto& row, auto*) { append(field, row.facts.manufacturer); }},
    {"Copyright", [](auto& field, auto& row, auto*) { append(field, row.facts.copyright); }},
    {"Apple system font",
     [](auto& field, auto& row, auto*) { field += row.assessment.appleBundled ? "yes" : "no"; }},
    {"File", [](auto& field, auto& row, auto*) { append(field, row.facts.filePath); }},
    {"In PDF",
     [](auto& field, auto& row, auto*) {
         if (row.pdf) field += embeddedText(*row.pdf);
     }},
    {"Pages",
     [](auto& field, auto& row, auto*) {
         if (row.pdf) field += pageList(*row.pdf);
     }},
    {"Your license",
     [](auto& field, auto&, auto* note) {
         if (note && note->license != HeldLicense::notSet) field += label(note->license);
     }},
    {"Bought from",
     [](auto& field, auto&, auto* note) {
         if (note) field += note->boughtFrom;
     }},
    {"License link",
     [](auto& field, auto&, auto* note) {
         if (note) field += note->url;
     }},
    {"Attachment",
     [](auto& field, auto&, auto* note) {
         if (note) append(field, note->attachmentName);
     }},
    {"Your notes",
     [](auto& field, auto&, auto* note) {
         if (note) field += note->text;
     }},
});

constexpr std::string_view lineEnd = "\r\n";
constexpr std::string_view formulaStarts = "=+-@";

/// Escapes what stands in `text` from `start` on, as one field.
void escapeFrom(std::string& text, std::size_t start)
{
    guardFormula(text, start);
    std::size_t quotes = 0;
    bool quoted = false;
    for (const char character : std::string_view(text).substr(start)) {
        quotes += character == '"' ? 1 : 0;
        quoted |= character == ',' || character == '"' || character == '\r' || character == '\n';
    }
    if (!quoted) return;
    // From the end, so that nothing is overwritten before it has moved.
    std::size_t from = text.size();
    text.resize(text.size() + quotes + 2);
    std::size_t to = text.size();
    text[--to] = '"';
    while (from > start) {
        const char character = text[--from];
        text[--to] = character;
        if (character == '"') text[--to] = '"';
    }
    text[--to] = '"';
}

void appendField(std::string& text, std::string_view field)
{
    const std::size_t start = text.size();
    text += field;
    escapeFrom(text, start);
}

} // namespace

void appendCsvHeader(std::string& text)
{
    for (const Column& column : columns) {
        if (&column != columns.data()) text += ',';
        appendField(text, column.header);
    }
    text += lineEnd;
}

void appendCsvRow(std::string& text, const AuditRow& row, const NotesBook& notes)
{
    const LicenseNote* note = notes.note(row.facts.postScriptName);
    for (const Column& column : columns) {
        if (&column != columns.data()) text += ',';
        const std::size_t start = text.size();
        column.append(text, row, note);
        escapeFrom(text, start);
    }
    text += lineEnd;
}

void appendCsvDisclaimer(std::string& text)
{
    appendField(text, "Note");
    text += ',';
    appendField(text, Classifier::disclaimer);
    text += lineEnd;
}

void guardFormula(std::string& text, std::size_t start)
{
    // A spreadsheet shows what follows an apostrophe instead of evaluating it. NULs in front do not
    // count: LibreOffice drops them, and takes what is left for a formula.
    const std::size_t first = text.find_first_not_of('\0', start);
    if (first != std::string::npos && formulaStarts.find(text[first]) != std::string_view::npos)
        text.insert(start, 1, '\'');
}

std::string csv(std::span<const AuditRow> rows, const NotesBook& notes)
{
    std::string text;
    appendCsvHeader(text);
    for (const AuditRow& row : rows)
        appendCsvRow(text, row, notes);
    appendCsvDisclaimer(text);
    return text;
}

} // namespace quillmark::AuditExport
