// The whole check of a PDF in memory.

#include "Harness.h"

#include "pdf/PDFFontScanner.h"

#include <algorithm>
#include <functional>

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace quillmark;
    // A font that is known under every name of an even length.
    const auto lookup = [](std::string_view name) -> std::optional<FontFacts> {
        if (name.size() % 2 != 0) return std::nullopt;
        FontFacts facts;
        facts.postScriptName = facts.family = "Known";
        facts.filePath = "/fonts/Known.ttf";
        return facts;
    };
    const auto result = PDFFontScanner::audit(fuzz::input(data, size), "fuzz.pdf", lookup);
    if (const auto* error = std::get_if<PDFCheckError>(&result)) {
        fuzz::expect(error->fileName == "fuzz.pdf");
        return 0;
    }
    const auto& audit = std::get<DocumentAudit>(result);
    fuzz::expect(audit.pageCount >= 0);
    for (const auto& row : audit.rows) {
        // A PDF can give a font an empty name.
        fuzz::expect(repairedUtf8(row.facts.postScriptName) == row.facts.postScriptName);
        fuzz::expect(repairedUtf8(row.facts.family) == row.facts.family);
        fuzz::expectText(row.facts.fullName);
        fuzz::expectText(row.facts.copyright);
        fuzz::expectText(row.facts.licenseDescription);
        fuzz::expect(!row.assessment.headline.empty() && !row.assessment.reasons.empty());
        fuzz::expect(row.pdf.has_value());
        const auto& pdf = *row.pdf;
        fuzz::expect(!pdf.pdfNames.empty() && std::ranges::is_sorted(pdf.pdfNames));
        fuzz::expect(!pdf.pages.empty() && pdf.pages.front() >= 1 &&
                     pdf.pages.back() <= audit.pageCount);
        fuzz::expect(std::ranges::adjacent_find(pdf.pages, std::greater_equal<>()) ==
                     pdf.pages.end());
    }
    fuzz::expect(std::ranges::is_sorted(
        audit.rows, {}, [](const AuditRow& row) { return row.assessment.verdict; }));
    return 0;
}
