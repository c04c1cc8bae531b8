#include "fontfile/SFNT.h"

#include "support/FontBytes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <ostream>

namespace quillmark {
namespace {

using test::ascii;
using test::Bytes;
using test::ByteWriter;
using test::FontBytes;
using testing::IsEmpty;
using testing::SizeIs;
using namespace std::string_view_literals;

constexpr auto trueTypeVersion = "\0\1\0\0"sv;

/// The characters of a table that holds text; "absent" without one.
std::string text(const std::optional<std::span<const std::byte>>& table)
{
    if (!table) return "absent";
    return {reinterpret_cast<const char*>(table->data()), table->size()};
}

/// An offset table that declares `numTables` tables and has records for all of them, each for an
/// empty table tagged "zero".
ByteWriter directory(std::uint16_t numTables, std::string_view version = trueTypeVersion)
{
    ByteWriter writer;
    writer.text(version).mark("numTables").u16(numTables).zeros(6);
    for (int i = 0; i < numTables; ++i)
        writer.text("zero").zeros(12);
    return writer;
}

/// A collection of one sound face whose header declares `numFonts` faces and has `entries`
/// offsets, all of that one face.
Bytes collectionOfOneFace(std::uint32_t numFonts, std::size_t entries)
{
    ByteWriter writer;
    writer.text("ttcf").u32(0x00010000).u32(numFonts);
    for (std::size_t i = 0; i < entries; ++i)
        writer.u32(static_cast<std::uint32_t>(12 + 4 * entries));
    return writer.bytes(directory(0).build()).build();
}

TEST(SFNT, FaceHasItsTwoTablesAndOutlines)
{
    const Bytes font =
        FontBytes().face().table("name", ascii("names")).table("OS/2", ascii("bits")).build();
    const auto faces = SFNT::faces(font);
    ASSERT_THAT(faces, SizeIs(1));
    EXPECT_EQ(text(faces[0].name), "names");
    EXPECT_EQ(text(faces[0].os2), "bits");
    EXPECT_EQ(faces[0].outlines, "TrueType");
}

struct VersionCase {
    const char* name;
    std::string_view version;
    std::string_view outlines; // empty: no face

