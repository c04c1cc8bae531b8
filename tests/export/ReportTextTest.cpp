#include "export/ReportText.h"

#include <gmock/gmock.h>

namespace quillmark {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;

std::vector<std::string> texts(const std::vector<Paragraph>& paragraphs)
{
    std::vector<std::string> lines;
    for (const Paragraph& paragraph : paragraphs)
        lines.push_back(paragraph.text());
    return lines;
}

AuditRow bareRow()
{
    AuditRow row;
    row.facts.postScriptName = "Cedar-Regular";
    row.facts.family = "Cedar";
    row.assessment.headline = "No license text in the font.";
    return row;
}

TEST(ReportText, HeadingHasTitleCheckLineCountsAndDisclaimerInThisOrder)
{
    const auto heading = ReportText::heading("Font license audit: flyer.pdf", "12 pages",
                                             "Mar 14, 2026, 9:26 AM", {4, 1, 2});
    EXPECT_THAT(texts(heading),
                ElementsAre("Font license audit: flyer.pdf", "12 pages",
                            "Checked Mar 14, 2026, 9:26 AM with Quillmark.",
                            "7 fonts: 1 restricted, 2 unknown, 4 likely OK.",
                            "Check the license; this reads the font's own data. Not legal advice. "
                            "Each verdict reads the font's own fields (embedding bits, license "
                            "text and URL, copyright, where it's installed), not the license you "
                            "hold.",
                            ""));
}

TEST(ReportText, CountsWithTheirWordsHaveTheColorsOfTheirVerdicts)
{
    const Paragraph summary = ReportText::heading("", "", "", {4, 1, 2})[3];
    std::vector<std::pair<std::string, Ink>> colored;
    for (const TextRun& run : summary.runs) {
        if (run.ink != Ink::black) colored.emplace_back(run.text, run.ink);
    }
    EXPECT_THAT(colored, ElementsAre(std::pair("1 restricted", Ink::restricted),
                                     std::pair("2 unknown", Ink::unknown),
                                     std::pair("4 likely OK", Ink::likelyOK)));
}

TEST(ReportText, BlockOfAFontThatSaysLittleHasNoEmptyItems)
{
    EXPECT_THAT(texts(ReportText::block(bareRow(), nullptr)),
                ElementsAre("Cedar  [Unknown]", "No license text in the font.",
                            "  PostScript: Cedar-Regular", "  License: No license text", ""));
}

TEST(ReportText, BlockHasEverythingThatIsKnownInOrder)
{
    AuditRow row = bareRow();
    row.facts.fullName = "Cedar Book";
    row.facts.licenseURL = "https://example.com/license";
    row.facts.manufacturer = "Example Foundry";
    row.facts.filePath = "/fonts/Cedar.ttf";
    row.assessment = {
        Verdict::likelyOK, "Headline.", {"First.", "Second."}, LicenseKind::ofl, false};
    row.pdf = PDFFontInfo{.pdfNames = {},
                          .subtype = {},
                          .program = EmbeddedProgram::trueType,
                          .subset = true,
                          .pages = {1, 2, 5},
                          .matchedPath = {}};
    LicenseNote note;
    note.license = HeldLicense::desktop;
    note.boughtFrom = "Example Shop";
    note.url = "https://example.com/receipt";
    note.attachmentName = "receipt.pdf";
    note.text = "For the spring catalogue";
    EXPECT_THAT(texts(ReportText::block(row, &note)),
                ElementsAreArray({
                    "Cedar Book  [Likely OK to embed]",
                    "Headline.",
                    "  - First.",
                    "  - Second.",
                    "  PostScript: Cedar-Regular",
                    "  License: SIL Open Font License",
                    "  License URL: https://example.com/license",
                    "  Maker: Example Foundry",
                    "  In the PDF: Embedded (TrueType), subset; pages 1, 2, 5",
                    "  File: /fonts/Cedar.ttf",
                    "  Your note: Desktop; from Example Shop; https://example.com/receipt; file: "
                    "receipt.pdf; For the spring catalogue",
                    "",
                }));
}

TEST(ReportText, NoteHasOnlyWhatIsGiven)
{
    const auto line = [](const LicenseNote& note) {
        return texts(ReportText::block(bareRow(), &note)).at(4);
    };
    LicenseNote licensed;
    licensed.license = HeldLicense::desktopCommercial;
    EXPECT_EQ(line(licensed), "  Your note: Desktop + commercial products / POD");
    LicenseNote bought;
    bought.boughtFrom = "Example Shop";
    EXPECT_EQ(line(bought), "  Your note: from Example Shop");
    LicenseNote linked;
    linked.url = "https://example.com/";
    EXPECT_EQ(line(linked), "  Your note: https://example.com/");
    LicenseNote attached;
    attached.attachment = "Cedar-Regular-1.pdf";
    attached.attachmentName = "receipt.pdf";
    EXPECT_EQ(line(attached), "  Your note: file: receipt.pdf");
    LicenseNote written;
    written.text = "Ask the foundry";
    EXPECT_EQ(line(written), "  Your note: Ask the foundry");
    written.attachmentName = "receipt.pdf";
    EXPECT_EQ(line(written), "  Your note: file: receipt.pdf; Ask the foundry");
}

TEST(ReportText, WholeProgramsAndThoseOfEveryKindAreToldWithTheirPages)
{
    AuditRow row = bareRow();
    row.pdf = PDFFontInfo{};
    for (const auto& [program, told] :
         {std::pair(EmbeddedProgram::notEmbedded, "Not embedded"),
          std::pair(EmbeddedProgram::trueType, "Embedded (TrueType)"),
          std::pair(EmbeddedProgram::openType, "Embedded (OpenType)"),
          std::pair(EmbeddedProgram::cff, "Embedded (CFF)"),
          std::pair(EmbeddedProgram::type1, "Embedded (Type 1)"),
          std::pair(EmbeddedProgram::type3, "Type 3 (drawn glyphs)")}) {
        row.pdf->program = program;
        row.pdf->pages = {3};
        EXPECT_EQ(texts(ReportText::block(row, nullptr)).at(4),
                  std::string("  In the PDF: ") + told + "; pages 3");
    }
}

TEST(ReportText, OfAListWithoutFontsCountsNone)
{
    EXPECT_EQ(ReportText::heading("", "", "", {})[3].text(),
              "0 fonts: 0 restricted, 0 unknown, 0 likely OK.");
}

TEST(ReportText, NoteKeepsTheLinesThatWereTyped)
{
    LicenseNote note;
    note.text = "first\r\nsecond\tcolumn\nthird";
    EXPECT_THAT(texts(ReportText::block(bareRow(), &note)),
                ElementsAre("Cedar  [Unknown]", "No license text in the font.",
                            "  PostScript: Cedar-Regular", "  License: No license text",
                            "  Your note: first", "second column", "third", ""));
}

TEST(ReportText, LinesOfOneItemStandUnderItsFirstWord)
{
    AuditRow row = bareRow();
    row.assessment.reasons = {"Reason."};
    LicenseNote note;
    note.text = "first\nsecond";
    const auto block = ReportText::block(row, &note);
    ASSERT_EQ(block[2].text(), "  - Reason.");
    EXPECT_EQ(block[2].hang, block[2].text().find("Reason"));
    ASSERT_EQ(block[6].text(), "second");
    EXPECT_EQ(block[6].indent, block[2].hang);
    for (const std::size_t item : {3U, 4U, 5U, 6U})
        EXPECT_EQ(block[item].hang, block[2].hang) << block[item].text();
    for (const std::size_t whole : {0U, 1U})
        EXPECT_EQ(block[whole].hang, 0U) << block[whole].text();
}

TEST(ReportText, WhatAFontSaysCannotStartALineOrTurnTheReadingOrder)
{
    AuditRow row = bareRow();
    row.facts.family = "Ce\ndar\u202E" + std::string(1, '\0') + "\u0085";
    EXPECT_EQ(texts(ReportText::block(row, nullptr))[0],
              "Ce\uFFFDdar\uFFFD\uFFFD\uFFFD  [Unknown]");
}

TEST(ReportText, AddressesAreLinksFromTheirFirstToTheirLastCharacter)
{
    AuditRow row = bareRow();
    row.facts.licenseURL = "https://example.com/license";
    LicenseNote note;
    note.boughtFrom = "Ève";
    note.url = "http://example.com/receipt";
    note.text = "x";
    const auto block = ReportText::block(row, &note);
    const auto linked = [](const Paragraph& paragraph) {
        return paragraph.text().substr(paragraph.link->start,
                                       paragraph.link->end - paragraph.link->start);
    };
    ASSERT_TRUE(block[4].link);
    EXPECT_EQ(linked(block[4]), "https://example.com/license");
    EXPECT_EQ(block[4].link->address, "https://example.com/license");
    ASSERT_TRUE(block[5].link);
    EXPECT_EQ(linked(block[5]), "http://example.com/receipt");
}

TEST(ReportText, NoLinkLeadsElsewhereThanItShows)
{
    AuditRow row = bareRow();
    for (const char* text : {"scripts.sil.org/OFL", "file:///etc/passwd", "https://",
                             "https://user@example.com/", "https://example.com/\u202Emoc"}) {
        row.facts.licenseURL = text;
        EXPECT_FALSE(ReportText::block(row, nullptr)[4].link) << text;
    }
}

TEST(ReportText, FooterTellsThePage)
{
    EXPECT_EQ(ReportText::footer(12),
              "Quillmark audit, page 12. Check the license; this reads the font's own data. Not "
              "legal advice.");
}

} // namespace
} // namespace quillmark
