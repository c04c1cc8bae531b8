// The whole check of a PDF: opening, the walk over its fonts, their programs, the assessment.

#include "Harness.h"

#include "pdf/PDFFontScanner.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace quillmark;
    const auto lookup = [](std::string_view name) -> std::optional<FontFacts> {
        fuzz::expectText(name);
        return std::nullopt;
    };
    const auto result = PDFFontScanner::audit(fuzz::input(data, size), "fuzz.pdf", lookup);
    if (const auto* audit = std::get_if<DocumentAudit>(&result)) {
        fuzz::expect(audit->pageCount >= 0);
        for (const AuditRow& row : audit->rows) {
            fuzz::expectText(std::string_view(row.facts.displayName()));
            fuzz::expect(row.pdf && !row.pdf->pdfNames.empty() && !row.pdf->pages.empty());
            for (const int page : row.pdf->pages)
                fuzz::expect(page >= 1 && page <= audit->pageCount);
        }
    }
    return 0;
}