    friend std::ostream& operator<<(std::ostream& out, const VersionCase& row)
    {
        return out << row.name;
    }
};

class SFNTVersion : public testing::TestWithParam<VersionCase> {};

TEST_P(SFNTVersion, DecidesAboutTheOutlines)
{
    const auto faces = SFNT::faces(directory(1, GetParam().version).build());
    if (GetParam().outlines.empty()) {
        EXPECT_THAT(faces, IsEmpty());
    } else {
        ASSERT_THAT(faces, SizeIs(1));
        EXPECT_EQ(faces[0].outlines, GetParam().outlines);
    }
}

INSTANTIATE_TEST_SUITE_P(SFNT, SFNTVersion,
                         testing::Values(VersionCase{"TrueType", "\0\1\0\0"sv, "TrueType"},
                                         VersionCase{"OpenTypeCFF", "OTTO", "OpenType (CFF)"},
                                         VersionCase{"AppleTrueType", "true", "TrueType"},
                                         VersionCase{"AppleType1Wrapper", "typ1", "TrueType"},
                                         VersionCase{"Woff", "wOFF", ""},
                                         VersionCase{"Woff2", "wOF2", ""},
                                         VersionCase{"TrueTypeVersion2", "\0\2\0\0"sv, ""},
                                         VersionCase{"TrueTypeVersionWithMinor", "\0\1\0\1"sv, ""},
                                         VersionCase{"LowerCaseOtto", "otto", ""},
                                         VersionCase{"Pdf", "%PDF", ""},
                                         VersionCase{"Zeros", "\0\0\0\0"sv, ""}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(SFNT, BufferOfThreeBytesHasNoFaces)
{
    EXPECT_THAT(SFNT::faces(ascii("\0\1\0"sv)), IsEmpty());
    EXPECT_THAT(SFNT::faces(ascii("OTT")), IsEmpty());
    EXPECT_THAT(SFNT::faces(ascii("ttc")), IsEmpty());
    EXPECT_THAT(SFNT::faces({}), IsEmpty());
}

TEST(SFNT, WoffSignatureHasNoFaces)
{
    EXPECT_THAT(SFNT::faces(ByteWriter().text("wOFF").zeros(100).build()), IsEmpty());
    EXPECT_THAT(SFNT::faces(ByteWriter().text("wOF2").zeros(100).build()), IsEmpty());
}

TEST(SFNT, FaceWith511TablesIsAcceptedAndWith512IsNot)
{
    EXPECT_THAT(SFNT::faces(directory(511).build()), SizeIs(1));
    EXPECT_THAT(SFNT::faces(directory(512).build()), IsEmpty());
    EXPECT_THAT(SFNT::faces(directory(0xFFFF).build()), IsEmpty());
}

TEST(SFNT, FaceWithoutTablesHasNeither)
{
    const auto faces = SFNT::faces(directory(0).build());
    ASSERT_THAT(faces, SizeIs(1));
    EXPECT_EQ(text(faces[0].name), "absent");
    EXPECT_EQ(text(faces[0].os2), "absent");
}

TEST(SFNT, FaceWithoutTablesMayEndBehindTheirCount)
{
    EXPECT_THAT(SFNT::faces(ByteWriter().text(trueTypeVersion).u16(0).build()), SizeIs(1));
    EXPECT_THAT(SFNT::faces(ByteWriter().text(trueTypeVersion).u8(0).build()), IsEmpty());
    EXPECT_THAT(SFNT::faces(ascii(trueTypeVersion)), IsEmpty());
}

TEST(SFNT, NameRecordThatPointsBeyondTheEndLeavesTheFaceWithoutNames)
{
    auto font = FontBytes().face().table("name", ascii("names")).table("OS/2", ascii("bits"));
    auto writer = font.writer();
    writer.overwrite32("face0.name.offset", static_cast<std::uint32_t>(writer.size() - 4));
    const Bytes damaged = writer.build();
    const auto faces = SFNT::faces(damaged);
    ASSERT_THAT(faces, SizeIs(1));
    EXPECT_EQ(text(faces[0].name), "absent");
    EXPECT_EQ(text(faces[0].os2), "bits");
}

TEST(SFNT, TableMayEndWithTheBufferButNotBehindIt)
{
    const auto withNameLength = [](std::uint32_t length) {
        const Bytes font = directory(0)
                               .overwrite16("numTables", 1)
                               .text("name")
                               .u32(0)
                               .u32(12 + 16)
                               .u32(length)
                               .text("four")
                               .build();
        return text(SFNT::faces(font).at(0).name);
    };
    EXPECT_EQ(withNameLength(4), "four");
    EXPECT_EQ(withNameLength(5), "absent");
    EXPECT_EQ(withNameLength(0), "");
    EXPECT_EQ(withNameLength(0xFFFFFFFF), "absent");
}

TEST(SFNT, LargestOffsetAndLengthDoNotWrapRound)
{
    auto writer = FontBytes().face().table("name", ascii("names")).writer();
    writer.overwrite32("face0.name.offset", 0xFFFFFFFF);
    writer.overwrite32("face0.name.length", 0xFFFFFFFF);
    EXPECT_EQ(text(SFNT::faces(writer.build()).at(0).name), "absent");
}

TEST(SFNT, DirectoryCutInARecordGivesNoFace)
{
    const Bytes font = directory(2).build();
    ASSERT_THAT(SFNT::faces(font), SizeIs(1));
    for (std::size_t size = 0; size < font.size(); ++size)
        EXPECT_THAT(SFNT::faces(std::span(font).first(size)), IsEmpty()) << size;
}

TEST(SFNT, OnlyTheExactTagsAreUsed)
{
    const Bytes font = FontBytes()
                           .face()
                           .table("Name", ascii("a"))
                           .table("os/2", ascii("b"))
                           .table("OS 2", ascii("c"))
                           .table("nam\xE5", ascii("d"))
                           .build();
    const auto faces = SFNT::faces(font);
    EXPECT_EQ(text(faces.at(0).name), "absent");
    EXPECT_EQ(text(faces.at(0).os2), "absent");
}

TEST(SFNT, LastUsableRecordOfATagWins)
{
    const Bytes font = FontBytes()
                           .face()
                           .table("name", ascii("first"))
                           .table("OS/2", ascii("early"))
                           .table("name", ascii("second"))
                           .table("OS/2", ascii("late"))
                           .build();
    const auto faces = SFNT::faces(font);
    EXPECT_EQ(text(faces.at(0).name), "second");
    EXPECT_EQ(text(faces.at(0).os2), "late");
}

TEST(SFNT, UnusableLastRecordLeavesTheOneBeforeIt)
{
    auto writer =
        FontBytes().face().table("name", ascii("first")).table("name", ascii("second")).writer();
    writer.overwrite32("face0.name.length", 0x10000); // of the last one
    const Bytes font = writer.build();
    EXPECT_EQ(text(SFNT::faces(font).at(0).name), "first");
}

TEST(SFNT, ChecksumAndSearchFieldsAreNotChecked)
{
    auto writer = FontBytes().face().table("name", ascii("names")).writer();
    Bytes font = writer.build();
    for (std::size_t at = 6; at < 12; ++at)
        font[at] = std::byte{0xFF};
    for (std::size_t i = 0; i < 4; ++i)
        font[writer.position("face0.name") + 4 + i] = std::byte{0xFF};
    EXPECT_EQ(text(SFNT::faces(font).at(0).name), "names");
}

// Collections.

TEST(SFNT, CollectionGivesItsFacesInOrder)
{
    const Bytes font = FontBytes()
                           .face()
                           .table("name", ascii("one"))
                           .face("OTTO")
                           .table("name", ascii("two"))
                           .build();
    const auto faces = SFNT::faces(font);
    ASSERT_THAT(faces, SizeIs(2));
    EXPECT_EQ(text(faces[0].name), "one");
    EXPECT_EQ(faces[0].outlines, "TrueType");
    EXPECT_EQ(text(faces[1].name), "two");
    EXPECT_EQ(faces[1].outlines, "OpenType (CFF)");
}

TEST(SFNT, TableOffsetsInACollectionCountFromTheStartOfTheFile)
{
    const Bytes font = FontBytes().face().table("name", ascii("one")).collection().build();
    EXPECT_EQ(text(SFNT::faces(font).at(0).name), "one");
}

TEST(SFNT, CollectionOf9999FontsIsAcceptedAndOf10000IsNot)
{
    EXPECT_THAT(SFNT::faces(collectionOfOneFace(9999, 9999)), SizeIs(9999));
    EXPECT_THAT(SFNT::faces(collectionOfOneFace(10000, 10000)), IsEmpty());
    EXPECT_THAT(SFNT::faces(collectionOfOneFace(0xFFFFFFFF, 1)), IsEmpty());
}

TEST(SFNT, CollectionEntriesBeyondTheBufferAreSkipped)
{
    ByteWriter writer;
    writer.text("ttcf").u32(0x00010000).u32(9999).u32(12 + 4).bytes(directory(0).build());
    // What follows the one entry is read as entries as well, none of which points at a face.
    EXPECT_THAT(SFNT::faces(writer.build()), SizeIs(1));
}

TEST(SFNT, CollectionWithoutFontsHasNoFaces)
{
    EXPECT_THAT(SFNT::faces(collectionOfOneFace(0, 1)), IsEmpty());
}

TEST(SFNT, CollectionCutBeforeItsCountHasNoFaces)
{
    const Bytes font = collectionOfOneFace(1, 1);
    ASSERT_THAT(SFNT::faces(font), SizeIs(1));
    for (std::size_t size = 0; size < 12; ++size)
        EXPECT_THAT(SFNT::faces(std::span(font).first(size)), IsEmpty()) << size;
}

TEST(SFNT, CollectionVersionIsNotChecked)
{
    Bytes font = collectionOfOneFace(1, 1);
    for (std::size_t at = 4; at < 8; ++at)
        font[at] = std::byte{0xEE};
    EXPECT_THAT(SFNT::faces(font), SizeIs(1));
}

TEST(SFNT, DamagedFaceOfACollectionIsDroppedAndItsSiblingsKept)
{
    const auto build = [] {
        return FontBytes()
            .face()
            .table("name", ascii("one"))
            .face()
            .table("name", ascii("two"))
            .face()
            .table("name", ascii("three"))
            .writer();
    };
    for (const auto& damage : std::to_array<std::pair<std::string, std::uint32_t>>({
             {"face1.entry", 0xFFFFFFFF}, // offset behind the end
             {"face1.entry", 0},          // a collection is no face
             {"face1", 0x12345678},       // unknown version
             {"face1.numTables", 512U << 16U},
         })) {
        auto writer = build();
        writer.overwrite32(damage.first, damage.second);
        const Bytes font = writer.build();
        const auto faces = SFNT::faces(font);
        ASSERT_THAT(faces, SizeIs(2)) << damage.first;
        EXPECT_EQ(text(faces[0].name), "one");
        EXPECT_EQ(text(faces[1].name), "three");
    }
}

TEST(SFNT, FaceAtAnOffset)
{
    auto writer = FontBytes().face().table("name", ascii("one")).face("OTTO").writer();
    const Bytes& font = writer.build();
    EXPECT_EQ(text(SFNT::face(writer.position("face0"), font)->name), "one");
    EXPECT_EQ(SFNT::face(writer.position("face1"), font)->outlines, "OpenType (CFF)");
    EXPECT_EQ(SFNT::face(0, font), std::nullopt); // the collection's own header
}

TEST(SFNT, NoFaceWhereFewerThanFourBytesRemain)
{
    const Bytes font = directory(0).build();
    EXPECT_TRUE(SFNT::face(0, font));
    EXPECT_EQ(SFNT::face(font.size() - 3, font), std::nullopt);
    EXPECT_EQ(SFNT::face(font.size(), font), std::nullopt);
    EXPECT_EQ(SFNT::face(font.size() + 1, font), std::nullopt);
    EXPECT_EQ(SFNT::face(static_cast<std::size_t>(-1), font), std::nullopt);
}

TEST(SFNT, FacesAreEqualWhenTheirTablesHoldTheSame)
{
    const auto face = [](std::string_view version, std::string_view table,
                         std::string_view tag = "name") {
        return FontBytes().face(version).table(tag, ascii(table)).build();
    };
    const Bytes one = face("true", "same");
    const Bytes two =
        FontBytes().face("true").table("pad ", ascii("x")).table("name", ascii("same")).build();
    const Bytes other = face("true", "else");
    const Bytes cff = face("OTTO", "same");
    const Bytes none = FontBytes().face("true").build();
    const Bytes bits = face("true", "same", "OS/2");
    const Bytes otherBits = face("true", "else", "OS/2");
    EXPECT_EQ(SFNT::face(0, one), SFNT::face(0, two));
    EXPECT_NE(SFNT::face(0, one), SFNT::face(0, other));
    EXPECT_NE(SFNT::face(0, one), SFNT::face(0, cff));
    EXPECT_NE(SFNT::face(0, one), SFNT::face(0, none));
    EXPECT_EQ(SFNT::face(0, none), SFNT::face(0, none));
    EXPECT_EQ(SFNT::face(0, bits), SFNT::face(0, bits));
    EXPECT_NE(SFNT::face(0, bits), SFNT::face(0, otherBits));
    EXPECT_NE(SFNT::face(0, bits), SFNT::face(0, none));
}

// Layouts, as files are read by position.

TEST(SFNT, LayoutSaysWhereTheTablesLie)
{
    auto writer = FontBytes()
                      .face("OTTO")
                      .table("name", ascii("names"))
                      .table("OS/2", ascii("bits"))
                      .table("fvar", ascii("axes.."))
                      .writer();
    const auto layout = SFNT::layout(writer.build(), writer.size());
    ASSERT_TRUE(layout);
    EXPECT_EQ(layout->name, (SFNT::TableRange{writer.position("face0.name.data"), 5}));
    EXPECT_EQ(layout->os2, (SFNT::TableRange{writer.position("face0.OS/2.data"), 4}));
    EXPECT_EQ(layout->fvar, (SFNT::TableRange{writer.position("face0.fvar.data"), 6}));
    EXPECT_EQ(layout->outlines, "OpenType (CFF)");
}

TEST(SFNT, LayoutNeedsOnlyTheDirectoryAndTheFilesSize)
{
    auto writer = FontBytes().face().table("name", ascii("names")).writer();
    const auto directoryOnly = std::span(writer.build()).first(12 + 16);
    const auto layout = SFNT::layout(directoryOnly, writer.size());
    ASSERT_TRUE(layout);
    EXPECT_EQ(layout->name, (SFNT::TableRange{28, 5}));
    EXPECT_EQ(SFNT::layout(directoryOnly, 33)->name, (SFNT::TableRange{28, 5}));
    EXPECT_EQ(SFNT::layout(directoryOnly, 32)->name, std::nullopt);
    EXPECT_EQ(SFNT::layout(directoryOnly.first(27), writer.size()), std::nullopt);
}

TEST(SFNT, LayoutOfAHugeFileKeepsRangesBeyondFourGigabytes)
{
    auto writer = FontBytes().face().table("name", {}).writer();
    writer.overwrite32("face0.name.offset", 0xFFFFFFFF);
    writer.overwrite32("face0.name.length", 0xFFFFFFFF);
    EXPECT_EQ(SFNT::layout(writer.build(), 0x1FFFFFFFE)->name,
              (SFNT::TableRange{0xFFFFFFFF, 0xFFFFFFFF}));
    EXPECT_EQ(SFNT::layout(writer.build(), 0x1FFFFFFFD)->name, std::nullopt);
}

TEST(SFNT, DirectorySizeCountsTheRecords)
{
    const auto size = [](std::uint16_t numTables) {
        return SFNT::directorySize(ByteWriter().text(trueTypeVersion).u16(numTables).build());
    };
    EXPECT_EQ(size(1), 28U);
    EXPECT_EQ(size(511), 12U + 511U * 16U);
    EXPECT_EQ(size(512), std::nullopt);
    EXPECT_EQ(size(0), 6U);
    EXPECT_EQ(SFNT::directorySize(ascii("wOFF\0\1"sv)), std::nullopt);
    EXPECT_EQ(SFNT::directorySize(ascii("OTTO\0"sv)), std::nullopt);
}

TEST(SFNT, CollectionHeaderIsRecognisedAndCounted)
{
    const auto header = [](std::uint32_t numFonts) {
        return ByteWriter().text("ttcf").u32(0x00020000).u32(numFonts).build();
    };
    EXPECT_TRUE(SFNT::isCollection(header(1)));
    EXPECT_TRUE(SFNT::isCollection(ascii("ttcf")));
    EXPECT_FALSE(SFNT::isCollection(ascii("TTCF")));
    EXPECT_FALSE(SFNT::isCollection(ascii("ttc")));
    EXPECT_FALSE(SFNT::isCollection(directory(1).build()));
    EXPECT_EQ(SFNT::collectionFaceCount(header(1)), 1U);
    EXPECT_EQ(SFNT::collectionFaceCount(header(9999)), 9999U);
    EXPECT_EQ(SFNT::collectionFaceCount(header(10000)), std::nullopt);
    EXPECT_EQ(SFNT::collectionFaceCount(header(0)), std::nullopt);
    const Bytes whole = header(1);
    EXPECT_EQ(SFNT::collectionFaceCount(std::span(whole).first(11)), std::nullopt);
}

} // namespace
} // namespace quillmark
