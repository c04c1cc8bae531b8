#include "export/AuditExport.h"

#include "assessment/Classifier.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace quillmark {
namespace {

using namespace std::string_view_literals;

constexpr auto headers = std::to_array<std::string_view>({
    "Font",
    "PostScript name",
    "Family",
    "Style",
    "Verdict",
    "Why",
    "License in font",
    "License URL",
    "Embedding bits",
    "fsType",
    "Vendor ID",
    "Maker",
    "Copyright",
    "Apple system font",
    "File",
    "In PDF",
    "Pages",
    "Your license",
    "Bought from",
    "License link",
    "Attachment",
    "Your notes",
});

AuditRow installedRow()
{
    FontFacts facts;
    facts.postScriptName = "Foo-Bold";
    facts.family = "Foo";
    facts.style = "Bold";
    facts.fullName = "Foo Bold Display";
    facts.copyright = "(c) Foo";
    facts.manufacturer = "Foo Foundry";
    facts.licenseURL = "https://example.com/eula";
    facts.os2 = OS2Info{.version = 4, .fsType = 0x0304, .vendorID = "FOO"};
    facts.filePath = "/fonts/foo.otf";
    Assessment assessment;
    assessment.verdict = Verdict::likelyOK;
    assessment.headline = "A headline.";
    assessment.license = LicenseKind::ofl;
    return {facts, assessment, std::nullopt};
}

AuditRow documentRow()
{
    AuditRow row = installedRow();
    row.pdf.emplace();
    row.pdf->program = EmbeddedProgram::trueType;
    row.pdf->pages = {1, 3, 12};
    return row;
}

NotesBook bookWith(const LicenseNote& note)
{
    NotesBook book;
    book.set(note, "Foo-Bold");
    return book;
}

LicenseNote fullNote()
{
    return {
        .boughtFrom = "A shop",
        .license = HeldLicense::ebook,
        .url = "https://example.com/receipt",
        .attachment = "0A1B2C3D-receipt.pdf",
        .attachmentName = "receipt.pdf",
        .text = "two seats",
    };
}

/// The cells of every line, as a program reads them that follows RFC 4180.
std::vector<std::vector<std::string>> cells(std::string_view text)
{
    std::vector<std::vector<std::string>> lines(1, std::vector<std::string>(1));
    bool quoted = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        std::string& cell = lines.back().back();
        if (quoted) {
            if (text[i] != '"')
                cell += text[i];
            else if (text.substr(i + 1).starts_with('"'))
                cell += text[i++];
            else
                quoted = false;
        } else if (text[i] == '"') {
            EXPECT_EQ(cell, "") << "a quotation mark inside a cell without quotes";
            quoted = true;
        } else if (text[i] == ',') {
            lines.back().emplace_back();
        } else if (text.substr(i).starts_with("\r\n")) {
            lines.emplace_back(1);
            ++i;
        } else {
            cell += text[i];
        }
    }
    EXPECT_FALSE(quoted);
    EXPECT_EQ(lines.back(), std::vector<std::string>(1)) << "no line end behind the last line";
    lines.pop_back();
    return lines;
}

/// The cell below a header, for a list of one row.
std::string cell(std::string_view header, const AuditRow& row, const NotesBook& notes = {})
{
    const auto lines = cells(AuditExport::csv({&row, 1}, notes));
    EXPECT_EQ(lines.size(), 3U);
    EXPECT_EQ(lines[1].size(), headers.size());
    for (std::size_t i = 0; i < lines[0].size(); ++i)
        if (lines[0][i] == header) return lines[1][i];
    ADD_FAILURE() << "no column " << header;
    return {};
}

/// The second line as it is written, for a row with this copyright.
std::string lineWithCopyright(std::string_view copyright)
{
    AuditRow row = installedRow();
    row.facts.copyright = copyright;
    const std::string text = AuditExport::csv({&row, 1}, {});
    const std::size_t start = text.find("\r\n") + 2;
    return text.substr(start, text.rfind("\r\nNote,") - start);
}

// Lines

TEST(CSV, OfAnEmptyListIsTheHeadersAndTheDisclaimer)
{
    EXPECT_EQ(AuditExport::csv({}, {}),
              "Font,PostScript name,Family,Style,Verdict,Why,License in font,License URL,"
              "Embedding bits,fsType,Vendor ID,Maker,Copyright,Apple system font,File,In PDF,Pages,"
              "Your license,Bought from,License link,Attachment,Your notes\r\n"
              "Note,Check the license; this reads the font's own data. Not legal advice.\r\n");
}

