#include "assessment/Classifier.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillmark {
namespace {

using Classifier::assess;
using Classifier::sourceNote;
using testing::ElementsAre;

constexpr auto installable =
    "Embedding bits (fsType 0x0000): installable, no restriction set. Many fonts set these "
    "loosely, so they don't settle it.";
constexpr auto restrictedLicense =
    "Embedding bits (fsType 0x0002): Restricted License, which means the font must not be embedded "
    "in documents.";
constexpr auto previewAndPrint =
    "Embedding bits (fsType 0x0004): preview & print, so it may be embedded in documents like PDFs "
    "for viewing and printing only.";
constexpr auto noSubsetting =
    "It asks to be embedded whole (no subsetting); most PDF tools subset fonts.";
constexpr auto bitmapsOnly = "Only bitmaps may be embedded, not outlines.";
constexpr auto noOS2Table = "No OS/2 table, so there are no embedding bits to read.";
constexpr auto forbidden = "The font's embedding bits forbid embedding it.";
constexpr auto oflPermission =
    "The OFL allows using, embedding and bundling it, also in products you sell; you can't sell "
    "the font file by itself, and Reserved Font Names limit renamed copies.";
constexpr auto appleHeadline = "Apple system font: licensed for use on Apple devices.";
constexpr auto appleFolder = "It's installed in a macOS system font folder.";
constexpr auto appleMaker = "Its data names Apple as its maker.";
constexpr auto appleName =
    "Its name matches a family that ships with macOS (no installed copy was found to read).";
constexpr auto appleLicense =
    "Apple licenses the fonts that come with macOS for use on Apple devices. Selling a product "
    "with one embedded (a printable, an ebook, an app) generally needs a license from the font's "
    "owner.";
constexpr auto appleLicenseOfMaker =
    "Apple licenses the fonts that come with macOS for use on Apple devices. Selling a product "
    "with one embedded (a printable, an ebook, an app) generally needs a license from the font's "
    "owner (Monotype Imaging Inc.).";
constexpr auto copyThatCameWithMacOS =
    "This copy came with macOS. The font's makers publish it under this license; for a product, "
    "use a copy downloaded from them.";
constexpr auto noLicenseText =
    "The font has no license description or URL to read. Find where it came from and what that "
    "license allows.";
constexpr auto noLicenseTextButCopyright =
    "The font has no license description or URL to read; only its copyright line. Find where it "
    "came from and what that license allows.";

/// A font in a scanned folder.
FontFacts folderFont(std::optional<std::uint16_t> fsType)
{
    FontFacts facts;
    facts.postScriptName = "Foo-Regular";
    facts.family = "Foo";
    facts.filePath = "/home/me/fonts/foo.ttf";
    facts.origin = FontOrigin::folder;
    if (fsType) facts.os2 = OS2Info{.version = 4, .fsType = *fsType, .vendorID = std::nullopt};
    return facts;
}

FontFacts described(std::optional<std::uint16_t> fsType, std::string_view description)
{
    FontFacts facts = folderFont(fsType);
    facts.licenseDescription = std::string(description);
    return facts;
}

FontFacts systemFont(std::optional<std::uint16_t> fsType)
{
    FontFacts facts = folderFont(fsType);
    facts.filePath = "/System/Library/Fonts/Foo.ttf";
    facts.origin = FontOrigin::installed;
    return facts;
}

// Embedding bits

struct BitsRow {
    std::string_view name;
    std::uint16_t fsType;
    std::vector<std::string> reasons;
    bool forbidden;
};

class EmbeddingBits : public testing::TestWithParam<BitsRow> {};

TEST_P(EmbeddingBits, AreToldInWords)
{
    const Assessment assessment = assess(folderFont(GetParam().fsType));
    std::vector<std::string> expected = GetParam().reasons;
    if (!GetParam().forbidden) expected.insert(expected.begin(), noLicenseText);
    EXPECT_EQ(assessment.reasons, expected);
}

TEST_P(EmbeddingBits, ForbidOnlyAtTheRestrictedLevel)
{
    const Assessment assessment = assess(folderFont(GetParam().fsType));
    EXPECT_EQ(assessment.verdict, GetParam().forbidden ? Verdict::restricted : Verdict::unknown);
    EXPECT_EQ(assessment.headline,
              GetParam().forbidden ? forbidden : "No license text in the font.");
}

const BitsRow bitsRows[] = {
    {"None", 0x0000, {installable}, false},
    {"Bit0DoesNotCount",
     0x0001,
     {"Embedding bits (fsType 0x0001): installable, no restriction set. Many fonts set these "
      "loosely, so they don't settle it."},
     false},
    {"Restricted", 0x0002, {restrictedLicense}, true},
    {"RestrictedAndBit0",
     0x0003,
     {"Embedding bits (fsType 0x0003): Restricted License, which means the font must not be "
      "embedded in documents."},
     true},
    {"PreviewAndPrint", 0x0004, {previewAndPrint}, false},
    {"PreviewAndPrintOverRestricted",
     0x0006,
     {"Embedding bits (fsType 0x0006): preview & print, so it may be embedded in documents like "
      "PDFs for viewing and printing only."},
     false},
    {"Editable",
     0x0008,
     {"Embedding bits (fsType 0x0008): editable, so it may be embedded in documents that others "
      "can edit."},
     false},
    {"EditableOverRestricted",
     0x000A,
     {"Embedding bits (fsType 0x000A): editable, so it may be embedded in documents that others "
      "can edit."},
     false},
    {"EditableOverPreviewAndPrint",
     0x000C,
     {"Embedding bits (fsType 0x000C): editable, so it may be embedded in documents that others "
      "can edit."},
     false},
    {"EditableOverBoth",
     0x000E,
     {"Embedding bits (fsType 0x000E): editable, so it may be embedded in documents that others "
      "can edit."},
     false},
    {"Bit4DoesNotCount",
     0x0010,
     {"Embedding bits (fsType 0x0010): installable, no restriction set. Many fonts set these "
      "loosely, so they don't settle it."},
     false},
    {"NoSubsetting",
     0x0100,
     {"Embedding bits (fsType 0x0100): installable, no restriction set. Many fonts set these "
      "loosely, so they don't settle it.",
      noSubsetting},
     false},
    {"BitmapsOnly",
     0x0200,
     {"Embedding bits (fsType 0x0200): installable, no restriction set. Many fonts set these "
      "loosely, so they don't settle it.",
      bitmapsOnly},
     false},
    {"Bit10DoesNotCount",
     0x0400,
     {"Embedding bits (fsType 0x0400): installable, no restriction set. Many fonts set these "
      "loosely, so they don't settle it."},
     false},
    {"PreviewAndPrintWholeAndBitmapsOnly",
     0x0304,
     {"Embedding bits (fsType 0x0304): preview & print, so it may be embedded in documents like "
      "PDFs for viewing and printing only.",
      noSubsetting, bitmapsOnly},
     false},
    {"RestrictedWholeAndBitmapsOnly",
     0x0302,
     {"Embedding bits (fsType 0x0302): Restricted License, which means the font must not be "
      "embedded in documents.",
      noSubsetting, bitmapsOnly},
     true},
    {"EveryBit",
     0xFFFF,
     {"Embedding bits (fsType 0xFFFF): editable, so it may be embedded in documents that others "
      "can edit.",
      noSubsetting, bitmapsOnly},
     false},
};

INSTANTIATE_TEST_SUITE_P(Classifier, EmbeddingBits, testing::ValuesIn(bitsRows),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(Classifier, WithoutAnOS2TableAScannedFontSaysSo)
{
    EXPECT_THAT(assess(folderFont(std::nullopt)).reasons, ElementsAre(noLicenseText, noOS2Table));
}

TEST(Classifier, WithoutAnOS2TableAnInstalledFontSaysSo)
{
    FontFacts facts = folderFont(std::nullopt);
    facts.origin = FontOrigin::installed;
    EXPECT_THAT(assess(facts).reasons, ElementsAre(noLicenseText, noOS2Table));
}

TEST(Classifier, WithoutAnOS2TableADocumentFontSaysNothingOfIt)
{
    FontFacts facts = folderFont(std::nullopt);
    facts.origin = FontOrigin::document;
    EXPECT_THAT(assess(facts).reasons, ElementsAre(noLicenseText));
}

TEST(Classifier, ADocumentFontWithAnOS2TableTellsItsBits)
{
    FontFacts facts = folderFont(0x0004);
    facts.origin = FontOrigin::document;
    EXPECT_THAT(assess(facts).reasons, ElementsAre(noLicenseText, previewAndPrint));
}

// Open licences

struct OpenRow {
    std::string_view name;
    std::string_view description;
    LicenseKind kind;
    std::string headline;
    std::string first;
    std::string second;
    std::string conflict;
};

class OpenLicences : public testing::TestWithParam<OpenRow> {
protected:
    const OpenRow& row{GetParam()};
};

TEST_P(OpenLicences, AreLikelyOK)
{
    const Assessment assessment = assess(described(0x0000, row.description));
    EXPECT_EQ(assessment.verdict, Verdict::likelyOK);
    EXPECT_EQ(assessment.headline, row.headline);
    EXPECT_THAT(assessment.reasons, ElementsAre(row.first, row.second, installable));
    EXPECT_EQ(assessment.license, row.kind);
    EXPECT_FALSE(assessment.appleBundled);
}

TEST_P(OpenLicences, ConflictWithRestrictedBits)
{
    const Assessment assessment = assess(described(0x0002, row.description));
    EXPECT_EQ(assessment.verdict, Verdict::restricted);
    EXPECT_EQ(assessment.headline, forbidden);
    EXPECT_THAT(assessment.reasons, ElementsAre(row.conflict, restrictedLicense));
    EXPECT_EQ(assessment.license, row.kind);
    EXPECT_FALSE(assessment.appleBundled);
}

TEST_P(OpenLicences, OutweighThatACopyCameWithMacOS)
{
    FontFacts facts = systemFont(0x0000);
    facts.licenseDescription = std::string(row.description);
    const Assessment assessment = assess(facts);
    EXPECT_EQ(assessment.verdict, Verdict::likelyOK);
    EXPECT_EQ(assessment.headline, row.headline);
    EXPECT_THAT(assessment.reasons,
                ElementsAre(row.first, row.second, copyThatCameWithMacOS, installable));
    EXPECT_EQ(assessment.license, row.kind);
    EXPECT_TRUE(assessment.appleBundled);
}

const OpenRow openRows[] = {
    {"Ofl", "SIL Open Font License", LicenseKind::ofl, "Names the SIL Open Font License.",
     "The font's own license fields name the SIL Open Font License (license text).", oflPermission,
     "Its license text names the SIL Open Font License, which conflicts with the restricted bits; "
     "ask the designer which applies."},
    {"Apache", "Apache License 2.0", LicenseKind::apache, "Names the Apache License.",
     "The font's own license fields name the Apache License (license text).",
     "The Apache License allows embedding and bundling it, also commercially, keeping its notices.",
     "Its license text names the Apache License, which conflicts with the restricted bits; ask the "
     "designer which applies."},
    {"Ubuntu", "Ubuntu Font Licence", LicenseKind::ufl, "Names the Ubuntu Font Licence.",
     "The font's own license fields name the Ubuntu Font Licence (license text).",
     "The Ubuntu Font Licence allows embedding and bundling it, also commercially; renamed "
     "modified "
     "copies have rules.",
     "Its license text names the Ubuntu Font Licence, which conflicts with the restricted bits; "
     "ask "
     "the designer which applies."},
    {"Mit", "MIT License", LicenseKind::mit, "Names the MIT License.",
     "The font's own license fields name the MIT License (license text).",
     "The MIT License allows embedding and bundling it, keeping the copyright notice.",
     "Its license text names the MIT License, which conflicts with the restricted bits; ask the "
     "designer which applies."},
    {"PublicDomain", "CC0", LicenseKind::publicDomain, "Names the Public domain / CC0.",
     "The font's own license fields name the Public domain / CC0 (license text).",
     "Public domain / CC0 fonts have no restriction on embedding.",
     "Its license text names the Public domain / CC0, which conflicts with the restricted bits; "
     "ask "
     "the designer which applies."},
    {"Vera", "Bitstream Vera", LicenseKind::bitstreamVera, "Names the Bitstream Vera license.",
     "The font's own license fields name the Bitstream Vera license (license text).",
     "The Bitstream Vera license allows embedding and bundling it; you can't sell the font by "
     "itself.",
     "Its license text names the Bitstream Vera license, which conflicts with the restricted bits; "
     "ask the designer which applies."},
};

INSTANTIATE_TEST_SUITE_P(Classifier, OpenLicences, testing::ValuesIn(openRows),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(Classifier, AnOpenLicenceInACopyrightLineSaysThatItWasReadThere)
{
    FontFacts facts = folderFont(0x0000);
    facts.copyright = "Copyright 2020, SIL OFL";
    EXPECT_THAT(assess(facts).reasons,
                ElementsAre("The font's own license fields name the SIL Open Font License "
                            "(copyright line).",
                            oflPermission, installable));
}

// Other licences

struct OtherRow {
    std::string_view name;
    std::string_view description;
    LicenseKind kind;
    std::string headline;
    std::string reason;
};

class OtherLicences : public testing::TestWithParam<OtherRow> {
protected:
    const OtherRow& row{GetParam()};
};

TEST_P(OtherLicences, LeaveTheVerdictUnknown)
{
    const Assessment assessment = assess(described(0x0000, row.description));
    EXPECT_EQ(assessment.verdict, Verdict::unknown);
    EXPECT_EQ(assessment.headline, row.headline);
    EXPECT_THAT(assessment.reasons, ElementsAre(row.reason, installable));
    EXPECT_EQ(assessment.license, row.kind);
    EXPECT_FALSE(assessment.appleBundled);
}

TEST_P(OtherLicences, GiveWayToRestrictedBits)
{
    const Assessment assessment = assess(described(0x0002, row.description));
    EXPECT_EQ(assessment.verdict, Verdict::restricted);
    EXPECT_EQ(assessment.headline, forbidden);
    EXPECT_THAT(assessment.reasons, ElementsAre(restrictedLicense));
    EXPECT_EQ(assessment.license, row.kind);
}

TEST_P(OtherLicences, GiveWayToAnAppleOrigin)
{
    FontFacts facts = systemFont(0x0000);
    facts.licenseDescription = std::string(row.description);
    const Assessment assessment = assess(facts);
    EXPECT_EQ(assessment.verdict, Verdict::restricted);
    EXPECT_EQ(assessment.headline, appleHeadline);
    EXPECT_THAT(assessment.reasons, ElementsAre(appleFolder, appleLicense, installable));
    EXPECT_EQ(assessment.license, row.kind);
    EXPECT_TRUE(assessment.appleBundled);
}

const OtherRow otherRows[] = {
    {"Gpl", "GPLv3 with font exception", LicenseKind::gpl,
     "GPL font: embedding is allowed only with the GPL font exception.",
     "Its license fields name the GNU GPL. Without the font exception, embedding it can put a "
     "document under the GPL; check the font's project page."},
    {"Named", "See our end-user agreement.", LicenseKind::named,
     "Has its own license; its terms decide.",
     "The font names a license that isn't an open one this app recognizes (license text). "
     "Commercial licenses usually split desktop, web, app-embedding and ebook use; check what you "
     "bought."},
    {"None", "", LicenseKind::none, "No license text in the font.", noLicenseText},
};

INSTANTIATE_TEST_SUITE_P(Classifier, OtherLicences, testing::ValuesIn(otherRows),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(Classifier, AnOwnLicenceGivenByItsAddressSaysSo)
{
    FontFacts facts = folderFont(0x0000);
    facts.licenseURL = "https://example.com/eula";
    EXPECT_THAT(assess(facts).reasons,
                ElementsAre("The font names a license that isn't an open one this app recognizes "
                            "(license URL). Commercial licenses usually split desktop, web, "
                            "app-embedding and ebook use; check what you bought.",
                            installable));
}

TEST(Classifier, AnOwnLicenceFromALicenceFileNamesTheFile)
{
    FontFacts facts = described(0x0000, "Our terms.");
    facts.licenseFile = "/home/me/fonts/License.txt";
    EXPECT_THAT(assess(facts).reasons,
                ElementsAre("The font names a license that isn't an open one this app recognizes "
                            "(from the license file next to it, License.txt; the font file itself "
                            "has no license fields). Commercial licenses usually split desktop, "
                            "web, app-embedding and ebook use; check what you bought.",
                            installable));
}

TEST(Classifier, WithoutALicenceACopyrightLineIsMentioned)
{
    FontFacts facts = folderFont(0x0000);
    facts.copyright = "Copyright 2020 Foo";
    const Assessment assessment = assess(facts);
    EXPECT_EQ(assessment.headline, "No license text in the font.");
    EXPECT_THAT(assessment.reasons, ElementsAre(noLicenseTextButCopyright, installable));
}

TEST(Classifier, WithoutALicenceATrademarkLineIsNotMentioned)
{
    FontFacts facts = folderFont(0x0000);
    facts.trademark = "Foo is a trademark";
    EXPECT_THAT(assess(facts).reasons, ElementsAre(noLicenseText, installable));
}

// Apple's fonts

TEST(Classifier, AFontThatAppleMadeIsRestricted)
{
    FontFacts facts = folderFont(0x0000);
    facts.os2->vendorID = "APPL";
    const Assessment assessment = assess(facts);
    EXPECT_EQ(assessment.verdict, Verdict::restricted);
    EXPECT_EQ(assessment.headline, appleHeadline);
    EXPECT_THAT(assessment.reasons, ElementsAre(appleMaker, appleLicense, installable));
    EXPECT_TRUE(assessment.appleBundled);
}

TEST(Classifier, TheMakerOfAnAppleFontStandsInParentheses)
{
    FontFacts facts = systemFont(0x0000);
    facts.manufacturer = "Monotype Imaging Inc.";
    EXPECT_THAT(assess(facts).reasons, ElementsAre(appleFolder, appleLicenseOfMaker, installable));
}

TEST(Classifier, ForbiddingBitsOfAnAppleFontDecideButItStaysApples)
{
    const Assessment assessment = assess(systemFont(0x0002));
    EXPECT_EQ(assessment.verdict, Verdict::restricted);
    EXPECT_EQ(assessment.headline, forbidden);
    EXPECT_THAT(assessment.reasons, ElementsAre(restrictedLicense));
    EXPECT_TRUE(assessment.appleBundled);
}

TEST(Classifier, AnOflFontOfApplesWithForbiddingBitsHasTheConflictAlone)
{
    FontFacts facts = systemFont(0x0002);
    facts.licenseDescription = "OFL-1.1";
    const Assessment assessment = assess(facts);
    EXPECT_THAT(assessment.reasons,
                ElementsAre("Its license text names the SIL Open Font License, which conflicts "
                            "with the restricted bits; ask the designer which applies.",
                            restrictedLicense));
    EXPECT_TRUE(assessment.appleBundled);
}

// The source note

TEST(Classifier, SourceNoteOfDescriptionAndURL)
{
    FontFacts facts;
    facts.licenseDescription = "Terms";
    facts.licenseURL = "https://example.com";
    EXPECT_EQ(sourceNote(facts), " (license text and URL)");
}

TEST(Classifier, SourceNoteOfADescription)
{
    FontFacts facts;
    facts.licenseDescription = "Terms";
    EXPECT_EQ(sourceNote(facts), " (license text)");
}

TEST(Classifier, SourceNoteOfAURL)
{
    FontFacts facts;
    facts.licenseURL = "https://example.com";
    EXPECT_EQ(sourceNote(facts), " (license URL)");
}

TEST(Classifier, SourceNoteWithoutLicenceFields)
{
    EXPECT_EQ(sourceNote({}), " (copyright line)");
}

TEST(Classifier, SourceNoteOfALicenceFileComesBeforeTheFields)
{
    FontFacts facts;
    facts.licenseDescription = "Terms";
    facts.licenseURL = "https://example.com";
    facts.licenseFile = "/fonts/Foo Family/OFL.txt";
    EXPECT_EQ(sourceNote(facts), " (from the license file next to it, OFL.txt; the font file "
                                 "itself has no license fields)");
}

TEST(Classifier, SourceNoteOfALicenceFileWithoutAFolder)
{
    FontFacts facts;
    facts.licenseFile = "OFL.txt";
    EXPECT_EQ(sourceNote(facts), " (from the license file next to it, OFL.txt; the font file "
                                 "itself has no license fields)");
}

TEST(Classifier, HasTheStandingDisclaimer)
{
    EXPECT_EQ(Classifier::disclaimer,
              "Check the license; this reads the font's own data. Not legal advice.");
}

TEST(Classifier, TheSameFactsGiveTheSameAssessment)
{
    const FontFacts facts = described(0x0304, "GPL");
    EXPECT_EQ(assess(facts), assess(facts));
}

// Whole cases

TEST(Classifier, RestrictedBitsAndAnOflDescriptionNameTheConflictFirst)
{
    const Assessment assessment = assess(described(0x0002, "Under the SIL Open Font License."));
    EXPECT_EQ(assessment,
              (Assessment{.verdict = Verdict::restricted,
                          .headline = "The font's embedding bits forbid embedding it.",
                          .reasons = {"Its license text names the SIL Open Font License, which "
                                      "conflicts with the restricted bits; ask the designer which "
                                      "applies.",
                                      "Embedding bits (fsType 0x0002): Restricted License, which "
                                      "means the font must not be embedded in documents."},
                          .license = LicenseKind::ofl,
                          .appleBundled = false}));
}

TEST(Classifier, RestrictedNoSubsettingAndBitmapsOnlyAreThreeReasonsInThisOrder)
{
    EXPECT_THAT(assess(folderFont(0x0302)).reasons,
                ElementsAre("Embedding bits (fsType 0x0302): Restricted License, which means the "
                            "font must not be embedded in documents.",
                            "It asks to be embedded whole (no subsetting); most PDF tools subset "
                            "fonts.",
                            "Only bitmaps may be embedded, not outlines."));
}

TEST(Classifier, EditableWinsOverRestricted)
{
    const Assessment assessment = assess(described(0x000A, "MIT License"));
    EXPECT_EQ(assessment.verdict, Verdict::likelyOK);
    EXPECT_EQ(assessment.reasons.back(), "Embedding bits (fsType 0x000A): editable, so it may be "
                                         "embedded in documents that others can edit.");
}

TEST(Classifier, NoLicenceNoCopyrightAndNotApplesIsUnknown)
{
    EXPECT_EQ(assess(folderFont(0x0000)), (Assessment{.verdict = Verdict::unknown,
                                                      .headline = "No license text in the font.",
                                                      .reasons = {noLicenseText, installable},
                                                      .license = LicenseKind::none,
                                                      .appleBundled = false}));
}

TEST(Classifier, AnInstalledAppleFontWithoutALicenceIsRestricted)
{
    EXPECT_EQ(assess(systemFont(0x0000)),
              (Assessment{.verdict = Verdict::restricted,
                          .headline = appleHeadline,
                          .reasons = {appleFolder, appleLicense, installable},
                          .license = LicenseKind::none,
                          .appleBundled = true}));
}

TEST(Classifier, AnOflFontInASystemFolderIsLikelyOKAndApples)
{
    FontFacts facts = systemFont(0x0000);
    facts.licenseDescription = "SIL Open Font License";
    facts.licenseURL = "https://openfontlicense.org";
    EXPECT_EQ(assess(facts),
              (Assessment{.verdict = Verdict::likelyOK,
                          .headline = "Names the SIL Open Font License.",
                          .reasons = {"The font's own license fields name the SIL Open Font "
                                      "License (license text and URL).",
                                      oflPermission, copyThatCameWithMacOS, installable},
                          .license = LicenseKind::ofl,
                          .appleBundled = true}));
}

TEST(Classifier, AnUnmatchedDocumentFontNamedHelveticaIsRestrictedByItsName)
{
    FontFacts facts;
    facts.postScriptName = "Helvetica-Bold";
    facts.family = "Helvetica-Bold";
    facts.origin = FontOrigin::document;
    EXPECT_EQ(assess(facts), (Assessment{.verdict = Verdict::restricted,
                                         .headline = appleHeadline,
                                         .reasons = {appleName, appleLicense},
                                         .license = LicenseKind::none,
                                         .appleBundled = true}));
}

TEST(Classifier, AScannedMitFontWithoutAnOS2TableEndsWithThatReason)
{
    const Assessment assessment = assess(described(std::nullopt, "MIT License"));
    EXPECT_EQ(assessment.verdict, Verdict::likelyOK);
    EXPECT_EQ(assessment.reasons.back(), "No OS/2 table, so there are no embedding bits to read.");
}

TEST(Classifier, AnOpenLicenceFromALicenceFileNamesTheFile)
{
    FontFacts facts = described(0x0000, "SIL Open Font License");
    facts.licenseFile = "/home/me/fonts/OFL.txt";
    EXPECT_THAT(assess(facts).reasons,
                ElementsAre("Its license names the SIL Open Font License (from the license file "
                            "next to it, OFL.txt; the font file itself has no license fields).",
                            oflPermission, installable));
}

TEST(Classifier, AGplFontWithRestrictedBitsHasNoneOfTheGplTexts)
{
    EXPECT_EQ(assess(described(0x0002, "GPL")), (Assessment{.verdict = Verdict::restricted,
                                                            .headline = forbidden,
                                                            .reasons = {restrictedLicense},
                                                            .license = LicenseKind::gpl,
                                                            .appleBundled = false}));
}

} // namespace
} // namespace quillmark
