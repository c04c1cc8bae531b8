#include "library/WOFF2.h"

#include "CountingSource.h"
#include "Fonts.h"
#include "Tables.h"
#include "library/Limits.h"
#include "library/WOFF2Directory.h"
#include "support/FontContainers.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace quillmark {
namespace {

using test::Bytes;
using test::ByteWriter;
using test::CountingSource;
using test::summaries;
using test::trueTypeVersion;
using test::woff2;
using test::WOFF2Values;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using Table = WOFF2Values::Table;

std::vector<std::string> read(const Bytes& bytes, Faces which = Faces::all)
{
    const MemorySource source(bytes);
    const HeadedSource headed(source);
    EXPECT_TRUE(WOFF2::isOne(headed));
    return summaries(WOFF2::faces(headed, which));
}

Table name(std::u16string_view family)
{
    return {.tag = "name", .bytes = test::namesTable({{1, family}})};
}

Table os2(std::uint16_t fsType)
{
    return {.tag = "OS/2", .bytes = test::os2Table({.fsType = fsType})};
}

Bytes font(const std::vector<Table>& tables)
{
    return woff2({.tables = tables}).build();
}

Bytes noise(std::size_t size)
{
    Bytes bytes(size);
    std::uint32_t state = 1;
    for (std::byte& byte : bytes) {
        state = state * 1664525U + 1013904223U;
        byte = static_cast<std::byte>(state >> 24U);
    }
    return bytes;
}

TEST(WOFF2, GivesTheTablesOfItsFace)
{
    EXPECT_THAT(read(font({os2(4), {.tag = "cvt ", .bytes = Bytes(500)}, name(u"Packed")})),
                ElementsAre("0 format - name Packed fsType 4"));
    EXPECT_THAT(read(woff2({.version = "OTTO", .tables = {name(u"A")}}).build()),
                ElementsAre("0 format - name A fsType -"));
}

TEST(WOFF2, ReadsTagsThatAreSpelledOut)
{
    Table spelledName = name(u"Spelled");
    spelledName.spellTag = true;
    Table spelledOS2 = os2(2);
    spelledOS2.spellTag = true;
    EXPECT_THAT(read(font({{.tag = "abcd", .bytes = Bytes(7)}, spelledOS2, spelledName})),
                ElementsAre("0 format - name Spelled fsType 2"));
}

TEST(WOFF2, CountsTransformedOutlinesByTheirTransformedLength)
{
    const Table glyphs{
        .tag = "glyf", .bytes = Bytes(300), .transformation = 0, .originalLength = 70000};
    const Table locations{.tag = "loca", .transformation = 0, .originalLength = 5000};
    const Table metrics{
        .tag = "hmtx", .bytes = Bytes(40), .transformation = 1, .originalLength = 90};
    EXPECT_THAT(read(font({glyphs, locations, metrics, os2(8), name(u"Behind")})),
                ElementsAre("0 format - name Behind fsType 8"));
}

TEST(WOFF2, CountsPlainOutlinesByTheirLength)
{
    EXPECT_THAT(read(font({{.tag = "glyf", .bytes = Bytes(300)},
                           {.tag = "loca", .bytes = Bytes(50)},
                           name(u"Behind")})),
                ElementsAre("0 format - name Behind fsType -"));
    Table spelled{.tag = "glyf",
                  .bytes = Bytes(300),
                  .transformation = 0,
                  .originalLength = 9,
                  .spellTag = true};
    EXPECT_THAT(read(font({spelled, name(u"Behind")})),
                ElementsAre("0 format - name Behind fsType -"));
}

TEST(WOFF2, ATransformedNameTableIsAbsentButCounted)
{
    Table transformed = name(u"Hidden");
    transformed.transformation = 1;
    transformed.originalLength = 3;
    EXPECT_THAT(read(font({transformed, os2(4)})), ElementsAre("0 format - name - fsType 4"));
    EXPECT_THAT(read(font({name(u"Plain"), transformed, os2(4)})),
                ElementsAre("0 format - name Plain fsType 4"));
}

TEST(WOFF2, TheLastTableOfATagWins)
{
    EXPECT_THAT(read(font({name(u"First"), name(u"Second")})),
                ElementsAre("0 format - name Second fsType -"));
}

TEST(WOFF2, AnEmptyTableIsPresent)
{
    const Bytes bytes = font({{.tag = "name"}, os2(4)});
    const MemorySource source(bytes);
    const auto faces = WOFF2::faces(HeadedSource(source), Faces::all);
    ASSERT_THAT(faces, SizeIs(1));
    EXPECT_EQ(faces[0].name, Bytes{});
}

TEST(WOFF2, ACollectionGivesEveryFace)
{
    WOFF2Values values;
    values.tables = {name(u"A"), os2(1), name(u"B"), os2(2)};
    values.faces = {{trueTypeVersion, {0, 1}},
                    {"OTTO", {2, 1}},
                    {trueTypeVersion, {3, 2}},
                    {trueTypeVersion, {}}};
    EXPECT_THAT(read(woff2(values).build()),
                ElementsAre("0 format - name A fsType 1", "1 format - name B fsType 1",
                            "2 format - name B fsType 2", "3 format - name - fsType -"));
}

TEST(WOFF2, ADamagedFaceOfACollectionKeepsItsPlaceInTheCount)
{
    WOFF2Values values;
    values.tables = {name(u"A")};
    values.faces = {{"abcd", {0}},
                    {trueTypeVersion, {0, 7, 500, 700, 1000}}, // some that are not there
                    {trueTypeVersion, std::vector<std::uint16_t>(512)},
                    {trueTypeVersion, std::vector<std::uint16_t>(511)}};
    EXPECT_THAT(read(woff2(values).build()),
                ElementsAre("1 format - name A fsType -", "3 format - name A fsType -"));
}

TEST(WOFF2, CollectionsOfUpTo9999FacesAreRead)
{
    WOFF2Values values;
    values.tables = {name(u"A")};
    values.faces = std::vector<WOFF2Values::Face>(9999, {trueTypeVersion, {0}});
    EXPECT_THAT(read(woff2(values).build()), SizeIs(9999));
    values.faces.push_back({trueTypeVersion, {0}});
    EXPECT_THAT(read(woff2(values).build()), IsEmpty());
}

TEST(WOFF2, UnknownFlavorsAndTooManyTablesAreNoFace)
{
    EXPECT_THAT(read(woff2({.version = "abcd", .tables = {name(u"A")}}).build()), IsEmpty());
    std::vector<Table> many(511, Table{.tag = "cvt "});
    many.back() = name(u"Last");
    EXPECT_THAT(read(font(many)), ElementsAre("0 format - name Last fsType -"));
    many.insert(many.begin(), Table{.tag = "cvt "});
    EXPECT_THAT(read(font(many)), IsEmpty());
}

TEST(WOFF2, ADirectoryThatIsCutIsNoFace)
{
    const ByteWriter writer = woff2({.tables = {os2(4), name(u"A")}});
    const Bytes& bytes = writer.build();
    for (std::size_t size = 4; size < writer.position("stream"); ++size)
        EXPECT_THAT(read(Bytes(bytes.begin(), bytes.begin() + static_cast<long>(size))), IsEmpty())
            << size;
}

TEST(WOFF2, ACollectionsDirectoryThatIsCutIsNoFace)
{
    // Indices of one, two and three bytes.
    WOFF2Values values;
    values.tables = {name(u"A"), {.tag = "abcd", .bytes = Bytes(7)}};
    values.faces = {{trueTypeVersion, {0, 253, 505, 506, 700, 1000}}, {trueTypeVersion, {0}}};
    const ByteWriter writer = woff2(values);
    const Bytes& bytes = writer.build();
    for (std::size_t size = 4; size < writer.position("stream"); ++size)
        EXPECT_THAT(read(Bytes(bytes.begin(), bytes.begin() + static_cast<long>(size))), IsEmpty())
            << size;
    EXPECT_THAT(read(bytes), SizeIs(2));
}

TEST(WOFF2, LengthsWithLeadingZerosOrTooManyBitsAreDamage)
{
    const std::vector<Bytes> lengths{
        test::ascii(std::string_view("\x80\x01", 2)),
        test::ascii(std::string_view("\x90\x80\x80\x80\x00", 5)),
        test::ascii(std::string_view("\x8F\xFF\xFF\xFF\xFF\x7F", 6)),
    };
    for (const Bytes& length : lengths) {
        ByteWriter writer;
        writer.text("wOF2").text(trueTypeVersion).u32(0).u16(1).zeros(6).u32(1000).zeros(24);
        writer.u8(5).bytes(length).zeros(100);
        EXPECT_THAT(read(writer.build()), IsEmpty());
    }
}

TEST(WOFF2, TheLargestLengthIsReadAndSkippedOver)
{
    // 2^32 - 1 takes all five bytes. What lies behind such a table is out of reach.
    EXPECT_THAT(read(font({os2(4), {.tag = "cvt ", .declaredLength = 0xFFFFFFFF}, name(u"Far")})),
                ElementsAre("0 format - name - fsType 4"));
}

TEST(WOFF2, TablesBeforeDamageInTheStreamStay)
{
    ByteWriter writer =
        woff2({.tables = {os2(4), {.tag = "cvt ", .bytes = noise(100000)}, name(u"Behind")}});
    Bytes bytes = writer.build();
    bytes.resize(bytes.size() - 50000);
    EXPECT_THAT(read(bytes), ElementsAre("0 format - name - fsType 4"));
    bytes.resize(writer.position("stream"));
    EXPECT_THAT(read(bytes), ElementsAre("0 format - name - fsType -"));
}

TEST(WOFF2, GarbageInsteadOfAStreamLeavesAFaceWithoutTables)
{
    const ByteWriter writer = woff2({.tables = {os2(4), name(u"A")}});
    Bytes bytes = writer.build();
    std::fill(bytes.begin() + static_cast<long>(writer.position("stream")), bytes.end(),
              std::byte{0xFF});
    EXPECT_THAT(read(bytes), ElementsAre("0 format - name - fsType -"));
}

TEST(WOFF2, TheStreamEndsWhereTheHeaderSays)
{
    ByteWriter writer =
        woff2({.tables = {os2(4), {.tag = "cvt ", .bytes = noise(100000)}, name(u"Behind")}});
    EXPECT_THAT(read(writer.overwrite32("streamLength", 50000).build()),
                ElementsAre("0 format - name - fsType 4"));
    EXPECT_THAT(read(writer.overwrite32("streamLength", 0xFFFFFFFF).build()),
                ElementsAre("0 format - name Behind fsType 4"));
}

TEST(WOFF2, ReadsNoFurtherThanTheWantedTables)
{
    const Bytes bytes = font({os2(4), name(u"Early"), {.tag = "glyf", .bytes = noise(3U << 20U)}});
    const CountingSource source(bytes);
    EXPECT_THAT(summaries(WOFF2::faces(HeadedSource(source), Faces::all)),
                ElementsAre("0 format - name Early fsType 4"));
    EXPECT_LT(source.bytesRead, 1U << 20U);
}

TEST(WOFF2, VariableFacesAreThoseWithAnFvarTable)
{
    const Table fvar{.tag = "fvar", .bytes = Bytes(16)};
    const Bytes variable = font({name(u"Variable"), fvar});
    EXPECT_THAT(read(variable, Faces::variable),
                ElementsAre("0 format - name Variable fsType - fvar 16"));
    EXPECT_THAT(read(variable, Faces::all), ElementsAre("0 format - name Variable fsType -"));
    EXPECT_THAT(read(font({name(u"Plain")}), Faces::variable), IsEmpty());
    Table spelled = fvar;
    spelled.spellTag = true;
    EXPECT_THAT(read(font({name(u"Spelled"), spelled}), Faces::variable),
                ElementsAre("0 format - name Spelled fsType - fvar 16"));
}

TEST(WOFF2, TablesThatEndBeyond128MiBOfTheStreamAreAbsent)
{
    static_assert(Limits::decodedBytes == 128U << 20U);
    const std::size_t nameSize = name(u"A").bytes.size();
    const Table filler{.tag = "cvt ", .bytes = Bytes((128U << 20U) - nameSize)};
    Table oneMore = filler;
    oneMore.bytes.emplace_back();
    EXPECT_THAT(read(font({filler, name(u"A"), os2(4)})),
                ElementsAre("0 format - name A fsType -"));
    EXPECT_THAT(read(font({oneMore, name(u"A")})), ElementsAre("0 format - name - fsType -"));
}

TEST(WOFF2, CopiesOfASharedTableAreBounded)
{
    WOFF2Values values;
    Table large = name(u"A");
    large.bytes.resize(8U << 20U);
    values.tables = {large};
    values.faces = std::vector<WOFF2Values::Face>(9, {trueTypeVersion, {0}});
    const Bytes bytes = woff2(values).build();
    const MemorySource source(bytes);
    const auto faces = WOFF2::faces(HeadedSource(source), Faces::all);
    ASSERT_THAT(faces, SizeIs(9));
    EXPECT_TRUE(faces[7].name);
    EXPECT_FALSE(faces[8].name);
}

TEST(WOFF2, ADirectoryOfMoreThan4MiBIsNoFace)
{
    // A collection of 9999 faces, each with 140 tables whose indices take three bytes.
    WOFF2Values values;
    values.tables = {name(u"A")};
    values.faces = std::vector<WOFF2Values::Face>(
        9999, {trueTypeVersion, std::vector<std::uint16_t>(140, 60000)});
    EXPECT_THAT(read(woff2(values).build()), IsEmpty());
}

} // namespace
} // namespace quillmark