TEST(CSV, OfARowIsALineBetweenHeadersAndDisclaimer)
{
    const std::vector rows{documentRow()};
    EXPECT_EQ(AuditExport::csv(rows, bookWith(fullNote())),
              "Font,PostScript name,Family,Style,Verdict,Why,License in font,License URL,"
              "Embedding bits,fsType,Vendor ID,Maker,Copyright,Apple system font,File,In PDF,Pages,"
              "Your license,Bought from,License link,Attachment,Your notes\r\n"
              "Foo Bold Display,Foo-Bold,Foo,Bold,Likely OK to embed,A headline.,"
              "SIL Open Font License,https://example.com/eula,"
              "\"Preview & print, no subsetting, bitmap only\",0x0304,FOO,Foo Foundry,"
              "(c) Foo,no,/fonts/foo.otf,Embedded (TrueType),\"1, 3, 12\",Ebook / ePub,A shop,"
              "https://example.com/receipt,receipt.pdf,two seats\r\n"
              "Note,Check the license; this reads the font's own data. Not legal advice.\r\n");
}

TEST(CSV, HasTheHeadersInThisOrder)
{
    const auto lines = cells(AuditExport::csv({}, {}));
    EXPECT_EQ(lines[0], std::vector<std::string>(headers.begin(), headers.end()));
}

TEST(CSV, KeepsTheOrderOfTheRows)
{
    std::vector<AuditRow> rows;
    for (const char* name : {"b", "a", "c", "a"}) {
        rows.push_back(installedRow());
        rows.back().facts.postScriptName = name;
    }
    const auto lines = cells(AuditExport::csv(rows, {}));
    ASSERT_EQ(lines.size(), 6U);
    EXPECT_EQ(lines[1][1] + lines[2][1] + lines[3][1] + lines[4][1], "baca");
}

TEST(CSV, EndsWithTheDisclaimerInTwoFields)
{
    const std::vector rows{installedRow()};
    EXPECT_EQ(cells(AuditExport::csv(rows, {})).back(),
              (std::vector<std::string>{"Note", std::string(Classifier::disclaimer)}));
}

TEST(CSV, HasNoByteOrderMark)
{
    EXPECT_TRUE(AuditExport::csv({}, {}).starts_with("Font,"));
}

TEST(CSV, IsMadeOfPiecesThatJoinSeveralLists)
{
    const std::vector first{installedRow()};
    const std::vector second{documentRow(), installedRow()};
    const NotesBook notes = bookWith(fullNote());
    std::string text = "before";
    AuditExport::appendCsvHeader(text);
    for (const auto& list : {first, second})
        for (const AuditRow& row : list)
            AuditExport::appendCsvRow(text, row, notes);
    AuditExport::appendCsvDisclaimer(text);
    const std::vector both{first[0], second[0], second[1]};
    EXPECT_EQ(text, "before" + AuditExport::csv(both, notes));
}

// Columns

TEST(CSVFont, IsTheFullName)
{
    EXPECT_EQ(cell("Font", installedRow()), "Foo Bold Display");
}

TEST(CSVFont, IsFamilyAndStyleWithoutAFullName)
{
    AuditRow row = installedRow();
    row.facts.fullName.reset();
    EXPECT_EQ(cell("Font", row), "Foo Bold");
    row.facts.fullName = "";
    EXPECT_EQ(cell("Font", row), "Foo Bold");
}

TEST(CSVFont, IsTheFamilyWithoutFullNameAndStyle)
{
    AuditRow row = installedRow();
    row.facts.fullName.reset();
    row.facts.style.clear();
    EXPECT_EQ(cell("Font", row), "Foo");
}

TEST(CSVNames, StandInTheirColumns)
{
    EXPECT_EQ(cell("PostScript name", installedRow()), "Foo-Bold");
    EXPECT_EQ(cell("Family", installedRow()), "Foo");
    EXPECT_EQ(cell("Style", installedRow()), "Bold");
}

