// Writes a CSV audit of fonts whose texts are what standard input holds, for csv_test.py.
//
// usage: csv_sample < TEXTS > CSV
//
// TEXTS: each text's length in bytes as decimal digits, a line end, and the text.

#include "export/AuditExport.h"

#include <cstddef>
#include <iostream>
#include <string>
#include <vector>

namespace {

using namespace quillmark;

AuditRow rowOf(const std::string& text)
{
    FontFacts facts;
    facts.postScriptName = facts.family = text;
    facts.copyright = facts.manufacturer = facts.licenseURL = facts.filePath = text;
    facts.os2 = OS2Info{.version = 4, .fsType = 0x0304, .vendorID = text};
    Assessment assessment;
    assessment.verdict = Verdict::restricted;
    assessment.headline = text;
    assessment.license = LicenseKind::ofl;
    PDFFontInfo pdf;
    pdf.program = EmbeddedProgram::cff;
    pdf.subset = true;
    pdf.pages = {1, 3};
    return {facts, assessment, pdf};
}

LicenseNote noteOf(const std::string& text)
{
    return {
        .boughtFrom = text,
        .license = HeldLicense::openLicense,
        .url = text,
        .attachmentName = text,
        .text = text,
    };
}

} // namespace

int main()
{
    std::ios::sync_with_stdio(false);
    std::vector<AuditRow> rows;
    NotesBook notes;
    std::size_t length = 0;
    while (std::cin >> length) {
        std::string text(length, '\0');
        std::cin.ignore(); // the line end
        std::cin.read(text.data(), static_cast<std::streamsize>(length));
        rows.push_back(rowOf(text));
        notes.set(noteOf(text), text);
    }
    std::cout << AuditExport::csv(rows, notes);
    return std::cout.flush() ? 0 : 1;
}
