#include "pdf/PDFFontScanner.h"

#include "DocumentFixture.h"
#include "support/FontBytes.h"
#include "support/FontContainers.h"
#include "support/PDFBytes.h"
#include "support/PDFEncryption.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <ostream>
#include <string>

namespace quillmark::PDFFontScanner {
namespace {

using test::ascii;
using test::audited;
using test::auditedFont;
using test::Bytes;
using test::ByteWriter;
using test::FontBytes;
using test::onePage;
using test::pages;
using test::PDFBytes;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

constexpr const char* noFields =
    "The PDF's copy has no license fields, and no installed or scanned font has this name, so only "
    "its name could be read. Scan the folder with the font files you used to match it.";
constexpr const char* readInside = "Read from the font data inside the PDF.";
constexpr const char* noLicense =
    "The font has no license description or URL to read. Find where it came from and what that "
    "license allows.";
constexpr const char* installable =
    "Embedding bits (fsType 0x0000): installable, no restriction set. Many fonts set these "
    "loosely, so they don't settle it.";
constexpr const char* restrictedBits = "Embedding bits (fsType 0x0002): Restricted License, which "
                                       "means the font must not be embedded in documents.";

/// A font of the library that says nothing but its names.
FontFacts knownFont(const std::string& postScriptName, const std::string& family)
{
    FontFacts facts;
    facts.postScriptName = postScriptName;
    facts.family = family;
    facts.filePath = "/fonts/" + family + ".ttf";
    facts.format = "TrueType";
    facts.origin = FontOrigin::folder;
    return facts;
}

/// A font of the library whose embedding bits forbid embedding.
FontFacts restrictedFont(const std::string& name)
{
    auto facts = knownFont(name, name);
    facts.os2 = OS2Info{4, 0x0002, "TEST"};
    return facts;
}

/// A document with one font that has these entries and a descriptor with those; object 5 is the
/// font's program, in a stream with `streamEntries`.
PDFBytes withFont(const std::string& fontEntries, const std::string& descriptor = {},
                  const Bytes& program = {}, const std::string& streamEntries = {})
{
    auto pdf = onePage("<</Font<</F<<" + fontEntries + "/FontDescriptor 4 0 R>>>>>>");
    pdf.object(4, "<<" + descriptor + ">>");
    pdf.stream(5, streamEntries, program);
    return pdf;
}

PDFBytes withTrueType(const std::string& name, const Bytes& program)
{
    return withFont("/Subtype/TrueType/BaseFont/" + name, "/FontFile2 5 0 R", program);
}

PDFBytes withCFF(const std::string& name, const Bytes& program)
{
    return withFont("/Subtype/Type1/BaseFont/" + name, "/FontFile3 5 0 R", program,
                    "/Subtype/Type1C");
}

PDFBytes withType1(const std::string& name, const Bytes& program)
{
    return withFont("/Subtype/Type1/BaseFont/" + name, "/FontFile 5 0 R", program);
}

/// A font file that names a family, a style and the SIL Open Font License.
Bytes openFont()
{
    return FontBytes()
        .face()
        .name(1, u"Foo")
        .name(2, u"Bold")
        .name(4, u"Foo Bold")
        .name(6, u"Foo-Bold")
        .name(13, u"This Font Software is licensed under the SIL Open Font License, Version 1.1.")
        .os2({})
        .build();
}

TEST(DocumentAudit, DocumentWithoutFontsHasNoRows)
{
    const auto audit = audited(onePage("<<>>"));
    EXPECT_THAT(audit.rows, IsEmpty());
    EXPECT_EQ(AuditSummary::of(audit.rows).text(), "0 fonts: 0 likely OK, 0 restricted, 0 unknown");
}

TEST(DocumentAudit, DocumentWithoutPagesKeepsItsPageCount)
{
    const auto audit = audited(pages({}));
    EXPECT_EQ(audit.pageCount, 0);
    EXPECT_THAT(audit.rows, IsEmpty());
}

TEST(DocumentAudit, DocumentInMemoryHasItsFileNameForAPath)
{
    const auto audit = audited(pages({"", "", ""}));
    EXPECT_EQ(audit.path, "book.pdf");
    EXPECT_EQ(audit.fileName, "book.pdf");
    EXPECT_EQ(audit.pageCount, 3);
    EXPECT_EQ(audit.checkedAt, test::checkTime());
}

std::optional<FontFacts> unknown(std::string_view /*name*/)
{
    return std::nullopt;
}

TEST(DocumentAudit, FileHasItsPathAndItsLastComponent)
{
    const test::TemporaryFolder folder;
    const auto path = folder.write("inner/my book.pdf", onePage("<<>>").build());
    const auto result = audit(path, unknown, test::checkTime);
    const auto* document = std::get_if<DocumentAudit>(&result);
    ASSERT_NE(document, nullptr);
    EXPECT_EQ(document->path, path.string());
    EXPECT_EQ(document->fileName, "my book.pdf");
    EXPECT_EQ(document->checkedAt, test::checkTime());
}

TEST(DocumentAudit, PathThatIsNotUtf8IsOpenedByItsBytesAndShownRepaired)
{
    const test::TemporaryFolder folder;
    const auto path = folder.write("b\xFFook.pdf", onePage("<<>>").build());
    const auto result = audit(path, unknown, test::checkTime);
    const auto* document = std::get_if<DocumentAudit>(&result);
    ASSERT_NE(document, nullptr);
    EXPECT_EQ(document->fileName, "b\xEF\xBF\xBDook.pdf");
    EXPECT_EQ(document->path, folder.path().string() + "/b\xEF\xBF\xBDook.pdf");
}

TEST(DocumentAudit, ClockIsAskedWhenTheRowsAreDone)
{
    bool lookedUp = false;
    const auto lookup = [&](std::string_view) {
        lookedUp = true;
        return std::optional<FontFacts>();
    };
    bool lookedUpBefore = false;
    const auto clock = [&] {
        lookedUpBefore = lookedUp;
        return test::checkTime();
    };
    const auto result = audit(withFont("/BaseFont/Foo").build(), "book.pdf", lookup, clock);
    EXPECT_TRUE(std::holds_alternative<DocumentAudit>(result));
    EXPECT_TRUE(lookedUpBefore);
}

TEST(DocumentAudit, UnreadableDocumentNamesTheFile)
{
    const auto result = audit(ascii("no PDF"), "book.pdf", unknown);
    const auto* error = std::get_if<PDFCheckError>(&result);
    ASSERT_NE(error, nullptr);
    EXPECT_EQ(error->message(), "book.pdf couldn't be opened as a PDF.");
}

TEST(DocumentAudit, LockedDocumentNamesTheFile)
{
    const Bytes pdf =
        encrypted(onePage("<<>>").build(), test::Encryption::aesWith256Bits, "secret");
    const auto result = audit(pdf, "book.pdf", unknown);
    const auto* error = std::get_if<PDFCheckError>(&result);
    ASSERT_NE(error, nullptr);
    EXPECT_EQ(error->message(), "book.pdf is password-protected. Open it in Preview, remove the "
                                "password, and check the copy.");
}

TEST(DocumentAudit, FolderIsUnreadableAndNamedByItsLastComponent)
{
    const test::TemporaryFolder folder;
    std::filesystem::create_directory(folder.path() / "book.pdf");
    for (const char* name : {"book.pdf", "book.pdf/"}) {
        const auto result = audit(folder.path() / name, unknown);
        const auto* error = std::get_if<PDFCheckError>(&result);
        ASSERT_NE(error, nullptr);
        EXPECT_EQ(*error, (PDFCheckError{PDFCheckError::Kind::unreadable, "book.pdf"}));
    }
}

TEST(DocumentAudit, FileNameInMemoryIsRepaired)
{
    const auto result = audit(ascii("no PDF"), "b\xFFook.pdf", unknown);
    const auto* error = std::get_if<PDFCheckError>(&result);
    ASSERT_NE(error, nullptr);
    EXPECT_EQ(error->fileName, "b\xEF\xBF\xBDook.pdf");
}

TEST(EmbeddedFacts, ComeFromTheFirstFaceOfAFontFile)
{
    const Bytes collection = FontBytes()
                                 .face()
                                 .name(1, u"First")
                                 .name(6, u"First-Regular")
                                 .face()
                                 .name(1, u"Second")
                                 .name(6, u"Second-Regular")
                                 .build();
    const auto row = auditedFont(withTrueType("ABCDEF+Other", collection));
    EXPECT_EQ(row.facts.postScriptName, "First-Regular");
    EXPECT_EQ(row.facts.family, "First");
    EXPECT_EQ(row.facts.format, "TrueType");
    EXPECT_EQ(row.facts.origin, FontOrigin::document);
    EXPECT_EQ(row.facts.filePath, std::nullopt);
    EXPECT_TRUE(row.pdf->readEmbeddedData);
}

TEST(EmbeddedFacts, OpenTypeProgramIsReadAsAFontFile)
{
    const Bytes font = FontBytes().face("OTTO").name(1, u"Foo").name(6, u"Foo").build();
    const auto row = auditedFont(
        withFont("/Subtype/Type1/BaseFont/Foo", "/FontFile3 5 0 R", font, "/Subtype/OpenType"));
    EXPECT_EQ(row.pdf->program, EmbeddedProgram::openType);
    EXPECT_EQ(row.facts.format, "OpenType (CFF)");
    EXPECT_TRUE(row.pdf->readEmbeddedData);
}

TEST(EmbeddedFacts, FontFileWithoutNamesIsUnnamed)
{
    const auto row = auditedFont(withTrueType("Foo", FontBytes().face().os2({}).build()));
    EXPECT_EQ(row.facts.postScriptName, "Unnamed font");
    EXPECT_TRUE(row.pdf->readEmbeddedData);
}

TEST(EmbeddedFacts, BytesThatAreNoFontFileGiveNone)
{
    for (const char* bytes : {"no font", ""}) {
        const auto row = auditedFont(withTrueType("Foo", ascii(bytes)));
        EXPECT_EQ(row.facts.postScriptName, "Foo");
        EXPECT_FALSE(row.pdf->readEmbeddedData);
    }
}

TEST(EmbeddedFacts, FontFileInACFFStreamGivesNone)
{
    const auto row = auditedFont(withCFF("Foo", openFont()));
    EXPECT_EQ(row.facts.postScriptName, "Foo");
    EXPECT_FALSE(row.pdf->readEmbeddedData);
}

TEST(EmbeddedFacts, CFFProgramGivesItsNames)
{
    const auto row = auditedFont(
        withCFF("GHIJKL+Other",
                test::cffProgram({"ABCDEF+Foo-Bold", "Foo Bold", "Foo", {}, "Copyright Someone"})));
    EXPECT_EQ(row.facts.postScriptName, "Foo-Bold");
    EXPECT_EQ(row.facts.family, "Foo");
    EXPECT_EQ(row.facts.fullName, "Foo Bold");
    EXPECT_EQ(row.facts.copyright, "Copyright Someone");
    EXPECT_EQ(row.facts.trademark, std::nullopt);
    EXPECT_EQ(row.facts.format, "CFF/Type 1");
    EXPECT_EQ(row.facts.origin, FontOrigin::document);
    EXPECT_EQ(row.facts.os2, std::nullopt);
    EXPECT_TRUE(row.pdf->readEmbeddedData);
}

TEST(EmbeddedFacts, Type1ProgramGivesItsNames)
{
    const auto row = auditedFont(withType1(
        "Other", test::type1Program({"ABCDEF+Foo-Bold", "Foo Bold", "Foo", "A notice", {}})));
    EXPECT_EQ(row.facts.postScriptName, "Foo-Bold");
    EXPECT_EQ(row.facts.family, "Foo");
    EXPECT_EQ(row.facts.fullName, "Foo Bold");
    EXPECT_EQ(row.facts.format, "CFF/Type 1");
    EXPECT_TRUE(row.pdf->readEmbeddedData);
}

TEST(EmbeddedFacts, NoticeIsTheCopyrightUnlessThereIsOne)
{
    const auto facts = [](const BareFontInfo& info) {
        return auditedFont(withCFF("Foo", test::cffProgram(info))).facts;
    };
    const auto alone = facts({"Foo", {}, {}, "A notice", {}});
    EXPECT_EQ(alone.copyright, "A notice");
    EXPECT_EQ(alone.trademark, std::nullopt);
    const auto both = facts({"Foo", {}, {}, "A notice", "A copyright"});
    EXPECT_EQ(both.copyright, "A copyright");
    EXPECT_EQ(both.trademark, "A notice");
}

TEST(EmbeddedFacts, CleanNameOfThePDFStandsInForMissingNames)
{
    const auto row =
        auditedFont(withCFF("ABCDEF+Foo-Bold", test::cffProgram({{}, {}, {}, {}, "A copyright"})));
    EXPECT_EQ(row.facts.postScriptName, "Foo-Bold");
    EXPECT_EQ(row.facts.family, "Foo-Bold");
    EXPECT_EQ(row.facts.copyright, "A copyright");
    EXPECT_TRUE(row.pdf->readEmbeddedData);
}

TEST(EmbeddedFacts, ProgramThatIsOnlyAPrefixKeepsItsName)
{
    const auto row = auditedFont(withCFF("Foo", test::cffProgram({"ABCDEF+", {}, {}, {}, {}})));
    EXPECT_EQ(row.facts.postScriptName, "ABCDEF+");
}

TEST(EmbeddedFacts, ProgramWithNoneOfTheFiveNamesGivesNone)
{
    const auto row = auditedFont(withCFF("Foo", test::cffProgram(BareFontInfo{})));
    EXPECT_EQ(row.facts.postScriptName, "Foo");
    EXPECT_EQ(row.facts.format, std::nullopt);
    EXPECT_FALSE(row.pdf->readEmbeddedData);
}

TEST(EmbeddedFacts, DataOfAnUnembeddedKindDoNotCount)
{
    // A Type 3 font that is merged with an embedded one of its name takes over its data.
    auto pdf = onePage("<</Font<</A<</Subtype/Type3/BaseFont/Foo>>/B<</Subtype/TrueType/BaseFont/"
                       "Foo/FontDescriptor<</FontFile2 4 0 R>>>>>>>>");
    pdf.stream(4, "", openFont());
    const auto row = auditedFont(pdf);
    EXPECT_EQ(row.pdf->program, EmbeddedProgram::type3);
    EXPECT_FALSE(row.pdf->readEmbeddedData);
}

TEST(EmbeddedFacts, SharedProgramIsReadForEachFontThatHasIt)
{
    auto pdf = onePage("<</Font<</A<</Subtype/Type1/BaseFont/A/FontDescriptor 4 0 R>>/B<</Subtype/"
                       "Type1/BaseFont/B/FontDescriptor 4 0 R>>>>>>");
    pdf.object(4, "<</FontFile3 5 0 R>>");
    pdf.stream(5, "", test::cffProgram({{}, {}, {}, {}, "A copyright"}));
    const auto audit = audited(pdf);
    ASSERT_EQ(audit.rows.size(), 2U);
    EXPECT_EQ(audit.rows[0].facts.postScriptName, "A");
    EXPECT_EQ(audit.rows[1].facts.postScriptName, "B");
    EXPECT_TRUE(audit.rows[0].pdf->readEmbeddedData);
    EXPECT_TRUE(audit.rows[1].pdf->readEmbeddedData);
}

/// A document with `count` fonts, F0 and so on, whose programs are all object 5.
PDFBytes withSharedProgram(int count, const std::string& key, const Bytes& program)
{
    std::string fonts;
    for (int i = 0; i < count; ++i)
        fonts += "/F" + std::to_string(i) + "<</Subtype/TrueType/BaseFont/F" + std::to_string(i) +
                 "/FontDescriptor 4 0 R>>";
    auto pdf = onePage("<</Font<<" + fonts + ">>>>");
    pdf.object(4, "<</" + key + " 5 0 R>>");
    pdf.stream(5, "", program);
    return pdf;
}

std::ptrdiff_t rowsReadInside(const DocumentAudit& audit)
{
    return std::ranges::count_if(audit.rows,
                                 [](const AuditRow& row) { return row.pdf->readEmbeddedData; });
}

TEST(EmbeddedFacts, NamesOfASharedFontFileEndWhereTheRowsHaveTakenTheirText)
{
    // Three names of 65535 bytes that take three bytes each in UTF-8, "Big" twice and the format:
    // 589829 bytes for each row, of which 227 fit into 128 MiB.
    const Bytes longName(65535, std::byte{0xF0});
    auto font = FontBytes().face().name(6, u"Big");
    for (const auto id : std::to_array<std::uint16_t>({8, 9, 11}))
        font.nameRecord({1, 0, 0, id, longName});
    const auto audit = audited(withSharedProgram(230, "FontFile2", font.build()));
    ASSERT_EQ(audit.rows.size(), 230U);
    EXPECT_EQ(rowsReadInside(audit), 227);
    const FontFacts& last = audit.rows.back().facts;
    EXPECT_EQ(last.postScriptName, "F99"); // fonts are found in the order of their keys
    EXPECT_EQ(last.manufacturer, std::nullopt);
}

TEST(EmbeddedFacts, NamesOfASharedCFFProgramEndThereToo)
{
    // Its full name takes 15 MiB, and stands for the PostScript name as well.
    const std::string fullName(std::size_t{15} << 20U, 'x');
    const Bytes program = ByteWriter()
                              .u8(1)
                              .u8(0)
                              .u8(4)
                              .u8(1)
                              .bytes(test::cffIndex({}))
                              .bytes(test::cffIndex({ascii("\x1C\x01\x87\x02")}))
                              .bytes(test::cffIndex({ascii(fullName)}, 4))
                              .build();
    EXPECT_EQ(rowsReadInside(audited(withSharedProgram(10, "FontFile3", program))), 4);
}

TEST(Match, WithMoreTextThanTheRowsMayTakeIsNone)
{
    auto known = knownFont("Known", "Known");
    known.manufacturer = std::string(std::size_t{60} << 20U, 'x');
    const auto audit = audited(withSharedProgram(3, "FontFile2", {}),
                               {{"F0", known}, {"F1", known}, {"F2", known}});
    ASSERT_EQ(audit.rows.size(), 3U);
    EXPECT_EQ(std::ranges::count_if(
                  audit.rows, [](const AuditRow& row) { return row.pdf->matchedPath.has_value(); }),
              2);
}

TEST(Match, IsAskedForByTheCleanName)
{
    std::vector<std::string> names;
    const auto lookup = [&](std::string_view name) {
        names.emplace_back(name);
        return std::optional<FontFacts>();
    };
    const auto pdf = withCFF("ABCDEF+Foo", test::cffProgram({"Other", {}, {}, {}, {}})).build();
    EXPECT_TRUE(std::holds_alternative<DocumentAudit>(audit(pdf, "book.pdf", lookup)));
    EXPECT_THAT(names, ElementsAre("Foo"));
}

TEST(Match, AloneGivesItsFactsWithTheDocumentAsOrigin)
{
    const auto row = auditedFont(withFont("/BaseFont/Foo"), {{"Foo", knownFont("Foo", "Foo")}});
    auto expected = knownFont("Foo", "Foo");
    expected.origin = FontOrigin::document;
    EXPECT_EQ(row.facts, expected);
    EXPECT_EQ(row.pdf->matchedPath, "/fonts/Foo.ttf");
    EXPECT_FALSE(row.pdf->matchedByFamily);
    EXPECT_FALSE(row.pdf->readEmbeddedData);
}

TEST(Match, UnderAnotherNameIsOneByFamily)
{
    auto known = knownFont("Foo-Regular", "Foo");
    known.style = "Bold";
    const auto row = auditedFont(withFont("/BaseFont/Foo-Bold"), {{"Foo-Bold", known}});
    EXPECT_EQ(row.facts.postScriptName, "Foo-Regular");
    EXPECT_TRUE(row.pdf->matchedByFamily);
}

TEST(Match, IsFilledFromTheEmbeddedCopy)
{
    const auto row = auditedFont(withTrueType("Known", openFont()),
                                 {{"Known", knownFont("Known", "Known Family")}});
    EXPECT_EQ(row.facts.postScriptName, "Known");
    EXPECT_EQ(row.facts.family, "Known Family");
    EXPECT_EQ(row.facts.style, "Bold");
    EXPECT_EQ(row.facts.fullName, "Foo Bold");
    EXPECT_THAT(row.facts.licenseDescription.value_or(""), StartsWith("This Font Software"));
    EXPECT_EQ(row.facts.filePath, "/fonts/Known Family.ttf");
    EXPECT_TRUE(row.pdf->readEmbeddedData);
}

TEST(Match, WithoutAFilePathIsNoMatchedPath)
{
    auto known = knownFont("Foo", "Foo");
    known.filePath.reset();
    const auto row = auditedFont(withFont("/BaseFont/Foo"), {{"Foo", known}});
    EXPECT_EQ(row.pdf->matchedPath, std::nullopt);
    EXPECT_FALSE(row.pdf->matchedByFamily);
    EXPECT_EQ(row.facts.format, "TrueType");
}

TEST(NoMatch, AndNoDataGiveFactsFromTheNameAlone)
{
    const auto row = auditedFont(withFont("/BaseFont/ABCDEF+Foo-Bold"));
    FontFacts expected;
    expected.postScriptName = "Foo-Bold";
    expected.family = "Foo-Bold";
    expected.origin = FontOrigin::document;
    EXPECT_EQ(row.facts, expected);
}

TEST(PDFFontInfo, HasNamesAndPagesInOrder)
{
    auto pdf = pages({"/Resources<</Font<</F 6 0 R>>>>", "", "/Resources<</Font<</F 7 0 R>>>>"});
    pdf.object(6, "<</Subtype/Type1/BaseFont/ZZZZZZ+Foo>>");
    pdf.object(7, "<</Subtype/TrueType/BaseFont/AAAAAA+Foo>>");
    const auto row = auditedFont(pdf);
    EXPECT_THAT(row.pdf->pdfNames, ElementsAre("AAAAAA+Foo", "ZZZZZZ+Foo"));
    EXPECT_THAT(row.pdf->pages, ElementsAre(1, 3));
    EXPECT_EQ(row.pdf->subtype, "Type1");
    EXPECT_TRUE(row.pdf->subset);
}

TEST(PDFFontInfo, PagesThreeOneAndThreeAreOneAndThree)
{
    auto pdf = pages({"/Resources 6 0 R", "", "/Resources 6 0 R/Annots[<</AP<</N 8 0 R>>>>]"});
    pdf.object(6, "<</Font<</F 7 0 R>>>>").object(7, "<</BaseFont/Foo>>");
    pdf.stream(8, "/Resources 6 0 R");
    EXPECT_THAT(auditedFont(pdf).pdf->pages, ElementsAre(1, 3));
}

TEST(PDFAwareAssessment, Type3WithoutAMatchIsUnknownWhateverTheClassifierSaid)
{
    // The name alone would make this one of Apple's.
    const auto row = auditedFont(onePage("<</Font<</F<</Subtype/Type3/BaseFont/Helvetica>>>>>>"));
    EXPECT_EQ(row.assessment.verdict, Verdict::unknown);
    EXPECT_EQ(row.assessment.headline, "Type 3 font: glyphs drawn inside the PDF.");
    EXPECT_THAT(row.assessment.reasons,
                ElementsAre("There's no font file to read; the shapes were drawn by the app that "
                            "made the PDF, and no installed or scanned font has this name. Check "
                            "which font they came from."));
    EXPECT_TRUE(row.assessment.appleBundled);
}

TEST(PDFAwareAssessment, Type3WithAMatchKeepsTheClassifiersVerdict)
{
    const auto row = auditedFont(onePage("<</Font<</F<</Subtype/Type3/BaseFont/Foo>>>>>>"),
                                 {{"Foo", restrictedFont("Foo")}});
    EXPECT_EQ(row.assessment.verdict, Verdict::restricted);
    EXPECT_EQ(row.assessment.headline, "The font's embedding bits forbid embedding it.");
    EXPECT_THAT(
        row.assessment.reasons,
        ElementsAre("Type 3 in this PDF: the font's glyph shapes are drawn inside the file, "
                    "so the font's license still applies.",
                    "Matched by name to the font file at /fonts/Foo.ttf.", restrictedBits));
}

TEST(PDFAwareAssessment, UnembeddedFontIsLikelyOKWithTheClassifiersHeadlineAsAWarning)
{
    const auto row = auditedFont(withFont("/BaseFont/Foo"), {{"Foo", restrictedFont("Foo")}});
    EXPECT_EQ(row.assessment.verdict, Verdict::likelyOK);
    EXPECT_EQ(row.assessment.headline, "Not embedded: the PDF only names this font.");
    EXPECT_THAT(row.assessment.reasons,
                ElementsAre("The file carries no font data for it; the reader uses its own copy or "
                            "a substitute, so none of the font ships with the file.",
                            "If you re-export this file, check whether the font gets embedded "
                            "then: The font's embedding bits forbid embedding it."));
}

TEST(PDFAwareAssessment, UnembeddedFontThatMayBeEmbeddedHasOneReason)
{
    auto known = knownFont("Foo", "Foo");
    known.licenseURL = "https://openfontlicense.org";
    const auto row = auditedFont(withFont("/BaseFont/Foo"), {{"Foo", known}});
    EXPECT_EQ(row.assessment.verdict, Verdict::likelyOK);
    EXPECT_EQ(row.assessment.license, LicenseKind::ofl);
    EXPECT_THAT(row.assessment.reasons,
                ElementsAre("The file carries no font data for it; the reader uses its own copy or "
                            "a substitute, so none of the font ships with the file."));
}

TEST(PDFAwareAssessment, EmbeddedSubsetMatchedByFamilyHasItsReasonsInOrder)
{
    const Bytes font = FontBytes().face().name(1, u"Foo").name(6, u"Foo").os2({}).build();
    const auto row = auditedFont(withTrueType("ABCDEF+Foo-Bold", font),
                                 {{"Foo-Bold", knownFont("Foo-Regular", "Foo")}});
    EXPECT_EQ(row.assessment.verdict, Verdict::unknown);
    EXPECT_THAT(row.assessment.reasons,
                ElementsAre("Embedded (TrueType), subset in this PDF.", readInside,
                            "Matched by family name to the font file at /fonts/Foo.ttf.", noLicense,
                            installable));
}

TEST(PDFAwareAssessment, EmbeddedFontMatchedByNameWithoutDataHasNoLineAboutIt)
{
    const auto row =
        auditedFont(withTrueType("Foo", ascii("no font")), {{"Foo", knownFont("Foo", "Foo")}});
    EXPECT_THAT(row.assessment.reasons,
                ElementsAre("Embedded (TrueType) in this PDF.",
                            "Matched by name to the font file at /fonts/Foo.ttf.", noLicense));
}

TEST(PDFAwareAssessment, EmbeddedCFFWithoutNamesAndMatchSaysSo)
{
    const auto row = auditedFont(withCFF("ABCDEF+Foo", ascii("no program")));
    EXPECT_THAT(row.assessment.reasons,
                ElementsAre("Embedded (CFF), subset in this PDF.", noFields, noLicense));
}

TEST(PDFAwareAssessment, EmbeddedFontReadWithoutAMatchHasNoOtherSourceLine)
{
    const auto row = auditedFont(withType1("Foo", test::type1Program({"Foo", {}, {}, {}, {}})));
    EXPECT_THAT(row.assessment.reasons,
                ElementsAre("Embedded (Type 1) in this PDF.", readInside, noLicense));
}

TEST(PDFAwareAssessment, EmbeddedOpenTypeFontSaysSo)
{
    const auto row = auditedFont(withFont("/Subtype/Type1/BaseFont/Foo", "/FontFile3 5 0 R",
                                          ascii("no font"), "/Subtype/OpenType"));
    EXPECT_THAT(row.assessment.reasons,
                ElementsAre("Embedded (OpenType) in this PDF.", noFields, noLicense));
}

TEST(PDFAwareAssessment, OpenFontReadInsideThePDFIsLikelyOK)
{
    const auto row = auditedFont(withTrueType("Foo-Bold", openFont()));
    EXPECT_EQ(row.assessment.verdict, Verdict::likelyOK);
    EXPECT_EQ(row.assessment.headline, "Names the SIL Open Font License.");
    ASSERT_GE(row.assessment.reasons.size(), 3U);
    EXPECT_EQ(row.assessment.reasons[0], "Embedded (TrueType) in this PDF.");
    EXPECT_EQ(row.assessment.reasons[1], readInside);
    EXPECT_THAT(row.assessment.reasons[2],
                StartsWith("The font's own license fields name the SIL Open Font License"));
}

TEST(PDFAwareAssessment, RestrictedEmbeddedFontStaysRestricted)
{
    const Bytes font = FontBytes()
                           .face()
                           .name(1, u"Foo")
                           .name(6, u"Foo")
                           .os2({.version = 4, .fsType = 0x0002})
                           .build();
    const auto row = auditedFont(withTrueType("Foo", font));
    EXPECT_EQ(row.assessment.verdict, Verdict::restricted);
    EXPECT_THAT(row.assessment.reasons,
                ElementsAre("Embedded (TrueType) in this PDF.", readInside, restrictedBits));
}

TEST(PDFAwareAssessment, WithoutAPDFIsTheClassifiers)
{
    const auto facts = restrictedFont("Foo");
    const auto assessment = assess(facts, std::nullopt);
    EXPECT_EQ(assessment.verdict, Verdict::restricted);
    EXPECT_EQ(assessment.headline, "The font's embedding bits forbid embedding it.");
    EXPECT_THAT(assessment.reasons, ElementsAre(restrictedBits));
}

TEST(RowOrder, IsRestrictedThenUnknownThenLikelyOKAndByDisplayName)
{
    auto pdf = onePage("<</Font<</A 4 0 R/B 5 0 R/C 6 0 R/D 7 0 R/E 8 0 R/F 9 0 R>>>>");
    pdf.object(4, "<</BaseFont/zebra>>");
    const auto embedded = [](const std::string& name) {
        return "<</BaseFont/" + name + "/FontDescriptor<</FontFile3 10 0 R>>>>";
    };
    pdf.object(5, embedded("b")).object(6, embedded("a")).object(7, embedded("Z"));
    pdf.object(8, embedded("restricted")).object(9, "<</BaseFont/Apple>>");
    pdf.stream(10, "", "no program");
    auto b = knownFont("b", "Family");
    b.fullName = "m";
    auto a = knownFont("a", "Family");
    a.style = "Style";
    const auto audit =
        audited(pdf, {{"b", b}, {"a", a}, {"restricted", restrictedFont("restricted")}});
    std::vector<std::string> names;
    for (const auto& row : audit.rows)
        names.push_back(row.facts.displayName());
    EXPECT_THAT(names, ElementsAre("restricted", "Family Style", "Z", "m", "Apple", "zebra"));
    EXPECT_EQ(AuditSummary::of(audit.rows).text(), "6 fonts: 2 likely OK, 1 restricted, 3 unknown");
}

TEST(RowOrder, IsThatOfTheDocumentAmongEqualNames)
{
    auto pdf = onePage("<</Font<</A 4 0 R/B 5 0 R>>>>");
    pdf.object(4, "<</BaseFont/Second>>").object(5, "<</BaseFont/First>>");
    const auto same = knownFont("Same", "Same");
    const auto audit = audited(pdf, {{"First", same}, {"Second", same}});
    ASSERT_EQ(audit.rows.size(), 2U);
    EXPECT_THAT(audit.rows[0].pdf->pdfNames, ElementsAre("Second"));
    EXPECT_THAT(audit.rows[1].pdf->pdfNames, ElementsAre("First"));
}

TEST(RowIds, CanRepeatInOneDocument)
{
    auto pdf = onePage("<</Font<</A 4 0 R/B 5 0 R>>>>");
    pdf.object(4, "<</BaseFont/Second>>").object(5, "<</BaseFont/First>>");
    const auto same = knownFont("Same", "Same");
    const auto audit = audited(pdf, {{"First", same}, {"Second", same}});
    ASSERT_EQ(audit.rows.size(), 2U);
    EXPECT_EQ(audit.rows[0].id(), "/fonts/Same.ttf#Same#notEmbedded");
    EXPECT_EQ(audit.rows[1].id(), "/fonts/Same.ttf#Same#notEmbedded");
}

} // namespace
} // namespace quillmark::PDFFontScanner