TEST(CSVVerdict, IsTheLongLabel)
{
    AuditRow row = installedRow();
    EXPECT_EQ(cell("Verdict", row), "Likely OK to embed");
    row.assessment.verdict = Verdict::restricted;
    EXPECT_EQ(cell("Verdict", row), "Restricted");
    row.assessment.verdict = Verdict::unknown;
    EXPECT_EQ(cell("Verdict", row), "Unknown");
}

TEST(CSVWhy, IsTheHeadline)
{
    EXPECT_EQ(cell("Why", installedRow()), "A headline.");
}

TEST(CSVLicenseInFont, IsTheLabelOfEveryKind)
{
    AuditRow row = installedRow();
    for (const LicenseKind kind : allCases<LicenseKind>) {
        row.assessment.license = kind;
        EXPECT_EQ(cell("License in font", row), label(kind));
    }
}

TEST(CSVLicenseURL, IsTheFontsOrEmpty)
{
    AuditRow row = installedRow();
    EXPECT_EQ(cell("License URL", row), "https://example.com/eula");
    row.facts.licenseURL.reset();
    EXPECT_EQ(cell("License URL", row), "");
}

TEST(CSVEmbedding, IsDescribedWithItsBits)
{
    EXPECT_EQ(cell("Embedding bits", installedRow()),
              "Preview & print, no subsetting, bitmap only");
    EXPECT_EQ(cell("fsType", installedRow()), "0x0304");
    EXPECT_EQ(cell("Vendor ID", installedRow()), "FOO");
}

TEST(CSVEmbedding, HasFourCapitalHexadecimalDigits)
{
    AuditRow row = installedRow();
    row.facts.os2->fsType = 0xABCD;
    EXPECT_EQ(cell("fsType", row), "0xABCD");
    row.facts.os2->fsType = 0;
    EXPECT_EQ(cell("fsType", row), "0x0000");
}

TEST(CSVEmbedding, IsUnknownWithoutAnOS2Table)
{
    AuditRow row = installedRow();
    row.facts.os2.reset();
    EXPECT_EQ(cell("Embedding bits", row), "no OS/2 table");
    EXPECT_EQ(cell("fsType", row), "");
    EXPECT_EQ(cell("Vendor ID", row), "");
}

TEST(CSVEmbedding, HasNoVendorWhereTheTableHasNone)
{
    AuditRow row = installedRow();
    row.facts.os2->vendorID.reset();
    EXPECT_EQ(cell("Vendor ID", row), "");
    EXPECT_EQ(cell("fsType", row), "0x0304");
}

TEST(CSVMaker, IsTheManufacturerOrEmpty)
{
    AuditRow row = installedRow();
    EXPECT_EQ(cell("Maker", row), "Foo Foundry");
    row.facts.manufacturer.reset();
    EXPECT_EQ(cell("Maker", row), "");
}

TEST(CSVCopyright, IsTheFontsOrEmpty)
{
    AuditRow row = installedRow();
    EXPECT_EQ(cell("Copyright", row), "(c) Foo");
    row.facts.copyright.reset();
    EXPECT_EQ(cell("Copyright", row), "");
}

TEST(CSVAppleSystemFont, IsYesOrNo)
{
    AuditRow row = installedRow();
    EXPECT_EQ(cell("Apple system font", row), "no");
    row.assessment.appleBundled = true;
    EXPECT_EQ(cell("Apple system font", row), "yes");
}

TEST(CSVFile, IsThePathOrEmpty)
{
    AuditRow row = installedRow();
    EXPECT_EQ(cell("File", row), "/fonts/foo.otf");
    row.facts.filePath.reset();
    EXPECT_EQ(cell("File", row), "");
}

TEST(CSVInPDF, IsEmptyForAnInstalledFont)
{
    EXPECT_EQ(cell("In PDF", installedRow()), "");
    EXPECT_EQ(cell("Pages", installedRow()), "");
}

TEST(CSVInPDF, IsTheTextOfEveryProgram)
{
    const std::map<EmbeddedProgram, std::string> texts{
        {EmbeddedProgram::notEmbedded, "Not embedded"},
        {EmbeddedProgram::trueType, "Embedded (TrueType)"},
        {EmbeddedProgram::openType, "Embedded (OpenType)"},
        {EmbeddedProgram::cff, "Embedded (CFF)"},
        {EmbeddedProgram::type1, "Embedded (Type 1)"},
        {EmbeddedProgram::type3, "Type 3 (drawn glyphs)"},
    };
    AuditRow row = documentRow();
    for (const auto& [program, text] : texts) {
        row.pdf->program = program;
        row.pdf->subset = false;
        EXPECT_EQ(cell("In PDF", row), text);
        row.pdf->subset = true;
        EXPECT_EQ(cell("In PDF", row), text + ", subset");
    }
}

