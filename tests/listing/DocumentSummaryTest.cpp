#include "listing/DocumentSummary.h"

#include "text/DateText.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace quillmark {
namespace {

using namespace std::chrono_literals;

DocumentAudit auditOf(std::vector<AuditRow> rows)
{
    return {.path = "/book.pdf",
            .fileName = "book.pdf",
            .pageCount = 12'000,
            .checkedAt = std::chrono::sys_days(std::chrono::year(2026) / 3 / 14) + 9h + 26min,
            .rows = std::move(rows)};
}

AuditRow usedRow(EmbeddedProgram program, bool read, std::optional<std::string> match = {})
{
    AuditRow row;
    row.pdf = PDFFontInfo{.pdfNames = {},
                          .subtype = {},
                          .program = program,
                          .subset = false,
                          .pages = {},
                          .matchedPath = std::move(match),
                          .matchedByFamily = false,
                          .readEmbeddedData = read};
    return row;
}

TEST(DocumentSummary, TheLineHasPlainNumbersAndTheTimeOfDay)
{
    const DocumentAudit audit = auditOf(std::vector<AuditRow>(1'234));
    const std::string line = documentLine(audit);
    EXPECT_EQ(line,
              "12000 pages \u00B7 1234 embedded fonts \u00B7 checked " + timeText(audit.checkedAt));
    EXPECT_EQ(line.find("2026"), std::string::npos) << "no date";
}

TEST(DocumentSummary, OneRestrictedFontGetsTheSingularSentence)
{
    EXPECT_EQ(documentFinding({.likelyOK = 3, .restricted = 1, .unknown = 2}),
              (DocumentFinding{Verdict::restricted,
                               "1 font here looks restricted for a product you sell. Check its "
                               "license, or rebuild the file with an open-licensed font."}));
}

TEST(DocumentSummary, SeveralRestrictedFontsAreCounted)
{
    EXPECT_EQ(documentFinding({.restricted = 2}),
              (DocumentFinding{Verdict::restricted,
                               "2 fonts here look restricted for a product you sell. Check their "
                               "licenses, or rebuild the file with open-licensed fonts."}));
    EXPECT_TRUE(documentFinding({.restricted = 1'000})->text.starts_with("1000 fonts here"));
}

TEST(DocumentSummary, OnlyLikelyOKFontsAreGoodNews)
{
    EXPECT_EQ(documentFinding({.likelyOK = 1}),
              (DocumentFinding{Verdict::likelyOK,
                               "Every font in this PDF names an open license or isn't embedded."}));
}

TEST(DocumentSummary, UnknownFontsWithoutRestrictedOnesGetNoSentence)
{
    EXPECT_EQ(documentFinding({.unknown = 3}), std::nullopt);
    EXPECT_EQ(documentFinding({.likelyOK = 7, .unknown = 1}), std::nullopt);
}

TEST(DocumentSummary, ADocumentWithoutFontsGetsNoSentence)
{
    EXPECT_EQ(documentFinding({}), std::nullopt);
}

TEST(DocumentSummary, FieldsAreStrippedWhereNothingTellsAboutAnEmbeddedFont)
{
    EXPECT_TRUE(hasStrippedFields(auditOf({usedRow(EmbeddedProgram::cff, false)})));
    EXPECT_TRUE(hasStrippedFields(auditOf(
        {usedRow(EmbeddedProgram::notEmbedded, false), usedRow(EmbeddedProgram::type3, false)})));
    EXPECT_FALSE(hasStrippedFields(auditOf({})));
    EXPECT_FALSE(hasStrippedFields(auditOf({AuditRow{}}))) << "no font of a PDF";
    EXPECT_FALSE(hasStrippedFields(auditOf({usedRow(EmbeddedProgram::notEmbedded, false)})));
    EXPECT_FALSE(hasStrippedFields(auditOf({usedRow(EmbeddedProgram::cff, true)})));
}

TEST(DocumentSummary, AMatchedFontMakesUpForStrippedFields)
{
    EXPECT_FALSE(
        hasStrippedFields(auditOf({usedRow(EmbeddedProgram::cff, false, "/fonts/Brook.ttf")})));
}

TEST(DocumentSummary, TheNoteNamesTheCommands)
{
    EXPECT_EQ(strippedFieldsNote,
              "Some fonts' license fields were stripped when the PDF was made. Scan the folder "
              "with the fonts you used (File › Scan a Font Folder…), then Check Again.");
}

} // namespace
} // namespace quillmark
