#include "library/SFNTFile.h"

#include "CountingSource.h"
#include "Fonts.h"
#include "Tables.h"
#include "library/Limits.h"
#include "support/FontContainers.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace quillmark {
namespace {

using test::Bytes;
using test::ByteWriter;
using test::CountingSource;
using test::FontBytes;
using test::summaries;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

std::vector<std::string> read(const Bytes& bytes, Faces which = Faces::all)
{
    const MemorySource source(bytes);
    return summaries(SFNTFile::faces(HeadedSource(source), which));
}

bool isOne(std::string_view start)
{
    const Bytes bytes = test::ascii(start);
    const MemorySource source(bytes);
    return SFNTFile::isOne(HeadedSource(source));
}

TEST(SFNTFile, IsToldByItsFirstFourBytes)
{
    for (const std::string_view start :
         {std::string_view("\0\1\0\0", 4), std::string_view("OTTO"), std::string_view("true"),
          std::string_view("typ1"), std::string_view("ttcf")})
        EXPECT_TRUE(isOne(start)) << start;
    for (const std::string_view start :
         {std::string_view("OTT"), std::string_view("wOFF"), std::string_view("wOF2"),
          std::string_view("\0\2\0\0", 4), std::string_view("%!PS"), std::string_view()})
        EXPECT_FALSE(isOne(start)) << start;
}

TEST(SFNTFile, FormatsAreNumberedByTheOutlines)
{
    for (const std::string_view version :
         {std::string_view("\0\1\0\0", 4), std::string_view("true"), std::string_view("typ1")})
        EXPECT_THAT(read(FontBytes().face(version).name(1, u"A").os2({.fsType = 4}).build()),
                    ElementsAre("0 format 3 name A fsType 4"));
    EXPECT_THAT(read(FontBytes().face("OTTO").name(1, u"A").build()),
                ElementsAre("0 format 1 name A fsType -"));
}

TEST(SFNTFile, ACollectionGivesItsFacesInOrder)
{
    FontBytes font;
    font.face().name(1, u"A").os2({.fsType = 2});
    font.face("OTTO").name(1, u"B").os2({.fsType = 4});
    EXPECT_THAT(read(font.build()),
                ElementsAre("0 format 3 name A fsType 2", "1 format 1 name B fsType 4"));
}

TEST(SFNTFile, ADamagedFaceKeepsItsPlaceInTheCount)
{
    FontBytes font;
    font.face().name(1, u"A");
    font.face("????").name(1, u"B");
    font.face().name(1, u"C");
    EXPECT_THAT(read(font.build()),
                ElementsAre("0 format 3 name A fsType -", "2 format 3 name C fsType -"));
}

TEST(SFNTFile, ATableBeyondTheEndIsAbsent)
{
    ByteWriter font = FontBytes().face().name(1, u"A").os2({.fsType = 4}).writer();
    font.overwrite32("face0.name.length", 0x7FFFFFFF);
    EXPECT_THAT(read(font.build()), ElementsAre("0 format 3 name - fsType 4"));
}

TEST(SFNTFile, AFileThatWasCutWhileOpenGivesWhatCanStillBeRead)
{
    FontBytes font;
    font.face()
        .os2({.fsType = 4})
        .table("glyf", Bytes(10000))
        .table("name", test::namesTable({{1, u"A"}}));
    const Bytes bytes = font.build();
    CountingSource source(bytes);
    source.readable = 9000;
    EXPECT_THAT(summaries(SFNTFile::faces(HeadedSource(source), Faces::all)),
                ElementsAre("0 format 3 name - fsType 4"));
    source.readable = 20;
    EXPECT_THAT(SFNTFile::faces(HeadedSource(source), Faces::all), IsEmpty());
}

TEST(SFNTFile, DirectoriesWithManyTablesAreRead)
{
    // 511 records take twice what is fetched at first.
    for (const int count : {64, 200, 509}) {
        FontBytes font;
        font.face();
        for (int i = 0; i < count; ++i)
            font.table("tbl" + std::to_string(i % 10), Bytes(1));
        font.table("name", test::namesTable({{1, u"Last"}}));
        EXPECT_THAT(read(font.build()), ElementsAre("0 format 3 name Last fsType -")) << count;
    }
}

TEST(SFNTFile, FiveHundredAndTwelveTablesAreTooMany)
{
    ByteWriter font = FontBytes().face().name(1, u"A").writer();
    font.zeros(20000);
    EXPECT_THAT(read(font.overwrite16("face0.numTables", 511).build()), SizeIs(1));
    EXPECT_THAT(read(font.overwrite16("face0.numTables", 512).build()), IsEmpty());
}

TEST(SFNTFile, TenThousandFacesAreTooMany)
{
    ByteWriter font = FontBytes().collection().face().name(1, u"A").writer();
    EXPECT_THAT(read(font.overwrite32("numFonts", 9999).build()), Not(IsEmpty()));
    EXPECT_THAT(read(font.overwrite32("numFonts", 10000).build()), IsEmpty());
    EXPECT_THAT(read(font.overwrite32("numFonts", 0).build()), IsEmpty());
}

TEST(SFNTFile, VariableFacesAreThoseWithAnFvarTable)
{
    FontBytes font;
    font.face().name(1, u"Plain");
    font.face().name(1, u"Variable").table("fvar", Bytes(16));
    EXPECT_THAT(read(font.build(), Faces::variable),
                ElementsAre("1 format 3 name Variable fsType - fvar 16"));
    EXPECT_THAT(read(font.build(), Faces::all),
                ElementsAre("0 format 3 name Plain fsType -", "1 format 3 name Variable fsType -"));
}

TEST(SFNTFile, AskingForVariableFacesReadsNoTablesOfOthers)
{
    const Bytes bytes = FontBytes()
                            .face()
                            .table("glyf", Bytes(10000))
                            .table("name", test::namesTable({{1, u"A"}}))
                            .build();
    const CountingSource source(bytes);
    EXPECT_THAT(SFNTFile::faces(HeadedSource(source), Faces::variable), IsEmpty());
    EXPECT_EQ(source.reads, 1U);
}

TEST(SFNTFile, ReadsNoMoreOfALargeFontThanOfASmallOne)
{
    FontBytes font;
    font.face()
        .os2({})
        .table("glyf", Bytes(1U << 20U))
        .table("name", test::namesTable({{1, u"Large"}}));
    const Bytes bytes = font.build();
    const CountingSource source(bytes, std::uint64_t{3} << 30U);
    EXPECT_THAT(SFNTFile::faces(HeadedSource(source), Faces::all), SizeIs(1));
    EXPECT_EQ(source.reads, 2U);
    EXPECT_LT(source.bytesRead, 5000U);
}

/// A collection whose faces all have the same directory, at the end, with one `name` table of
/// `size` bytes, mostly zeros.
Bytes sharingCollection(std::uint32_t faces, std::uint32_t size)
{
    ByteWriter font;
    font.text("ttcf").u32(0x00010000).u32(faces);
    const std::uint32_t directory = 12 + 4 * faces;
    for (std::uint32_t i = 0; i < faces; ++i)
        font.u32(directory);
    font.text(test::trueTypeVersion).u16(1).zeros(6);
    font.text("name").u32(0).u32(directory + 28).u32(size);
    font.bytes(test::namesTable({{1, u"Shared"}}));
    return font.build();
}

TEST(SFNTFile, ATableThatFacesShareIsReadOnce)
{
    const Bytes bytes = sharingCollection(50, 100000);
    const CountingSource source(bytes, 200000);
    const auto faces = SFNTFile::faces(HeadedSource(source), Faces::all);
    ASSERT_THAT(faces, SizeIs(50));
    EXPECT_EQ(test::summary(faces[49]), "49 format 3 name Shared fsType -");
    EXPECT_LT(source.bytesRead, 110000U);
}

TEST(SFNTFile, TablesBeyondTheFilesLimitAreAbsent)
{
    // 8 MiB each: eight fit into 64 MiB, the ninth does not.
    const Bytes bytes = sharingCollection(9, 8U << 20U);
    const CountingSource source(bytes, 16U << 20U);
    const auto faces = SFNTFile::faces(HeadedSource(source), Faces::all);
    ASSERT_THAT(faces, SizeIs(9));
    EXPECT_TRUE(faces[7].name);
    EXPECT_FALSE(faces[8].name);
    static_assert(Limits::tableBytes == 64U << 20U);
}

} // namespace
} // namespace quillmark