TEST(CSVPages, AreJoinedWithCommaAndSpace)
{
    EXPECT_EQ(cell("Pages", documentRow()), "1, 3, 12");
}

TEST(CSVPages, CanBeOneOrNone)
{
    AuditRow row = documentRow();
    row.pdf->pages = {7};
    EXPECT_EQ(cell("Pages", row), "7");
    row.pdf->pages.clear();
    EXPECT_EQ(cell("Pages", row), "");
}

TEST(CSVNote, FillsItsColumns)
{
    const NotesBook notes = bookWith(fullNote());
    EXPECT_EQ(cell("Your license", installedRow(), notes), "Ebook / ePub");
    EXPECT_EQ(cell("Bought from", installedRow(), notes), "A shop");
    EXPECT_EQ(cell("License link", installedRow(), notes), "https://example.com/receipt");
    EXPECT_EQ(cell("Attachment", installedRow(), notes), "receipt.pdf");
    EXPECT_EQ(cell("Your notes", installedRow(), notes), "two seats");
}

TEST(CSVNote, LeavesItsColumnsEmptyWhereThereIsNone)
{
    for (const char* header :
         {"Your license", "Bought from", "License link", "Attachment", "Your notes"})
        EXPECT_EQ(cell(header, installedRow()), "");
}

TEST(CSVNote, HasTheLabelOfEveryLicenseThatIsSet)
{
    LicenseNote note = fullNote();
    for (const HeldLicense license : allCases<HeldLicense>) {
        note.license = license;
        EXPECT_EQ(cell("Your license", installedRow(), bookWith(note)),
                  license == HeldLicense::notSet ? "" : label(license));
    }
}

TEST(CSVNote, NamesTheAttachmentAsTheUserKnowsIt)
{
    LicenseNote note = fullNote();
    note.attachmentName.reset();
    EXPECT_EQ(cell("Attachment", installedRow(), bookWith(note)), "");
}

TEST(CSVNote, KeepsTheLineBreaksOfItsTextInQuotes)
{
    const std::vector rows{installedRow()};
    const std::string text = AuditExport::csv(rows, bookWith({.text = "two seats\nsecond line"}));
    EXPECT_NE(text.find(",\"two seats\nsecond line\"\r\nNote,"), std::string::npos) << text;
}

TEST(CSVNote, ThatIsAFormulaHasAnApostropheInFront)
{
    const std::vector rows{installedRow()};
    EXPECT_NE(AuditExport::csv(rows, bookWith({.text = "=1+1"})).find(",'=1+1\r\nNote,"),
              std::string::npos);
    EXPECT_NE(AuditExport::csv(rows, bookWith({.text = "-"})).find(",'-\r\nNote,"),
              std::string::npos);
}

TEST(CSVNote, IsSharedByFontsOfOneNameInEveryList)
{
    AuditRow installed = installedRow();
    AuditRow document = documentRow();
    document.facts.family = "Something else";
    const NotesBook notes = bookWith(fullNote());
    EXPECT_EQ(cell("Your notes", installed, notes), "two seats");
    EXPECT_EQ(cell("Your notes", document, notes), "two seats");
}

TEST(CSVNote, IsNotThatOfANameInOtherLetters)
{
    AuditRow row = installedRow();
    row.facts.postScriptName = "foo-bold";
    EXPECT_EQ(cell("Your notes", row, bookWith(fullNote())), "");
}

// Escaping

struct Field {
    std::string_view name;
    std::string_view value;
    std::string_view written;
};

class CSVFields : public testing::TestWithParam<Field> {};

TEST_P(CSVFields, AreWrittenSo)
{
    const std::string line = lineWithCopyright(GetParam().value);
    EXPECT_EQ(line, "Foo Bold Display,Foo-Bold,Foo,Bold,Likely OK to embed,A headline.,SIL Open "
                    "Font License,https://example.com/eula,\"Preview & print, no subsetting, "
                    "bitmap only\",0x0304,FOO,Foo Foundry," +
                        std::string(GetParam().written) + ",no,/fonts/foo.otf,,,,,,,");
}

