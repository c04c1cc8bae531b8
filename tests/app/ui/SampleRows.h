// Rows for the tests of lists, made by hand.
#pragma once

#include "model/AuditList.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace quillmark::test {

/// What matters of a font in a list. Empty texts are left out.
struct SampleFont {
    std::string name;
    Verdict verdict{Verdict::unknown};
    std::string postScriptName{};
    std::string manufacturer{};
    std::string filePath{};
    bool appleBundled{};
    LicenseKind license{LicenseKind::none};
};

inline AuditRow rowOf(const SampleFont& font)
{
    AuditRow row;
    row.facts.fullName = font.name;
    row.facts.family = font.name;
    row.facts.postScriptName = font.postScriptName.empty() ? font.name : font.postScriptName;
    if (!font.manufacturer.empty()) row.facts.manufacturer = font.manufacturer;
    if (!font.filePath.empty()) row.facts.filePath = font.filePath;
    row.assessment.verdict = font.verdict;
    row.assessment.appleBundled = font.appleBundled;
    row.assessment.license = font.license;
    return row;
}

inline std::vector<AuditRow> rowsOf(const std::vector<SampleFont>& fonts)
{
    std::vector<AuditRow> rows;
    for (const SampleFont& font : fonts)
        rows.push_back(rowOf(font));
    return rows;
}

inline AuditList listOf(const std::vector<SampleFont>& fonts)
{
    return AuditList::ofInstalled(RowList(rowsOf(fonts)));
}

/// A row of a document, called in it as the font calls itself.
inline AuditRow documentRow(const SampleFont& font, EmbeddedProgram program, std::vector<int> pages,
                            bool subset = false)
{
    AuditRow row = rowOf(font);
    row.facts.origin = FontOrigin::document;
    row.pdf = PDFFontInfo{};
    row.pdf->pdfNames = {row.facts.postScriptName};
    row.pdf->program = program;
    row.pdf->pages = std::move(pages);
    row.pdf->subset = subset;
    return row;
}

inline AuditList documentOf(std::vector<AuditRow> rows, const std::string& path = "/papers/a.pdf")
{
    DocumentAudit audit;
    audit.path = path;
    audit.fileName = path.substr(path.rfind('/') + 1);
    audit.pageCount = 12;
    audit.rows = std::move(rows);
    return AuditList::ofDocument(std::make_shared<const DocumentAudit>(std::move(audit)));
}

} // namespace quillmark::test
