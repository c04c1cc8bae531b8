#include "DocumentFixture.h"

namespace quillmark::test {
namespace {

std::string pageList(const std::vector<int>& pages)
{
    std::string text;
    for (std::size_t i = 0; i < pages.size();) {
        std::size_t end = i;
        while (end + 1 < pages.size() && pages[end + 1] == pages[end] + 1)
            ++end;
        text += (i > 0 ? " " : "") + std::to_string(pages[i]);
        if (end > i) text += "-" + std::to_string(pages[end]);
        i = end + 1;
    }
    return "[" + text + "]";
}

} // namespace

PDFFontScanner::Scan scanned(const Bytes& pdf)
{
    const auto opened = PDF::open(pdf);
    const auto* document = std::get_if<std::unique_ptr<PDF::Document>>(&opened);
    EXPECT_NE(document, nullptr) << "the document does not open";
    return document ? PDFFontScanner::scan(**document) : PDFFontScanner::Scan{};
}

PDFFontScanner::Scan scanned(const PDFBytes& pdf)
{
    return scanned(pdf.build());
}

std::optional<PDFCheckError::Kind> openingError(const Bytes& pdf)
{
    const auto opened = PDF::open(pdf);
    const auto* kind = std::get_if<PDFCheckError::Kind>(&opened);
    return kind ? std::optional(*kind) : std::nullopt;
}

std::string lines(const PDFFontScanner::Scan& scan)
{
    std::string text;
    for (const auto& font : scan.fonts) {
        text += font.baseName + " " + font.subtype + " " + std::string(rawValue(font.program));
        if (font.subset) text += " subset";
        text += " " + pageList(font.pages);
        if (font.data) text += " " + std::to_string(font.data->size()) + " bytes";
        text += "\n";
    }
    return text;
}

std::string namesAndPages(const PDFFontScanner::Scan& scan)
{
    std::string text;
    for (const auto& font : scan.fonts)
        text += (text.empty() ? "" : ", ") + font.baseName + " " + pageList(font.pages);
    return text;
}

std::chrono::system_clock::time_point checkTime()
{
    return std::chrono::system_clock::time_point(std::chrono::seconds(1'700'000'000));
}

DocumentAudit audited(const Bytes& pdf, const KnownFonts& known)
{
    const auto lookup = [&known](std::string_view name) -> std::optional<FontFacts> {
        const auto found = known.find(name);
        return found == known.end() ? std::nullopt : std::optional(found->second);
    };
    const auto result = PDFFontScanner::audit(pdf, "book.pdf", lookup, checkTime);
    const auto* audit = std::get_if<DocumentAudit>(&result);
    EXPECT_NE(audit, nullptr) << "the document does not open";
    return audit ? *audit : DocumentAudit{};
}

DocumentAudit audited(const PDFBytes& pdf, const KnownFonts& known)
{
    return audited(pdf.build(), known);
}

AuditRow auditedFont(const PDFBytes& pdf, const KnownFonts& known)
{
    const auto audit = audited(pdf, known);
    EXPECT_EQ(audit.rows.size(), 1U);
    return audit.rows.empty() ? AuditRow{} : audit.rows.front();
}

} // namespace quillmark::test
