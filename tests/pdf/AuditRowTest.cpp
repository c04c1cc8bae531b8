#include "pdf/AuditRow.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace quillmark {
namespace {

FontFacts fontNamed(std::string postScriptName)
{
    FontFacts facts;
    facts.postScriptName = std::move(postScriptName);
    facts.family = "Foo";
    facts.origin = FontOrigin::folder;
    return facts;
}

PDFFontInfo usedAs(EmbeddedProgram program)
{
    PDFFontInfo info;
    info.pdfNames = {"ABCDEF+Foo"};
    info.program = program;
    return info;
}

AuditRow rowWith(Verdict verdict)
{
    AuditRow row;
    row.assessment.verdict = verdict;
    return row;
}

TEST(AuditRow, IdIsPathNameAndProgram)
{
    AuditRow row;
    row.facts = fontNamed("Foo-Bold");
    row.facts.filePath = "/fonts/foo.ttf";
    row.pdf = usedAs(EmbeddedProgram::trueType);
    EXPECT_EQ(row.id(), "/fonts/foo.ttf#Foo-Bold#trueType");
}

TEST(AuditRow, IdOfAnInstalledOrScannedFontEndsWithAHash)
{
    AuditRow row;
    row.facts = fontNamed("Foo-Bold");
    row.facts.filePath = "/fonts/foo.ttf";
    EXPECT_EQ(row.id(), "/fonts/foo.ttf#Foo-Bold#");
}

TEST(AuditRow, IdWithoutAFileBeginsWithAHash)
{
    AuditRow row;
    row.facts = fontNamed("Foo-Bold");
    row.pdf = usedAs(EmbeddedProgram::notEmbedded);
    EXPECT_EQ(row.id(), "#Foo-Bold#notEmbedded");
}

TEST(AuditRow, IdOfNothingIsTwoHashes)
{
    EXPECT_EQ(AuditRow{}.id(), "##");
}

TEST(AuditRow, AFontThatThePDFCallsByItsOwnNameHasNoOther)
{
    AuditRow row;
    row.facts = fontNamed("Foo");
    row.pdf = usedAs(EmbeddedProgram::trueType);
    EXPECT_EQ(row.otherName(), std::nullopt);
    row.pdf->pdfNames = {"ABCDEF+Bar", "Foo"};
    EXPECT_EQ(row.otherName(), std::nullopt);
}

TEST(AuditRow, AFontThatThePDFCallsDifferentlyHasThePDFsFirstNameAsItsOther)
{
    AuditRow row;
    row.facts = fontNamed("Unnamed font");
    row.pdf = usedAs(EmbeddedProgram::trueType);
    row.pdf->pdfNames = {"ABCDEF+Foo", "Bar"};
    EXPECT_EQ(row.otherName(), "ABCDEF+Foo");
}

TEST(AuditRow, AFontThatIsInNoPDFHasNoOtherName)
{
    AuditRow row;
    row.facts = fontNamed("Foo");
    EXPECT_EQ(row.otherName(), std::nullopt);
    row.pdf = PDFFontInfo{};
    EXPECT_EQ(row.otherName(), std::nullopt);
}

TEST(AuditRow, ARowForAScannedFontHasItsFactsAndTheClassifiersAssessment)
{
    FontFacts facts = fontNamed("Foo-Bold");
    facts.os2 = OS2Info{.version = 4, .fsType = 0x0002, .vendorID = std::nullopt};
    const AuditRow row = auditRow(facts);
    EXPECT_EQ(row.facts, facts);
    EXPECT_EQ(row.assessment.verdict, Verdict::restricted);
    EXPECT_EQ(row.assessment.headline, "The font's embedding bits forbid embedding it.");
    EXPECT_EQ(row.pdf, std::nullopt);
}

TEST(AuditSummary, CountsEachVerdict)
{
    const std::vector<AuditRow> rows{
        rowWith(Verdict::likelyOK), rowWith(Verdict::unknown),  rowWith(Verdict::likelyOK),
        rowWith(Verdict::likelyOK), rowWith(Verdict::likelyOK), rowWith(Verdict::restricted),
        rowWith(Verdict::unknown),
    };
    const AuditSummary summary = AuditSummary::of(rows);
    EXPECT_EQ(summary.likelyOK, 4);
    EXPECT_EQ(summary.restricted, 1);
    EXPECT_EQ(summary.unknown, 2);
    EXPECT_EQ(summary.text(), "7 fonts: 4 likely OK, 1 restricted, 2 unknown");
}

TEST(AuditSummary, OfNoRowsIsAllZeros)
{
    EXPECT_EQ(AuditSummary::of({}), AuditSummary{});
    EXPECT_EQ(AuditSummary::of({}).text(), "0 fonts: 0 likely OK, 0 restricted, 0 unknown");
}

TEST(AuditSummary, OfOneFontKeepsThePlural)
{
    EXPECT_EQ((AuditSummary{.likelyOK = 0, .restricted = 1, .unknown = 0}).text(),
              "1 fonts: 0 likely OK, 1 restricted, 0 unknown");
}

} // namespace
} // namespace quillmark
