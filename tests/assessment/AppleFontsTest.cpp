#include "assessment/AppleFonts.h"

#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace quillmark {
namespace {

using AppleFonts::Origin;
using Kind = AppleFonts::Origin::Kind;

const Origin appleMade{Kind::appleMade, {}};
const Origin knownName{Kind::knownName, {}};

/// A font that a document only names.
FontFacts documentFont(std::string_view postScriptName)
{
    FontFacts facts;
    facts.postScriptName = postScriptName;
    facts.origin = FontOrigin::document;
    return facts;
}

FontFacts installedAt(std::string_view path)
{
    FontFacts facts;
    facts.filePath = path;
    facts.origin = FontOrigin::installed;
    return facts;
}

FontFacts folderFont()
{
    FontFacts facts;
    facts.filePath = "/home/me/fonts/a.ttf";
    facts.origin = FontOrigin::folder;
    return facts;
}

FontFacts withVendor(std::string vendorID)
{
    FontFacts facts = folderFont();
    facts.os2 = OS2Info{.version = 4, .fsType = 0, .vendorID = std::move(vendorID)};
    return facts;
}

FontFacts withCopyright(std::string copyright)
{
    FontFacts facts = folderFont();
    facts.copyright = std::move(copyright);
    return facts;
}

class KnownNames : public testing::TestWithParam<std::string_view> {};

TEST_P(KnownNames, AppleShipsTheFamily)
{
    EXPECT_EQ(AppleFonts::origin(documentFont(GetParam())), knownName);
    EXPECT_EQ(AppleFonts::origin(documentFont(std::string(GetParam()) + "X-Bold")), knownName);
}

TEST_P(KnownNames, TheNameMustBeginWithItExactly)
{
    const std::string name(GetParam());
    EXPECT_EQ(AppleFonts::origin(documentFont("X" + name)), std::nullopt);
    std::string otherCase = name;
    otherCase[1] = static_cast<char>(otherCase[1] ^ 0x20);
    EXPECT_EQ(AppleFonts::origin(documentFont(otherCase)), std::nullopt);
}

constexpr auto knownNames = std::to_array<std::string_view>({
    ".SF",           "SFPro",         "SFCompact",
    "SFMono",        "SFNS",          "NewYork",
    "AvenirNext",    "Avenir-",       "HelveticaNeue",
    "Helvetica",     "Menlo",         "Monaco",
    "Geneva",        "LucidaGrande",  "Futura",
    "Optima",        "GillSans",      "Baskerville",
    "Didot",         "HoeflerText",   "Palatino",
    "Times-",        "TimesNewRoman", "Charter",
    "Chalkboard",    "MarkerFelt",    "Noteworthy",
    "Papyrus",       "Copperplate",   "AmericanTypewriter",
    "Cochin",        "Seravek",       "Superclarendon",
    "Athelas",       "Iowan",         "AppleColorEmoji",
    "AppleSDGothic", "AppleBraille",  "AppleChancery",
    "AppleMyungjo",  "Hiragino",      "PingFang",
    "STHeiti",       "Kefa",          "Kohinoor",
    "Skia",          "Zapfino",       "ArialRoundedMT",
    "BradleyHand",   "Chalkduster",   "Phosphate",
    "SignPainter",   "Trattatello",   "Rockwell",
    "Bodoni",        "BigCaslon",     "Damascus",
    "Farah",         "GeezaPro",      "Mishafi",
    "Muna",          "Sana",          "Thonburi",
    "Mshtakan",
});
static_assert(knownNames.size() == 64);

INSTANTIATE_TEST_SUITE_P(AppleFonts, KnownNames, testing::ValuesIn(knownNames),
                         [](const auto& test) {
                             std::string name(test.param);
                             for (char& character : name) {
                                 if (character == '.') character = 'd';
                                 if (character == '-') character = 'h';
                             }
                             return name;
                         });

// A letter short of a known name, and no other known name is its beginning.
TEST(AppleFonts, ANameThatStopsShortOfAKnownOneIsNotKnown)
{
    for (const std::string_view name : knownNames) {
        if (name == "HelveticaNeue") continue; // Helvetica is known by itself
        EXPECT_EQ(AppleFonts::origin(documentFont(name.substr(0, name.size() - 1))), std::nullopt)
            << name;
    }
}

struct FolderRow {
    std::string_view name;
    std::string_view path;
    bool system;
};

class SystemFolders : public testing::TestWithParam<FolderRow> {};

TEST_P(SystemFolders, DecideByThePathsBeginning)
{
    const std::string path(GetParam().path);
    const auto expected =
        GetParam().system ? std::optional(Origin{Kind::systemFolder, path}) : std::nullopt;
    EXPECT_EQ(AppleFonts::origin(installedAt(path)), expected);
}

INSTANTIATE_TEST_SUITE_P(
    AppleFonts, SystemFolders,
    testing::ValuesIn(std::to_array<FolderRow>({
        {"Fonts", "/System/Library/Fonts/a.ttf", true},
        {"AssetsV2", "/System/Library/AssetsV2/com_apple_MobileAsset_Font/a.ttf", true},
        {"AssetsV2Numbered", "/System/Library/AssetsV2/com_apple_MobileAsset_Font7/x/a.ttf", true},
        {"Assets", "/System/Library/Assets/com_apple_MobileAsset_Font/a.ttf", true},
        {"AssetsNumbered", "/System/Library/Assets/com_apple_MobileAsset_Font3/x/a.ttf", true},
        {"FontServices", "/System/Library/PrivateFrameworks/FontServices.framework/Resources/a.ttf",
         true},
        {"ApplicationSupport", "/Library/Application Support/Apple/Fonts/a.ttf", true},
        {"FontsWithoutSlash", "/System/Library/FontsOld/a.ttf", false},
        {"OtherAsset", "/System/Library/AssetsV2/com_apple_MobileAsset_Dictionary/a.ttf", false},
        {"OtherOldAsset", "/System/Library/Assets/com_apple_MobileAsset_Dictionary/a.ttf", false},
        {"OtherFramework", "/System/Library/PrivateFrameworks/FontServices/a.ttf", false},
        {"OtherSupport", "/Library/Application Support/Apple/FontsOld/a.ttf", false},
        {"OtherCase", "/system/library/fonts/a.ttf", false},
        {"UserFolder", "/Users/me/Library/Fonts/a.ttf", false},
        {"LocalFolder", "/Library/Fonts/a.ttf", false},
        {"BelowAnotherFolder", "/Volumes/Old/System/Library/Fonts/a.ttf", false},
    })),
    [](const auto& test) { return std::string(test.param.name); });

TEST(AppleFonts, ASupplementalSystemFontIsOneWhateverItsVendorOrCopyright)
{
    FontFacts facts = installedAt("/System/Library/Fonts/Supplemental/Foo.ttf");
    facts.os2 = OS2Info{.version = 4, .fsType = 0, .vendorID = "APPL"};
    facts.copyright = "Copyright Apple Inc.";
    const Origin inFolder{Kind::systemFolder, "/System/Library/Fonts/Supplemental/Foo.ttf"};
    EXPECT_EQ(AppleFonts::origin(facts), inFolder);
    facts.os2->vendorID = "MONO";
    facts.copyright = "Copyright somebody else";
    EXPECT_EQ(AppleFonts::origin(facts), inFolder);
}

TEST(AppleFonts, TwoSystemFolderOriginsAreEqualWhenTheirPathsAre)
{
    const Origin first{Kind::systemFolder, "/System/Library/Fonts/a.ttf"};
    const Origin second{Kind::systemFolder, "/System/Library/Fonts/b.ttf"};
    EXPECT_EQ(first, first);
    EXPECT_NE(first, second);
}

TEST(AppleFonts, TheVendorApplInAUserFolderIsAppleMade)
{
    EXPECT_EQ(AppleFonts::origin(withVendor("APPL")), appleMade);
}

TEST(AppleFonts, TheVendorInLowerCaseIsNotApple)
{
    EXPECT_EQ(AppleFonts::origin(withVendor("appl")), std::nullopt);
}

TEST(AppleFonts, TheVendorMustBeApplExactly)
{
    EXPECT_EQ(AppleFonts::origin(withVendor("APPL ")), std::nullopt);
    EXPECT_EQ(AppleFonts::origin(withVendor("APP")), std::nullopt);
    EXPECT_EQ(AppleFonts::origin(withVendor("APPLE")), std::nullopt);
}

TEST(AppleFonts, ACopyrightNamingAppleIncInCapitalsIsAppleMade)
{
    EXPECT_EQ(AppleFonts::origin(withCopyright("COPYRIGHT APPLE INC. 2009")), appleMade);
    EXPECT_EQ(AppleFonts::origin(withCopyright("© apple inc")), appleMade);
}

TEST(AppleFonts, ACopyrightNamingAppleComputerIsAppleMade)
{
    EXPECT_EQ(AppleFonts::origin(withCopyright("© 1992 Apple Computer, Inc.")), appleMade);
    EXPECT_EQ(AppleFonts::origin(withCopyright("1992 APPLE COMPUTER")), appleMade);
}

TEST(AppleFonts, ACopyrightNamingAnotherAppleIsNot)
{
    EXPECT_EQ(AppleFonts::origin(withCopyright("Apple Tree Type")), std::nullopt);
    EXPECT_EQ(AppleFonts::origin(withCopyright("Apple  Inc")), std::nullopt);
    EXPECT_EQ(AppleFonts::origin(withCopyright("Äpple Inc")), std::nullopt);
    EXPECT_EQ(AppleFonts::origin(withCopyright("")), std::nullopt);
}

TEST(AppleFonts, TheManufacturerFieldIsNotRead)
{
    FontFacts facts = folderFont();
    facts.manufacturer = "Apple Inc.";
    EXPECT_EQ(AppleFonts::origin(facts), std::nullopt);
}

TEST(AppleFonts, TheMakerCountsForEveryOrigin)
{
    for (const FontOrigin origin :
         {FontOrigin::installed, FontOrigin::folder, FontOrigin::document}) {
        FontFacts facts = withVendor("APPL");
        facts.origin = origin;
        EXPECT_EQ(AppleFonts::origin(facts), appleMade);
        facts = withCopyright("Apple Inc.");
        facts.origin = origin;
        EXPECT_EQ(AppleFonts::origin(facts), appleMade);
    }
}

TEST(AppleFonts, TheMakerIsTriedBeforeTheName)
{
    FontFacts facts = documentFont("Helvetica-Bold");
    facts.copyright = "Apple Computer";
    EXPECT_EQ(AppleFonts::origin(facts), appleMade);
}

TEST(AppleFonts, ADocumentFontNamedHelveticaBoldIsKnownAndAnInstalledOneIsNot)
{
    EXPECT_EQ(AppleFonts::origin(documentFont("Helvetica-Bold")), knownName);
    FontFacts installed = installedAt("/usr/share/fonts/helvb.otf");
    installed.postScriptName = "Helvetica-Bold";
    EXPECT_EQ(AppleFonts::origin(installed), std::nullopt);
}

TEST(AppleFonts, AKnownNameCountsOnlyForADocumentFontWithoutAFile)
{
    FontFacts matched = documentFont("Helvetica-Bold");
    matched.filePath = "/usr/share/fonts/helvb.otf";
    EXPECT_EQ(AppleFonts::origin(matched), std::nullopt);
    FontFacts installed = documentFont("Helvetica-Bold");
    installed.origin = FontOrigin::installed;
    EXPECT_EQ(AppleFonts::origin(installed), std::nullopt);
    FontFacts scanned = documentFont("Helvetica-Bold");
    scanned.origin = FontOrigin::folder;
    EXPECT_EQ(AppleFonts::origin(scanned), std::nullopt);
}

TEST(AppleFonts, OnlyThePostScriptNameIsComparedWithTheKnownNames)
{
    FontFacts facts = documentFont("Foo");
    facts.family = "Helvetica";
    facts.fullName = "Helvetica Bold";
    EXPECT_EQ(AppleFonts::origin(facts), std::nullopt);
}

TEST(AppleFonts, AvenirLtStdIsNotApples)
{
    EXPECT_EQ(AppleFonts::origin(documentFont("AvenirLTStd-Roman")), std::nullopt);
}

TEST(AppleFonts, AHiddenSystemFaceIsKnown)
{
    EXPECT_EQ(AppleFonts::origin(documentFont(".SFNS-Regular")), knownName);
}

TEST(AppleFonts, WithoutAnOS2TableTheOtherTestsStillRun)
{
    FontFacts facts = documentFont("Foo");
    EXPECT_EQ(AppleFonts::origin(facts), std::nullopt);
    facts.copyright = "Apple Inc.";
    EXPECT_EQ(AppleFonts::origin(facts), appleMade);
    EXPECT_EQ(AppleFonts::origin(documentFont("Menlo-Regular")), knownName);
}

TEST(AppleFonts, WithoutAVendorTheOtherTestsStillRun)
{
    FontFacts facts = documentFont("Menlo-Regular");
    facts.os2 = OS2Info{.version = 4, .fsType = 0, .vendorID = std::nullopt};
    EXPECT_EQ(AppleFonts::origin(facts), knownName);
}

} // namespace
} // namespace quillmark
