#include "fontfile/FontFacts.h"

#include "support/FontBytes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quillmark {
namespace {

using test::ascii;
using test::Bytes;
using test::ByteWriter;
using test::FontBytes;
using testing::IsEmpty;
using testing::SizeIs;

FontFacts fromNames(const NameStrings& names)
{
    return FontFacts::fromNames(names, std::nullopt, "Fallback", std::nullopt, std::nullopt,
                                FontOrigin::folder);
}

/// Every field set, each to a text of its own that starts with `prefix`.
FontFacts full(const std::string& prefix)
{
    return {
        .postScriptName = prefix + " postScriptName",
        .family = prefix + " family",
        .style = prefix + " style",
        .fullName = prefix + " fullName",
        .copyright = prefix + " copyright",
        .trademark = prefix + " trademark",
        .manufacturer = prefix + " manufacturer",
        .designer = prefix + " designer",
        .vendorURL = prefix + " vendorURL",
        .licenseDescription = prefix + " licenseDescription",
        .licenseURL = prefix + " licenseURL",
        .licenseFile = prefix + " licenseFile",
        .os2 = OS2Info{static_cast<std::uint16_t>(prefix.size()), 8, prefix},
        .filePath = prefix + " filePath",
        .format = prefix + " format",
        .origin = prefix == "self" ? FontOrigin::document : FontOrigin::folder,
    };
}

/// Only what no record can be without.
FontFacts named(const std::string& postScriptName, const std::string& family, FontOrigin origin)
{
    FontFacts facts;
    facts.postScriptName = postScriptName;
    facts.family = family;
    facts.origin = origin;
    return facts;
}
FontFacts bare(const std::string& prefix, FontOrigin origin)
{
    return named(prefix + " postScriptName", prefix + " family", origin);
}

// Building from names.

TEST(FontFacts, EveryFieldComesFromItsName)
{
    const NameStrings names{
        {0, "copyright"},    {1, "family"},   {2, "style"},        {3, "unique"},
        {4, "full name"},    {5, "version"},  {6, "PS-Name"},      {7, "trademark"},
        {8, "manufacturer"}, {9, "designer"}, {10, "about"},       {11, "vendor URL"},
        {12, "their URL"},   {13, "licence"}, {14, "licence URL"},
    };
    const FontFacts expected{
        .postScriptName = "PS-Name",
        .family = "family",
        .style = "style",
        .fullName = "full name",
        .copyright = "copyright",
        .trademark = "trademark",
        .manufacturer = "manufacturer",
        .designer = "designer",
        .vendorURL = "vendor URL",
        .licenseDescription = "licence",
        .licenseURL = "licence URL",
        .licenseFile = std::nullopt,
        .os2 = OS2Info{4, 2, "ABCD"},
        .filePath = "/fonts/a.ttf",
        .format = "TrueType",
        .origin = FontOrigin::installed,
    };
    EXPECT_EQ(FontFacts::fromNames(names, OS2Info{4, 2, "ABCD"}, "Fallback", "/fonts/a.ttf",
                                   "TrueType", FontOrigin::installed),
              expected);
}

TEST(FontFacts, NoNamesGiveTheFallbackNameAndNothingElse)
{
    FontFacts expected = named("Fallback", "Fallback", FontOrigin::document);
    expected.os2 = OS2Info{4, 2, "ABCD"};
    expected.filePath = "/fonts/a.ttf";
    expected.format = "TrueType";
    EXPECT_EQ(FontFacts::fromNames({}, OS2Info{4, 2, "ABCD"}, "Fallback", "/fonts/a.ttf",
                                   "TrueType", FontOrigin::document),
              expected);
}

TEST(FontFacts, OnlyAFullNameGivesThePostScriptNameWithoutSpaces)
{
    const FontFacts facts = fromNames({{4, "Foo Bold"}});
    EXPECT_EQ(facts.postScriptName, "FooBold");
    EXPECT_EQ(facts.family, "Fallback");
    EXPECT_EQ(facts.style, "");
    EXPECT_EQ(facts.fullName, "Foo Bold");
}

TEST(FontFacts, OnlySpacesAreTakenOutOfTheFullName)
{
    EXPECT_EQ(fromNames({{4, "Foo  -\tBold\u00A0X Y"}}).postScriptName, "Foo-\tBold\u00A0XY");
}

TEST(FontFacts, PostScriptNameKeepsItsSpaces)
{
    EXPECT_EQ(fromNames({{4, "Foo Bold"}, {6, "Foo Bold PS"}}).postScriptName, "Foo Bold PS");
}

TEST(FontFacts, PostScriptNameWithoutName6AndName4IsTheFallback)
{
    EXPECT_EQ(fromNames({{1, "Foo"}}).postScriptName, "Fallback");
}

TEST(FontFacts, FamilyIsName16ThenName1ThenName6ThenTheFallback)
{
    EXPECT_EQ(fromNames({{16, "Typographic"}, {1, "Family"}, {6, "PS"}}).family, "Typographic");
    EXPECT_EQ(fromNames({{1, "Family"}, {6, "PS"}}).family, "Family");
    EXPECT_EQ(fromNames({{6, "PS"}}).family, "PS");
    EXPECT_EQ(fromNames({{0, "copyright"}}).family, "Fallback");
}

TEST(FontFacts, StyleIsName17ThenName2ThenEmpty)
{
    EXPECT_EQ(fromNames({{17, "Light"}, {2, "Regular"}}).style, "Light");
    EXPECT_EQ(fromNames({{2, "Regular"}}).style, "Regular");
    EXPECT_EQ(fromNames({{1, "Foo"}}).style, "");
}

TEST(FontFacts, DescriptionAndDesignerURLAreNotUsed)
{
    EXPECT_EQ(fromNames({{10, "a description"}, {12, "https://example.org"}}),
              named("Fallback", "Fallback", FontOrigin::folder));
}

// Reading bytes.

TEST(FontFacts, ReadOfACollectionGivesOneRecordPerFaceInOrder)
{
    const auto font = FontBytes()
                          .face()
                          .name(6, u"Foo-Regular")
                          .name(1, u"Foo")
                          .os2({.version = 3, .fsType = 8, .vendorID = "AB  "})
                          .face("OTTO")
                          .name(4, u"Foo Bold")
                          .build();
    const auto facts = FontFacts::read(font, "/fonts/foo.ttc", FontOrigin::folder);
    ASSERT_THAT(facts, SizeIs(2));
    FontFacts first = named("Foo-Regular", "Foo", FontOrigin::folder);
    first.os2 = OS2Info{3, 8, "AB"};
    first.filePath = "/fonts/foo.ttc";
    first.format = "TrueType";
    FontFacts second = named("FooBold", "Unnamed font", FontOrigin::folder);
    second.fullName = "Foo Bold";
    second.filePath = "/fonts/foo.ttc";
    second.format = "OpenType (CFF)";
    EXPECT_EQ(facts[0], first);
    EXPECT_EQ(facts[1], second);
}

TEST(FontFacts, FaceWithoutANameTableIsAnUnnamedFont)
{
    const auto facts =
        FontFacts::read(FontBytes().face().os2({.fsType = 2}).build(), {}, FontOrigin::document);
    ASSERT_THAT(facts, SizeIs(1));
    EXPECT_EQ(facts[0].postScriptName, "Unnamed font");
    EXPECT_EQ(facts[0].family, "Unnamed font");
    EXPECT_EQ(facts[0].fsType(), 2);
    EXPECT_EQ(facts[0].filePath, std::nullopt);
    EXPECT_EQ(facts[0].origin, FontOrigin::document);
}

TEST(FontFacts, FaceWhoseOS2TableIsTooShortHasNone)
{
    const auto facts = FontFacts::read(FontBytes().face().name(1, u"Foo").os2({.size = 9}).build(),
                                       {}, FontOrigin::folder);
    ASSERT_THAT(facts, SizeIs(1));
    EXPECT_EQ(facts[0].os2, std::nullopt);
    EXPECT_EQ(facts[0].family, "Foo");
}

TEST(FontFacts, BytesWithoutAFaceGiveNoRecord)
{
    EXPECT_THAT(FontFacts::read({}, {}, FontOrigin::folder), IsEmpty());
    EXPECT_THAT(FontFacts::read(ascii("wOFF and more"), {}, FontOrigin::folder), IsEmpty());
}

/// A collection of `count` faces that all have the same `name` table.
Bytes facesSharing(const Bytes& nameTable, std::uint32_t count)
{
    ByteWriter writer;
    const std::uint32_t directory = 12 + 4 * count;
    writer.text("ttcf").u32(0x00010000).u32(count);
    for (std::uint32_t i = 0; i < count; ++i)
        writer.u32(directory);
    writer.text("OTTO").u16(1).zeros(6);
    writer.text("name").u32(0).u32(directory + 28);
    writer.u32(static_cast<std::uint32_t>(nameTable.size()));
    return writer.bytes(nameTable).build();
}

TEST(FontFacts, FacesThatShareAnOrdinaryNameTableAllHaveTheirNames)
{
    const Bytes names = test::nameTable({test::windowsEnglish(1, u"Foo")}).build();
    const auto facts = FontFacts::read(facesSharing(names, 9999), {}, FontOrigin::folder);
    ASSERT_THAT(facts, SizeIs(9999));
    EXPECT_EQ(facts.front().family, "Foo");
    EXPECT_EQ(facts.back().family, "Foo");
}

TEST(FontFacts, FacesBehindTheBudgetOfAFileKeepTheirPlaceWithoutNames)
{
    // Every face asks for 48000 bytes of records and 13 strings, 899942 bytes together: 74 whole
    // ones fit into 64 MiB, and seven strings of the next. The records count: four more faces'
    // strings would fit without them.
    constexpr std::uint16_t records = 4000;
    ByteWriter names;
    names.u16(0).u16(records).u16(6 + 12 * records);
    for (std::uint16_t id = 0; id < records; ++id)
        names.u16(3).u16(1).u16(0x409).u16(id).u16(65534).u16(0);
    for (int i = 0; i < 65534 / 2; ++i)
        names.u16('x');

    const auto facts = FontFacts::read(facesSharing(names.build(), 9999), {}, FontOrigin::folder);
    ASSERT_THAT(facts, SizeIs(9999));
    EXPECT_EQ(facts[73].licenseURL, std::string(32767, 'x'));
    EXPECT_EQ(facts[74].manufacturer, std::string(32767, 'x'));
    EXPECT_EQ(facts[74].designer, std::nullopt);
    EXPECT_EQ(facts[75].family, "Unnamed font");
    EXPECT_EQ(facts[9998].family, "Unnamed font");
    EXPECT_EQ(facts[9998].format, "OpenType (CFF)");
}

// Combining.

TEST(FontFacts, FilledKeepsEverythingThatIsThere)
{
    EXPECT_EQ(full("self").filled(full("other")), full("self"));
}

TEST(FontFacts, FilledTakesWhatIsMissing)
{
    FontFacts expected = full("other");
    expected.postScriptName = "self postScriptName";
    expected.family = "self family";
    expected.format = std::nullopt;
    expected.origin = FontOrigin::document;
    EXPECT_EQ(bare("self", FontOrigin::document).filled(full("other")), expected);
}

TEST(FontFacts, FilledFromNothingChangesNothing)
{
    EXPECT_EQ(full("self").filled(bare("other", FontOrigin::folder)), full("self"));
}

TEST(FontFacts, LicenceFileIsNotTakenWithADifferentLicenceText)
{
    FontFacts self = bare("self", FontOrigin::document);
    self.licenseDescription = "text A";
    FontFacts other = bare("other", FontOrigin::folder);
    other.licenseDescription = "text B";
    other.licenseFile = "/fonts/OFL.txt";
    EXPECT_EQ(self.filled(other).licenseDescription, "text A");
    EXPECT_EQ(self.filled(other).licenseFile, std::nullopt);
    self.licenseFile = "/fonts/mine.txt";
    EXPECT_EQ(self.filled(other).licenseFile, "/fonts/mine.txt");
}

TEST(FontFacts, LicenceFileIsTakenWithItsLicenceText)
{
    FontFacts other = bare("other", FontOrigin::folder);
    other.licenseDescription = "text B";
    other.licenseFile = "/fonts/OFL.txt";

    FontFacts self = bare("self", FontOrigin::document);
    EXPECT_EQ(self.filled(other).licenseDescription, "text B");
    EXPECT_EQ(self.filled(other).licenseFile, "/fonts/OFL.txt");

    self.licenseDescription = "text B"; // the same text of its own
    EXPECT_EQ(self.filled(other).licenseFile, "/fonts/OFL.txt");
    self.licenseFile = "/fonts/mine.txt";
    EXPECT_EQ(self.filled(other).licenseFile, "/fonts/mine.txt");
}

TEST(FontFacts, LicenceFileIsTakenWhenNeitherHasALicenceText)
{
    FontFacts other = bare("other", FontOrigin::folder);
    other.licenseFile = "/fonts/OFL.txt";
    EXPECT_EQ(bare("self", FontOrigin::document).filled(other).licenseFile, "/fonts/OFL.txt");
}

TEST(FontFacts, LicenceFileIsNotTakenWhenOnlySelfHasALicenceText)
{
    FontFacts self = bare("self", FontOrigin::document);
    self.licenseDescription = "text A";
    FontFacts other = bare("other", FontOrigin::folder);
    other.licenseFile = "/fonts/OFL.txt";
    EXPECT_EQ(self.filled(other).licenseFile, std::nullopt);
}

// Derived values.

TEST(FontFacts, DisplayNameIsTheFullName)
{
    EXPECT_EQ(full("self").displayName(), "self fullName");
}

TEST(FontFacts, DisplayNameWithAnEmptyFullNameIsFamilyAndStyle)
{
    FontFacts facts;
    facts.family = "Foo";
    facts.style = "Bold";
    facts.fullName = "";
    EXPECT_EQ(facts.displayName(), "Foo Bold");
    facts.fullName = std::nullopt;
    EXPECT_EQ(facts.displayName(), "Foo Bold");
}

TEST(FontFacts, DisplayNameWithoutAStyleIsTheFamily)
{
    FontFacts facts;
    facts.family = "Foo";
    EXPECT_EQ(facts.displayName(), "Foo");
}

TEST(FontFacts, EmbeddingBitsAreThoseOfTheOS2Table)
{
    EXPECT_EQ(full("self").fsType(), 8);
    EXPECT_EQ(bare("self", FontOrigin::folder).fsType(), std::nullopt);
}

TEST(FontFacts, AreEqualOnlyWhenEveryFieldIs)
{
    const auto changes = std::to_array<void (*)(FontFacts&)>({
        [](FontFacts& facts) { facts.postScriptName += "x"; },
        [](FontFacts& facts) { facts.family += "x"; },
        [](FontFacts& facts) { facts.style += "x"; },
        [](FontFacts& facts) { facts.fullName.reset(); },
        [](FontFacts& facts) { facts.copyright.reset(); },
        [](FontFacts& facts) { facts.trademark.reset(); },
        [](FontFacts& facts) { facts.manufacturer.reset(); },
        [](FontFacts& facts) { facts.designer.reset(); },
        [](FontFacts& facts) { facts.vendorURL.reset(); },
        [](FontFacts& facts) { facts.licenseDescription.reset(); },
        [](FontFacts& facts) { facts.licenseURL.reset(); },
        [](FontFacts& facts) { facts.licenseFile.reset(); },
        [](FontFacts& facts) { facts.os2->fsType = 9; },
        [](FontFacts& facts) { facts.filePath.reset(); },
        [](FontFacts& facts) { facts.format.reset(); },
        [](FontFacts& facts) { facts.origin = FontOrigin::installed; },
    });
    EXPECT_EQ(full("self"), full("self"));
    for (std::size_t i = 0; i < changes.size(); ++i) {
        FontFacts changed = full("self");
        changes[i](changed);
        EXPECT_NE(changed, full("self")) << i;
    }
}

// Fixed texts.

TEST(FontOrigin, RawValuesStandInDeclarationOrder)
{
    EXPECT_EQ(rawValue(FontOrigin::installed), "installed");
    EXPECT_EQ(rawValue(FontOrigin::folder), "folder");
    EXPECT_EQ(rawValue(FontOrigin::document), "document");
    EXPECT_EQ(rawValues<FontOrigin>.size(), 3U);
    EXPECT_EQ(fromRawValue<FontOrigin>("document"), FontOrigin::document);
    EXPECT_EQ(fromRawValue<FontOrigin>("Document"), std::nullopt);
}

TEST(FormatLabel, TextsAreFixed)
{
    EXPECT_EQ(FormatLabel::trueType, "TrueType");
    EXPECT_EQ(FormatLabel::trueTypeCollection, "TrueType collection");
    EXPECT_EQ(FormatLabel::openTypeCFF, "OpenType (CFF)");
    EXPECT_EQ(FormatLabel::postScriptType1, "PostScript Type 1");
    EXPECT_EQ(FormatLabel::bitmap, "Bitmap");
    EXPECT_EQ(FormatLabel::font, "Font");
    EXPECT_EQ(FormatLabel::bareProgram, "CFF/Type 1");
}

} // namespace
} // namespace quillmark