constexpr auto fields = std::to_array<Field>({
    {"Empty", "", ""},
    {"Plain", "plain text", "plain text"},
    {"Spaces", " in front and behind ", " in front and behind "},
    {"Comma", "Foo, Inc.", "\"Foo, Inc.\""},
    {"Quote", "the \"Foo\" font", "\"the \"\"Foo\"\" font\""},
    {"OneQuote", "\"", "\"\"\"\""},
    {"LineFeed", "one\ntwo", "\"one\ntwo\""},
    {"CarriageReturn", "one\rtwo", "\"one\rtwo\""},
    {"LineEnd", "one\r\ntwo", "\"one\r\ntwo\""},
    {"LineFeedAtTheEnd", "one\n", "\"one\n\""},
    {"Semicolon", "one;two", "one;two"},
    {"Tab", "one\ttwo", "one\ttwo"},
    {"Apostrophe", "it's", "it's"},
    {"ApostropheFirst", "'quoted'", "'quoted'"},
    {"Equals", "=1+1", "'=1+1"},
    {"Plus", "+1", "'+1"},
    {"Minus", "-1", "'-1"},
    {"At", "@SUM(A1)", "'@SUM(A1)"},
    {"OneMinus", "-", "'-"},
    {"EqualsBehindASpace", " =1+1", " =1+1"},
    {"EqualsBehindATab", "\t=1+1", "\t=1+1"},
    {"EqualsInside", "a=b", "a=b"},
    {"WideEquals",
     "\xEF\xBC\x9D"
     "1+1",
     "\xEF\xBC\x9D"
     "1+1"},
    {"FormulaWithQuotesAndComma", "=HYPERLINK(\"a\",\"b\")",
     "\"'=HYPERLINK(\"\"a\"\",\"\"b\"\")\""},
    {"FormulaWithLineEnd", "-a\r\nb", "\"'-a\r\nb\""},
    {"Nul", "a\0b"sv, "a\0b"sv},
    {"NulFirst", "\0a"sv, "\0a"sv},
    {"EqualsBehindNuls", "\0\0=1"sv, "'\0\0=1"sv},
    {"ControlCharacters", "\x01\x1B[31m\x7F", "\x01\x1B[31m\x7F"},
    {"LineSeparator", "one\xE2\x80\xA8two", "one\xE2\x80\xA8two"},
    {"NextLine", "one\xC2\x85two", "one\xC2\x85two"},
    {"RightToLeftMark", "\xE2\x80\x8F\xE2\x80\xAEx", "\xE2\x80\x8F\xE2\x80\xAEx"},
    {"BeyondTheBasicPlane", "\xF0\x9F\x96\x8B", "\xF0\x9F\x96\x8B"},
});

INSTANTIATE_TEST_SUITE_P(CSV, CSVFields, testing::ValuesIn(fields),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(CSVFields, OfAMegabyteStayWhole)
{
    const std::string plain(1'000'000, 'x');
    EXPECT_NE(lineWithCopyright(plain).find("," + plain + ","), std::string::npos);
    const std::string quotes(1'000'000, '"');
    EXPECT_NE(lineWithCopyright(quotes).find(",\"" + quotes + quotes + "\","), std::string::npos);
}

TEST(CSVFields, AreEscapedInEveryColumnOfText)
{
    constexpr std::string_view hostile = "=a,\"b\"\r\nc";
    AuditRow row = documentRow();
    for (std::string* field :
         {&row.facts.postScriptName, &row.facts.family, &row.facts.style, &row.assessment.headline})
        *field = hostile;
    for (auto* field : {&row.facts.fullName, &row.facts.licenseURL, &row.facts.os2->vendorID,
                        &row.facts.manufacturer, &row.facts.copyright, &row.facts.filePath})
        *field = hostile;
    NotesBook notes;
    notes.set(LicenseNote{.boughtFrom = std::string(hostile),
                          .url = std::string(hostile),
                          .attachmentName = std::string(hostile),
                          .text = std::string(hostile)},
              hostile);
    for (const char* header :
         {"Font", "PostScript name", "Family", "Style", "Why", "License URL", "Vendor ID", "Maker",
          "Copyright", "File", "Bought from", "License link", "Attachment", "Your notes"})
        EXPECT_EQ(cell(header, row, notes), "'" + std::string(hostile)) << header;
}

} // namespace
} // namespace quillmark
