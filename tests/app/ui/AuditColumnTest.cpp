#include "ui/AuditColumn.h"

#include "SampleRows.h"
#include "fontfile/EmbeddingRights.h"

#include <gmock/gmock.h>

namespace quillmark::test {
namespace {

using testing::ElementsAre;

std::string shownText(AuditColumn column, const AuditRow& row)
{
    return columnText(column, row).toStdString();
}

std::string textBeside(AuditColumn column, const AuditRow& row)
{
    return secondaryText(column, row).toStdString();
}

std::string sourceOf(const AuditRow& row)
{
    return shownText(AuditColumn::source, row);
}

std::vector<std::string> titles(ListKind kind)
{
    std::vector<std::string> titles;
    for (const AuditColumn column : columnsOf(kind))
        titles.push_back(columnTitle(column, kind).toStdString());
    return titles;
}

TEST(AuditColumn, FontsOnThisComputerHaveASourceAndNoPages)
{
    EXPECT_THAT(titles(ListKind::fonts),
                ElementsAre("Font", "Verdict", "License in the font", "Embedding bits", "Source"));
}

TEST(AuditColumn, ADocumentsFontsHavePagesAndHowTheyAreInThePDF)
{
    EXPECT_THAT(titles(ListKind::document), ElementsAre("Font", "Verdict", "License in the font",
                                                        "Embedding bits", "Pages", "In the PDF"));
}

TEST(AuditColumn, WidthsAreSmallestUsualAndLargest)
{
    struct Expected {
        AuditColumn column;
        int minimum, ideal, maximum;
    };
    for (const auto& [column, minimum, ideal, maximum] : {
             Expected{AuditColumn::font, 160, 230, 0},
             Expected{AuditColumn::verdict, 96, 110, 140},
             Expected{AuditColumn::license, 120, 170, 0},
             Expected{AuditColumn::embedding, 100, 150, 0},
             Expected{AuditColumn::pages, 50, 90, 0},
             Expected{AuditColumn::source, 100, 170, 0},
         }) {
        EXPECT_EQ(columnWidths(column).minimum, minimum);
        EXPECT_EQ(columnWidths(column).ideal, ideal);
        EXPECT_EQ(columnWidths(column).maximum, maximum);
    }
}

TEST(AuditColumn, TextsSayWhatTheFontSaysAndWhatItMeans)
{
    AuditRow row =
        rowOf({.name = "Brook Bold", .verdict = Verdict::likelyOK, .license = LicenseKind::ofl});
    row.facts.os2 = OS2Info{.version = 4, .fsType = 4, .vendorID = std::nullopt};
    EXPECT_EQ(shownText(AuditColumn::font, row), "Brook Bold");
    EXPECT_EQ(shownText(AuditColumn::verdict, row), "Likely OK");
    EXPECT_EQ(shownText(AuditColumn::license, row), label(LicenseKind::ofl));
    EXPECT_EQ(shownText(AuditColumn::embedding, row), EmbeddingRights{4}.label());
    EXPECT_EQ(shownText(AuditColumn::pages, row), "");
    row.facts.os2.reset();
    EXPECT_EQ(shownText(AuditColumn::embedding, row), "No OS/2 table");
}

TEST(AuditColumn, AFontThatCameWithTheSystemSaysSoAsItsSource)
{
    EXPECT_EQ(sourceOf(rowOf({.name = "A", .filePath = "/f/a.ttf", .appleBundled = true})),
              "Came with macOS");
}

TEST(AuditColumn, AnyOtherFontHasItsFilesNameAsItsSource)
{
    EXPECT_EQ(sourceOf(rowOf({.name = "A", .filePath = "/fonts/free/a b.ttf"})), "a b.ttf");
    EXPECT_EQ(sourceOf(rowOf({.name = "A"})), "");
}

TEST(AuditColumn, AFontOfADocumentSaysWhatIsEmbedded)
{
    const auto inPDF = [](EmbeddedProgram program, bool subset) {
        return sourceOf(documentRow({.name = "A", .appleBundled = true}, program, {1}, subset));
    };
    EXPECT_EQ(inPDF(EmbeddedProgram::notEmbedded, false), "Not embedded");
    EXPECT_EQ(inPDF(EmbeddedProgram::trueType, false), "Embedded (TrueType)");
    EXPECT_EQ(inPDF(EmbeddedProgram::trueType, true), "Embedded (TrueType), subset");
    EXPECT_EQ(inPDF(EmbeddedProgram::openType, false), "Embedded (OpenType)");
    EXPECT_EQ(inPDF(EmbeddedProgram::cff, true), "Embedded (CFF), subset");
    EXPECT_EQ(inPDF(EmbeddedProgram::type1, false), "Embedded (Type 1)");
    EXPECT_EQ(inPDF(EmbeddedProgram::type3, false), "Type 3 (drawn glyphs)");
}

TEST(AuditColumn, PagesAreShownAsRanges)
{
    const AuditRow row = documentRow({.name = "A"}, EmbeddedProgram::cff, {1, 2, 3, 9});
    EXPECT_EQ(shownText(AuditColumn::pages, row), "1-3, 9");
}

TEST(AuditColumn, AFontThatThePDFCallsDifferentlyShowsThatNameBesideItsOwn)
{
    AuditRow row = documentRow({.name = "Unnamed font"}, EmbeddedProgram::trueType, {1});
    EXPECT_EQ(textBeside(AuditColumn::font, row), "");
    row.pdf->pdfNames = {"ABCDEF+Brook"};
    EXPECT_EQ(shownText(AuditColumn::font, row), "Unnamed font");
    EXPECT_EQ(textBeside(AuditColumn::font, row), "ABCDEF+Brook");
    EXPECT_EQ(textBeside(AuditColumn::license, row), "");
    EXPECT_EQ(spokenText(AuditColumn::font, row).toStdString(), "Unnamed font, ABCDEF+Brook");
}

TEST(AuditColumn, AVerdictIsSpokenInFull)
{
    const AuditRow row = rowOf({.name = "A", .verdict = Verdict::likelyOK});
    EXPECT_EQ(spokenText(AuditColumn::verdict, row).toStdString(), "Likely OK to embed");
}

TEST(AuditColumn, WhatAFontHoldsCannotTurnOrBreakALine)
{
    EXPECT_EQ(shownText(AuditColumn::font, rowOf({.name = "A\nB\u202EC"})), "A\uFFFDB\uFFFDC");
}

TEST(AuditColumn, ARowIsCopiedInFullWordsWithTabsBetweenItsCells)
{
    AuditRow row = rowOf({.name = "Brook",
                          .verdict = Verdict::likelyOK,
                          .filePath = "/f/b.ttf",
                          .license = LicenseKind::ofl});
    EXPECT_EQ(copiedText(ListKind::fonts, row).toStdString(),
              "Brook\tLikely OK to embed\tSIL Open Font License\tNo OS/2 table\tb.ttf");
    row.facts.filePath.reset();
    EXPECT_TRUE(copiedText(ListKind::fonts, row).endsWith(QLatin1String("No OS/2 table\t")))
        << "an empty cell keeps its place";
    AuditRow inPDF = documentRow({.name = "Unnamed font"}, EmbeddedProgram::cff, {1, 2, 9}, true);
    inPDF.pdf->pdfNames = {"ABCDEF+Brook"};
    EXPECT_EQ(copiedText(ListKind::document, inPDF).toStdString(),
              "Unnamed font, ABCDEF+Brook\tUnknown\tNo license text\tNo OS/2 table\t1-2, 9\t"
              "Embedded (CFF), subset");
}

TEST(AuditColumn, WhatAFontHoldsIsNeitherACellNorALineNorAFormulaWhereItIsPasted)
{
    struct Case {
        const char* name;
        const char* copied;
    };
    for (const Case& each : {
             Case{"A\tB\nC\rD", "A\uFFFDB\uFFFDC\uFFFDD"},
             Case{"\u202Eknoorb", "\uFFFDknoorb"},
             Case{"\u001B[31mred", "\uFFFD[31mred"},
             Case{"=HYPERLINK(\"http://a\")", "'=HYPERLINK(\"http://a\")"},
             Case{"@Brook", "'@Brook"},
             Case{"-Brook", "'-Brook"},
             Case{"+Brook", "'+Brook"},
             Case{"\"Brook\", bold", "\"Brook\", bold"},
         }) {
        const QString text = copiedText(ListKind::fonts, rowOf({.name = each.name}));
        EXPECT_EQ(text.section(QLatin1Char('\t'), 0, 0).toStdString(), each.copied);
        EXPECT_EQ(text.count(QLatin1Char('\t')), 4) << each.name;
    }
    EXPECT_THAT(
        copiedText(ListKind::fonts, rowOf({.name = "A", .filePath = "/f/=1+1.ttf"})).toStdString(),
        testing::EndsWith("\t'=1+1.ttf"));
}

TEST(AuditColumn, ANameOfMegabytesIsCutBetweenTwoCharacters)
{
    std::string name;
    for (int i = 0; i < 1'000'000; ++i)
        name += "ä€";
    const QString text = columnText(AuditColumn::font, rowOf({.name = name}));
    EXPECT_LT(text.size(), 600);
    EXPECT_TRUE(text.endsWith(QString::fromUtf8("…")));
    EXPECT_FALSE(text.contains(QChar::ReplacementCharacter));
}

} // namespace
} // namespace quillmark::test
