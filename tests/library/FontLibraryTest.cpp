#include "library/FontLibrary.h"

#include "Fonts.h"
#include "support/FakeFontService.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <string>
#include <utility>
#include <vector>

namespace quillmark {
namespace {

using test::FakeFontService;
using test::platformFont;
using test::TemporaryFolder;
using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> postScriptNames(const std::vector<FontFacts>& fonts)
{
    std::vector<std::string> names;
    names.reserve(fonts.size());
    for (const FontFacts& font : fonts)
        names.push_back(font.postScriptName);
    return names;
}

/// An installed set of fonts that answer to their own names, one for each family.
FakeFontService installedFamilies(
    const std::vector<std::pair<std::string, std::pair<std::u16string, std::u16string>>>& fonts)
{
    FakeFontService service;
    for (const auto& [name, familyAndStyle] : fonts) {
        service.installed.emplace_back(
            name, platformFont(name, {{1, familyAndStyle.first}, {2, familyAndStyle.second}}));
    }
    return service;
}

TEST(PlatformFontFacts, NamesAndEmbeddingBitsComeFromTheTables)
{
    PlatformFont font = platformFont("Foo-Bold", {{0, u"(c) Foo"},
                                                  {1, u"Foo"},
                                                  {2, u"Bold"},
                                                  {4, u"Foo Bold"},
                                                  {6, u"Foo-Bold"},
                                                  {7, u"Foo is a trademark"},
                                                  {8, u"Foo Works"},
                                                  {9, u"F. Oo"},
                                                  {11, u"https://foo.example"},
                                                  {13, u"Free for all"},
                                                  {14, u"https://foo.example/license"}});
    font.path = "/fonts/Foo-Bold.otf";
    font.format = FontFormat::openTypePostScript;
    font.os2 = test::os2Table({.version = 4, .fsType = 8, .vendorID = "FOO"});
    const FontFacts expected{
        .postScriptName = "Foo-Bold",
        .family = "Foo",
        .style = "Bold",
        .fullName = "Foo Bold",
        .copyright = "(c) Foo",
        .trademark = "Foo is a trademark",
        .manufacturer = "Foo Works",
        .designer = "F. Oo",
        .vendorURL = "https://foo.example",
        .licenseDescription = "Free for all",
        .licenseURL = "https://foo.example/license",
        .licenseFile = std::nullopt,
        .os2 = OS2Info{4, 8, "FOO"},
        .filePath = "/fonts/Foo-Bold.otf",
        .format = "OpenType (CFF)",
        .origin = FontOrigin::folder,
    };
    EXPECT_EQ(FontLibrary::facts(font, FontOrigin::folder), expected);
}

struct PlatformName {
    std::uint16_t identifier;
    std::optional<std::string> FontFacts::*field;
    const char* name;
};

class PlatformNames : public testing::TestWithParam<PlatformName> {};

INSTANTIATE_TEST_SUITE_P(Optional, PlatformNames,
                         testing::Values(PlatformName{0, &FontFacts::copyright, "copyright"},
                                         PlatformName{4, &FontFacts::fullName, "fullName"},
                                         PlatformName{7, &FontFacts::trademark, "trademark"},
                                         PlatformName{8, &FontFacts::manufacturer, "manufacturer"},
                                         PlatformName{9, &FontFacts::designer, "designer"},
                                         PlatformName{11, &FontFacts::vendorURL, "vendorURL"},
                                         PlatformName{13, &FontFacts::licenseDescription,
                                                      "licenseDescription"},
                                         PlatformName{14, &FontFacts::licenseURL, "licenseURL"}),
                         [](const auto& row) { return row.param.name; });

TEST_P(PlatformNames, TheServiceFillsAMissingName)
{
    PlatformFont font = platformFont("Foo");
    font.names.add(GetParam().identifier, "from the service");
    EXPECT_EQ(FontLibrary::facts(font, FontOrigin::folder).*GetParam().field, "from the service");
}

TEST_P(PlatformNames, TheTableComesBeforeTheService)
{
    PlatformFont font = platformFont("Foo", {{GetParam().identifier, u"from the table"}});
    font.names.add(GetParam().identifier, "from the service");
    EXPECT_EQ(FontLibrary::facts(font, FontOrigin::folder).*GetParam().field, "from the table");
}

TEST_P(PlatformNames, AnEmptyAnswerOfTheServiceCountsAsNone)
{
    PlatformFont font = platformFont("Foo");
    font.names.add(GetParam().identifier, "");
    EXPECT_EQ(FontLibrary::facts(font, FontOrigin::folder).*GetParam().field, std::nullopt);
}

TEST(PlatformFontFacts, TheServiceFillsFamilyAndStyle)
{
    PlatformFont font = platformFont("Foo-Bold");
    font.names = {{1, "Foo"}, {2, "Bold"}};
    const FontFacts facts = FontLibrary::facts(font, FontOrigin::installed);
    EXPECT_EQ(facts.family, "Foo");
    EXPECT_EQ(facts.style, "Bold");
    EXPECT_EQ(facts.origin, FontOrigin::installed);
}

TEST(PlatformFontFacts, TheServiceFillsThePostScriptNameOfAFileFace)
{
    PlatformFont font = platformFont("");
    font.names = {{6, "Foo-Bold"}};
    font.path = "/fonts/file.pfb";
    const FontFacts facts = FontLibrary::facts(font, FontOrigin::folder);
    EXPECT_EQ(facts.postScriptName, "Foo-Bold");
    EXPECT_EQ(facts.family, "Foo-Bold");
}

TEST(PlatformFontFacts, TheServicesPostScriptNameReplacesTheTables)
{
    EXPECT_EQ(FontLibrary::facts(platformFont("Service", {{6, u"Table"}}), FontOrigin::installed)
                  .postScriptName,
              "Service");
}

TEST(PlatformFontFacts, TheServicesPostScriptNameStandsInForAMissingFamily)
{
    const FontFacts facts = FontLibrary::facts(platformFont("Service"), FontOrigin::installed);
    EXPECT_EQ(facts.family, "Service");
    EXPECT_EQ(facts.postScriptName, "Service");
    EXPECT_EQ(facts.style, "");
}

TEST(PlatformFontFacts, AFileFaceIsNamedByName6)
{
    PlatformFont font = platformFont("", {{4, u"Foo Bold"}, {6, u"FooPS-Bold"}});
    font.path = "/fonts/file.ttf";
    EXPECT_EQ(FontLibrary::facts(font, FontOrigin::folder).postScriptName, "FooPS-Bold");
}

TEST(PlatformFontFacts, AFileFaceWithoutName6IsNamedByItsFullNameWithoutSpaces)
{
    PlatformFont font = platformFont("", {{4, u"Foo Bold"}});
    font.path = "/fonts/file.ttf";
    const FontFacts facts = FontLibrary::facts(font, FontOrigin::folder);
    EXPECT_EQ(facts.postScriptName, "FooBold");
    EXPECT_EQ(facts.family, "file");
}

TEST(PlatformFontFacts, AFileFaceWithoutNamesIsNamedAfterItsFile)
{
    PlatformFont font = platformFont("");
    font.path = "/fonts/My.Old.Font.dfont";
    const FontFacts facts = FontLibrary::facts(font, FontOrigin::folder);
    EXPECT_EQ(facts.postScriptName, "My.Old.Font");
    EXPECT_EQ(facts.family, "My.Old.Font");
}

TEST(PlatformFontFacts, WithoutAPathThereIsNoFilePath)
{
    EXPECT_EQ(FontLibrary::facts(platformFont("Foo"), FontOrigin::installed).filePath,
              std::nullopt);
}

TEST(PlatformFontFacts, BytesOfThePathThatAreNotUtf8AreShownReplaced)
{
    PlatformFont font = platformFont("");
    font.path = "/fonts/\xFFoo.ttf";
    const FontFacts facts = FontLibrary::facts(font, FontOrigin::folder);
    EXPECT_EQ(facts.filePath, "/fonts/\uFFFDoo.ttf");
    EXPECT_EQ(facts.postScriptName, "\uFFFDoo");
}

TEST(PlatformFontFacts, AnOS2TableOfNineBytesContributesNothing)
{
    PlatformFont font = platformFont("Foo");
    font.os2 = test::Bytes(9);
    EXPECT_EQ(FontLibrary::facts(font, FontOrigin::folder).os2, std::nullopt);
}

struct FormatCase {
    std::optional<FontFormat> format;
    const char* path;
    const char* label;
};

TEST(FormatName, EveryFormatNumberAndExtensionHasItsLabel)
{
    const std::vector<FormatCase> cases{
        {FontFormat::openTypePostScript, "/f/a.otf", "OpenType (CFF)"},
        {FontFormat::openTypePostScript, "/f/a.ttc", "OpenType (CFF)"},
        {FontFormat::openTypeTrueType, "/f/a.ttf", "TrueType"},
        {FontFormat::openTypeTrueType, "/f/a.ttc", "TrueType collection"},
        {FontFormat::openTypeTrueType, "/f/a.TTC", "TrueType collection"},
        {FontFormat::trueType, "/f/a.ttf", "TrueType"},
        {FontFormat::trueType, "/f/a.otc", "TrueType"},
        {FontFormat::trueType, "/f/a.dfont", "TrueType"},
        {FontFormat::trueType, "/f/a.ttc", "TrueType collection"},
        {FontFormat::trueType, nullptr, "TrueType"},
        {FontFormat::postScript, "/f/a.pfb", "PostScript Type 1"},
        {FontFormat::bitmap, "/f/a.pcf.gz", "Bitmap"},
        {std::nullopt, "/f/a.woff", "WOFF"},
        {std::nullopt, "/f/a.woff2", "WOFF2"},
        {std::nullopt, "/f/a.WoFf2", "WOFF2"},
        {std::nullopt, "/f/a.\u00E9t\u00E9", "\u00C9T\u00C9"},
        {std::nullopt, "/f.d/a", "Font"},
        {std::nullopt, "/f/a.", "Font"},
        {std::nullopt, "/f/.woff", "Font"},
        {std::nullopt, nullptr, "Font"},
    };
    for (const FormatCase& next : cases) {
        PlatformFont font;
        font.format = next.format;
        if (next.path != nullptr) font.path = next.path;
        EXPECT_EQ(FontLibrary::formatName(font), next.label)
            << (next.path == nullptr ? "no path" : next.path);
    }
}

TEST(InstalledFonts, AreSortedByFamilyThenStyleWithNumbersByValue)
{
    const auto service = installedFamilies({{"B2", {u"Beta", u"Regular"}},
                                            {"A10", {u"Alpha 10", u"Regular"}},
                                            {"A2", {u"Alpha 2", u"Regular"}},
                                            {"B1", {u"Beta", u"Bold"}},
                                            {"b0", {u"alpha 1", u"Regular"}}});
    EXPECT_THAT(postScriptNames(FontLibrary::installedFonts(service, Collator("en"))),
                ElementsAre("b0", "A2", "A10", "B1", "B2"));
}

TEST(InstalledFonts, EqualFamilyAndStyleKeepTheServicesOrder)
{
    const auto service = installedFamilies(
        {{"Z", {u"Foo", u"Bold"}}, {"M", {u"Foo", u"Bold"}}, {"A", {u"Foo", u"Bold"}}});
    EXPECT_THAT(postScriptNames(FontLibrary::installedFonts(service, Collator("en"))),
                ElementsAre("Z", "M", "A"));
}

TEST(InstalledFonts, AreSortedByTheRulesOfTheLanguage)
{
    const auto service = installedFamilies(
        {{"Z", {u"Zeta", u""}}, {"O", {u"\u00D6rjan", u""}}, {"P", {u"Pi", u""}}});
    EXPECT_THAT(postScriptNames(FontLibrary::installedFonts(service, Collator("sv_SE"))),
                ElementsAre("P", "Z", "O"));
    EXPECT_THAT(postScriptNames(FontLibrary::installedFonts(service, Collator("de_DE"))),
                ElementsAre("O", "P", "Z"));
}

TEST(InstalledFonts, ASubstitutedFontIsLeftOut)
{
    FakeFontService service;
    service.installed = {{"Wanted", platformFont("Other")}, {"Real", platformFont("Real")}};
    EXPECT_THAT(postScriptNames(FontLibrary::installedFonts(service, Collator("en"))),
                ElementsAre("Real"));
}

TEST(InstalledFonts, AFontThatTheServiceCannotMakeIsLeftOut)
{
    FakeFontService service;
    service.installed = {{"Gone", std::nullopt}, {"Real", platformFont("Real")}};
    EXPECT_THAT(postScriptNames(FontLibrary::installedFonts(service, Collator("en"))),
                ElementsAre("Real"));
}

TEST(InstalledFonts, AFontWithoutAFileIsKept)
{
    FakeFontService service;
    service.installed = {{"Memory", platformFont("Memory")}};
    const auto fonts = FontLibrary::installedFonts(service, Collator("en"));
    ASSERT_EQ(fonts.size(), 1U);
    EXPECT_EQ(fonts[0].filePath, std::nullopt);
    EXPECT_EQ(fonts[0].origin, FontOrigin::installed);
}

TEST(InstalledFonts, TheSameFileAndNameIsListedOnceTheFirstTime)
{
    PlatformFont first = platformFont("Foo", {{0, u"first"}});
    first.path = "/f/foo.ttf";
    PlatformFont second = platformFont("Foo", {{0, u"second"}});
    second.path = "/f/foo.ttf";
    PlatformFont elsewhere = platformFont("Bar");
    elsewhere.path = "/f/foo.ttf";

    // The service here names the first twice; the fake answers with the first of a name.
    FakeFontService service;
    service.installed = {{"Foo", first}, {"Foo", second}, {"Bar", elsewhere}};
    const auto fonts = FontLibrary::installedFonts(service, Collator("en"));
    EXPECT_THAT(postScriptNames(fonts), ElementsAre("Bar", "Foo"));
    EXPECT_EQ(fonts[1].copyright, "first");
}

TEST(InstalledFonts, NoneAreListedWhereTheServiceHasNone)
{
    std::vector<std::pair<std::size_t, std::size_t>> calls;
    EXPECT_THAT(FontLibrary::installedFonts(
                    FakeFontService{}, Collator("en"),
                    [&](std::size_t done, std::size_t total) { calls.emplace_back(done, total); }),
                IsEmpty());
    EXPECT_THAT(calls, ElementsAre(std::pair(0U, 0U)));
}

/// The progress calls for `count` fonts, of which the one at `missing` cannot be made.
std::vector<std::pair<std::size_t, std::size_t>> progressCalls(std::size_t count,
                                                               std::size_t missing)
{
    FakeFontService service;
    for (std::size_t i = 0; i < count; ++i) {
        const std::string name = "Font" + std::to_string(i);
        service.installed.emplace_back(name, i == missing ? std::nullopt
                                                          : std::optional(platformFont(name)));
    }
    std::vector<std::pair<std::size_t, std::size_t>> calls;
    (void)FontLibrary::installedFonts(
        service, Collator("en"),
        [&](std::size_t done, std::size_t total) { calls.emplace_back(done, total); });
    return calls;
}

TEST(InstalledFonts, ProgressIsToldAtEveryHundredthFontAndAtTheEnd)
{
    EXPECT_THAT(progressCalls(250, 7), ElementsAre(std::pair(0U, 250U), std::pair(100U, 250U),
                                                   std::pair(200U, 250U), std::pair(250U, 250U)));
}

TEST(InstalledFonts, ProgressIsNotToldForAHundredthFontThatIsLeftOut)
{
    EXPECT_THAT(progressCalls(250, 100),
                ElementsAre(std::pair(0U, 250U), std::pair(200U, 250U), std::pair(250U, 250U)));
}

TEST(InstalledFont, IsFoundByItsExactName)
{
    FakeFontService service;
    service.installed = {{"Foo-Bold", platformFont("Foo-Bold", {{1, u"Foo"}})}};
    const auto font = FontLibrary::installedFont(service, "Foo-Bold");
    ASSERT_TRUE(font);
    EXPECT_EQ(font->family, "Foo");
    EXPECT_EQ(font->origin, FontOrigin::installed);
}

TEST(InstalledFont, ASubstituteIsNotTaken)
{
    FakeFontService service;
    service.installed = {{"Helvetica", platformFont("Nimbus")},
                         {"helvetica", platformFont("Helvetica")}};
    EXPECT_EQ(FontLibrary::installedFont(service, "Helvetica"), std::nullopt);
    EXPECT_EQ(FontLibrary::installedFont(service, "helvetica"), std::nullopt);
}

TEST(InstalledFont, AnEmptyNameFindsNothing)
{
    FakeFontService service;
    service.installed = {{"", platformFont("")}};
    EXPECT_EQ(FontLibrary::installedFont(service, ""), std::nullopt);
}

TEST(InstalledFont, AnUnknownNameFindsNothing)
{
    EXPECT_EQ(FontLibrary::installedFont(FakeFontService{}, "Foo"), std::nullopt);
}

TEST(ReadFile, GivesOneRecordForEachFaceInFileOrder)
{
    FakeFontService service;
    std::vector<PlatformFont> faces{platformFont("Zeta"), platformFont("Alpha"),
                                    platformFont("Mu")};
    for (PlatformFont& face : faces) {
        face.path = "/fonts/three.ttc";
        face.format = FontFormat::trueType;
    }
    service.files["/fonts/three.ttc"] = faces;
    const auto records = FontLibrary::readFile(service, "/fonts/three.ttc", FontOrigin::folder);
    EXPECT_THAT(postScriptNames(records), ElementsAre("Zeta", "Alpha", "Mu"));
    for (const FontFacts& record : records) {
        EXPECT_EQ(record.filePath, "/fonts/three.ttc");
        EXPECT_EQ(record.format, "TrueType collection");
        EXPECT_EQ(record.origin, FontOrigin::folder);
    }
}

TEST(ReadFile, AFileWithoutFontsGivesNothing)
{
    EXPECT_THAT(FontLibrary::readFile(FakeFontService{}, "/none.ttf", FontOrigin::document),
                IsEmpty());
}

TEST(ReadFile, NamesOfManyFacesAreBoundedTogether)
{
    // Each table has seventeen strings of 64 KiB that lie over one another, and twelve of them are
    // read. The budget of a file is 64 MiB, so the later of a hundred faces go without names.
    test::ByteWriter table;
    table.u16(0).u16(17).u16(6 + 12 * 17);
    for (std::uint16_t i = 0; i < 17; ++i)
        table.u16(3).u16(1).u16(0x409).u16(i).u16(0xFFFE).u16(0);
    for (int i = 0; i < 0x7FFF; ++i)
        table.u16(u'x');
    PlatformFont face;
    face.name = table.build();
    face.path = "/fonts/large.ttc";
    FakeFontService service;
    service.files["/fonts/large.ttc"] = std::vector<PlatformFont>(100, face);
    const auto records = FontLibrary::readFile(service, "/fonts/large.ttc", FontOrigin::folder);
    ASSERT_EQ(records.size(), 100U);
    EXPECT_EQ(records.front().family.size(), 0x7FFFU);
    EXPECT_EQ(records.back().family, "large");
}

TEST(Settling, LeavesNoTableAndTheSameFacts)
{
    PlatformFont named = platformFont("", {{0, u"(c) Foo"}, {1, u"Foo"}, {6, u"Foo-Bold"}});
    PlatformFont fullNameOnly = platformFont("", {{4, u"Foo Bold"}, {256, u"Weight"}});
    PlatformFont nameless = platformFont("");
    nameless.names = {{1, "Known to the service"}};
    FakeFontService service;
    service.files["/f/a.ttc"] = {named, fullNameOnly, nameless};
    for (PlatformFont& face : service.files["/f/a.ttc"])
        face.path = "/f/a.ttc";
    const auto before = FontLibrary::readFile(service, "/f/a.ttc", FontOrigin::folder);

    FontLibrary::settle(service.files["/f/a.ttc"], Faces::all);
    for (const PlatformFont& face : service.files["/f/a.ttc"]) {
        EXPECT_FALSE(face.name);
        EXPECT_THAT(face.names, IsEmpty());
        EXPECT_TRUE(face.settledNames);
    }
    EXPECT_EQ(FontLibrary::readFile(service, "/f/a.ttc", FontOrigin::folder), before);
}

TEST(FacesOfEach, ComeOnceForEachFileUnderItsPlace)
{
    FakeFontService service;
    std::vector<std::string> files;
    for (int i = 0; i < 100; ++i) {
        files.push_back("/f/" + std::to_string(i));
        service.files[files.back()] = {platformFont(std::to_string(i))};
    }
    std::vector<std::vector<std::string>> names(files.size());
    service.facesOfEach(files, Faces::all, [&](std::size_t i, std::vector<PlatformFont>&& faces) {
        for (const PlatformFont& face : faces)
            names[i].push_back(face.postScriptName);
    });
    for (std::size_t i = 0; i < names.size(); ++i)
        EXPECT_THAT(names[i], ElementsAre(std::to_string(i)));
}

} // namespace
} // namespace quillmark
