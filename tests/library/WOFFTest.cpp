#include "library/WOFF.h"

#include "CountingSource.h"
#include "Fonts.h"
#include "Tables.h"
#include "library/Limits.h"
#include "support/FontContainers.h"

#include <gmock/gmock.h>

#include <span>
#include <string>
#include <vector>

namespace quillmark {
namespace {

using test::Bytes;
using test::ByteWriter;
using test::CountingSource;
using test::summaries;
using test::TableBytes;
using test::trueTypeVersion;
using test::woff;
using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> read(const Bytes& bytes, Faces which = Faces::all)
{
    const MemorySource source(bytes);
    const HeadedSource headed(source);
    EXPECT_TRUE(WOFF::isOne(headed));
    return summaries(WOFF::faces(headed, which));
}

/// Long enough to be stored compressed.
Bytes nameTable()
{
    return test::namesTable({{1, u"Packed"}, {0, std::u16string(200, u'c')}});
}

std::vector<TableBytes> tables()
{
    return {{"OS/2", test::os2Table({.fsType = 4})}, {"glyf", Bytes(20000)}, {"name", nameTable()}};
}

TEST(WOFF, GivesTheTablesOfItsFace)
{
    EXPECT_THAT(read(woff(trueTypeVersion, tables()).build()),
                ElementsAre("0 format - name Packed fsType 4"));
    EXPECT_THAT(read(woff("OTTO", tables()).build()),
                ElementsAre("0 format - name Packed fsType 4"));
}

TEST(WOFF, ReadsTablesThatAreStoredUncompressed)
{
    const Bytes small = test::namesTable({{1, u"S"}});
    EXPECT_THAT(read(woff(trueTypeVersion, {{"name", small}}).build()),
                ElementsAre("0 format - name S fsType -"));
}

TEST(WOFF, AFaceWithoutTablesHasNone)
{
    EXPECT_THAT(read(woff(trueTypeVersion, {}).build()), ElementsAre("0 format - name - fsType -"));
}

TEST(WOFF, UnknownFlavorsAndTooManyTablesAreNoFace)
{
    EXPECT_THAT(read(woff("abcd", tables()).build()), IsEmpty());
    EXPECT_THAT(read(woff("ttcf", tables()).build()), IsEmpty());
    ByteWriter font = woff(trueTypeVersion, tables());
    font.zeros(20000);
    EXPECT_THAT(read(font.overwrite16("numTables", 511).build()),
                ElementsAre("0 format - name Packed fsType 4"));
    EXPECT_THAT(read(font.overwrite16("numTables", 512).build()), IsEmpty());
}

TEST(WOFF, ADirectoryThatIsCutIsNoFace)
{
    const Bytes font = woff(trueTypeVersion, tables()).build();
    for (const std::size_t size : {4U, 8U, 13U, 14U, 43U, 44U, 63U, 64U, 44U + 3U * 20U - 1U})
        EXPECT_THAT(read(Bytes(font.begin(), font.begin() + static_cast<long>(size))), IsEmpty())
            << size;
    EXPECT_THAT(read(Bytes(font.begin(), font.begin() + 44 + 3 * 20)),
                ElementsAre("0 format - name - fsType -"));
}

TEST(WOFF, OneTableThatCannotBeDecodedDoesNotHideTheOther)
{
    ByteWriter font = woff(trueTypeVersion, tables());
    font.overwrite32("name.data", 0xFFFFFFFF);
    EXPECT_THAT(read(font.build()), ElementsAre("0 format - name - fsType 4"));
}

TEST(WOFF, ATableBeyondTheEndIsAbsent)
{
    ByteWriter font = woff(trueTypeVersion, tables());
    EXPECT_THAT(read(font.overwrite32("name.offset", 0xFFFFFFF0).build()),
                ElementsAre("0 format - name - fsType 4"));
}

TEST(WOFF, ATableThatDecodesToAnotherLengthThanDeclaredIsAbsent)
{
    const auto size = static_cast<std::uint32_t>(nameTable().size());
    ByteWriter font = woff(trueTypeVersion, tables());
    EXPECT_THAT(read(font.overwrite32("name.length", size + 1).build()),
                ElementsAre("0 format - name - fsType 4"));
    EXPECT_THAT(read(font.overwrite32("name.length", size - 1).build()),
                ElementsAre("0 format - name - fsType 4"));
    EXPECT_THAT(read(font.overwrite32("name.length", size).build()),
                ElementsAre("0 format - name Packed fsType 4"));
}

TEST(WOFF, ATableStoredLargerThanItIsIsAbsent)
{
    ByteWriter font = woff(trueTypeVersion, {{"name", test::namesTable({{1, u"S"}})}});
    font.overwrite32("name.length", 5);
    EXPECT_THAT(read(font.build()), ElementsAre("0 format - name - fsType -"));
}

TEST(WOFF, TheLastUsableTableOfATagWins)
{
    const Bytes first = test::namesTable({{1, u"First"}});
    const Bytes second = test::namesTable({{1, u"Second"}});
    ByteWriter font = woff(trueTypeVersion, {{"name", first}, {"name", second}});
    EXPECT_THAT(read(font.build()), ElementsAre("0 format - name Second fsType -"));
    EXPECT_THAT(read(font.overwrite32("name2.offset", 0xFFFFFFF0).build()),
                ElementsAre("0 format - name First fsType -"));
}

TEST(WOFF, VariableFacesAreThoseWithAnFvarTable)
{
    EXPECT_THAT(read(woff(trueTypeVersion, tables()).build(), Faces::variable), IsEmpty());
    auto variable = tables();
    variable.push_back({"fvar", Bytes(16)});
    const Bytes font = woff(trueTypeVersion, variable).build();
    EXPECT_THAT(read(font, Faces::variable),
                ElementsAre("0 format - name Packed fsType 4 fvar 16"));
    EXPECT_THAT(read(font, Faces::all), ElementsAre("0 format - name Packed fsType 4"));
}

TEST(WOFF, OnlyTheWantedTablesAreRead)
{
    // Noise, so that the glyphs stay large.
    Bytes glyphs(200000);
    std::uint32_t state = 1;
    for (std::byte& byte : glyphs) {
        state = state * 1664525U + 1013904223U;
        byte = static_cast<std::byte>(state >> 24U);
    }
    const Bytes font = woff(trueTypeVersion,
                            {{"OS/2", test::os2Table({})}, {"glyf", glyphs}, {"name", nameTable()}})
                           .build();
    const CountingSource source(font);
    EXPECT_THAT(summaries(WOFF::faces(HeadedSource(source), Faces::all)),
                ElementsAre("0 format - name Packed fsType 0"));
    EXPECT_LT(source.bytesRead, 5000U);
}

TEST(WOFF, WhatComesOutOfOneFileIsBounded)
{
    static_assert(Limits::decodedBytes == 128U << 20U);
    const std::uint32_t half = 64U << 20U;
    const Bytes large(half);
    ByteWriter font = woff(trueTypeVersion, {{"name", large}, {"OS/2", large}});
    const auto countOf = [](const Bytes& bytes) {
        const MemorySource source(bytes);
        const auto faces = WOFF::faces(HeadedSource(source), Faces::all);
        return std::pair(faces.at(0).name.has_value(), faces.at(0).os2.has_value());
    };
    EXPECT_EQ(countOf(font.build()), std::pair(true, true));
    // A declared length beyond the limit is not even tried, and costs the others nothing.
    EXPECT_EQ(countOf(font.overwrite32("name.length", 0xFFFFFFFF).build()), std::pair(false, true));
    // Damaged data count as much as sound ones.
    EXPECT_EQ(countOf(font.overwrite32("name.length", half + 1).build()), std::pair(false, false));
}

} // namespace
} // namespace quillmark
