#include "export/TrueTypeProgram.h"

#include "fontfile/NameTable.h"
#include "fontfile/OS2Info.h"
#include "fontfile/SFNT.h"
#include "support/FontBytes.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <bit>
#include <map>
#include <string>

namespace quillmark {
namespace {

using testing::ElementsAre;

std::string text(const test::Bytes& bytes)
{
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

std::string bigEndian(std::initializer_list<std::uint16_t> values)
{
    test::ByteWriter writer;
    for (const std::uint16_t value : values)
        writer.u16(value);
    return text(writer.build());
}

std::uint32_t word(std::string_view bytes, std::size_t at)
{
    std::uint32_t value = 0;
    for (std::size_t byte = at; byte < at + 4; ++byte)
        value = value << 8U | static_cast<unsigned char>(bytes.at(byte));
    return value;
}

/// Eight bytes: an outline of one contour whose points nobody reads here.
std::string simpleOutline(char mark)
{
    return bigEndian({1, 0, 0}) + mark + mark;
}

constexpr std::uint16_t isComposed = 0xFFFF;
constexpr std::uint16_t moreComponents = 0x0020;
constexpr std::uint16_t wideArguments = 0x0001;
constexpr std::uint16_t oneScale = 0x0008;

/// A font of six glyphs: three simple ones, an empty one, and two composed ones.
class SixGlyphs : public testing::Test {
protected:
    SixGlyphs()
    {
        const std::string header = bigEndian({isComposed, 0, 0, 0, 0});
        m_glyphs = {
            simpleOutline('0'),
            simpleOutline('1'),
            simpleOutline('2'),
            {},
            header + bigEndian({moreComponents | wideArguments | oneScale, 1, 0, 0, 0x4000}) +
                bigEndian({0, 3, 0}),
            header + bigEndian({moreComponents, 4, 0}) + bigEndian({0, 5, 0}), // and of itself
        };
        m_tables["OS/2"] = text(test::os2Table({.fsType = 4}));
        m_tables["cvt "] = bigEndian({7});
        m_tables["head"] = std::string(54, '\1');
        m_tables["hhea"] = std::string(36, '\2');
        m_tables["hmtx"] = std::string(24, '\3');
        m_tables["maxp"] = bigEndian({1, 0, 6, 0});
        m_tables["name"] = text(test::nameTable({test::windowsEnglish(4, u"Cedar Book")}).build());
        m_tables["post"] = std::string(32, '\4');
        setLocations(0);
    }

    /// `format` is 0 for halves of offsets in two bytes and 1 for offsets in four.
    void setLocations(std::uint16_t format)
    {
        test::ByteWriter locations;
        std::string all;
        const auto add = [&] {
            if (format == 0)
                locations.u16(static_cast<std::uint16_t>(all.size() / 2));
            else
                locations.u32(static_cast<std::uint32_t>(all.size()));
        };
        for (const std::string& glyph : m_glyphs) {
            add();
            all += glyph;
        }
        add();
        m_tables["glyf"] = all;
        m_tables["loca"] = text(locations.build());
        m_tables["head"].replace(50, 2, bigEndian({format}));
    }

    [[nodiscard]] std::optional<std::string> program(std::vector<unsigned> glyphs) const
    {
        const auto claimed = [this](std::string_view tag, std::size_t size) {
            return tag == "glyf" && m_claimedOutlines ? *m_claimedOutlines : size;
        };
        const auto table = [this](std::string_view tag) {
            const auto found = m_tables.find(std::string(tag));
            return found == m_tables.end() ? std::string() : found->second;
        };
        return trueTypeProgram(
            {[&](std::string_view tag) { return claimed(tag, table(tag).size()); },
             [&](std::string_view tag, std::size_t offset, std::span<char> into) {
                 const std::string bytes = table(tag);
                 if (offset > bytes.size() || into.size() > bytes.size() - offset) return false;
                 std::ranges::copy(bytes.substr(offset, into.size()), into.begin());
                 return true;
             }},
            glyphs);
    }

    std::vector<std::string> m_glyphs;
    std::map<std::string, std::string> m_tables;
    std::optional<std::size_t> m_claimedOutlines; // in bytes
};

struct Record {
    std::string tag;
    std::uint32_t checksum;
    std::string table;
};

std::vector<Record> records(const std::string& program)
{
    std::vector<Record> found;
    const std::size_t count = word(program, 4) >> 16U;
    for (std::size_t at = 12; at < 12 + count * 16; at += 16)
        found.push_back({program.substr(at, 4), word(program, at + 4),
                         program.substr(word(program, at + 8), word(program, at + 12))});
    return found;
}

std::string table(const std::string& program, std::string_view tag)
{
    for (const Record& record : records(program)) {
        if (record.tag == tag) return record.table;
    }
    return {};
}

std::vector<std::string> outlines(const std::string& program)
{
    const std::string locations = table(program, "loca");
    const std::string all = table(program, "glyf");
    // Each outline starts where the one before ends, the first at the beginning; the last one ends
    // with the table.
    EXPECT_EQ(locations.size() % 4, 0U);
    EXPECT_EQ(word(locations, 0), 0U);
    EXPECT_EQ(word(locations, locations.size() - 4), all.size());
    std::vector<std::string> found;
    for (std::size_t at = 0; at + 8 <= locations.size(); at += 4) {
        EXPECT_LE(word(locations, at), word(locations, at + 4));
        found.push_back(
            all.substr(word(locations, at), word(locations, at + 4) - word(locations, at)));
    }
    return found;
}

TEST_F(SixGlyphs, WhatIsNotShownIsLeftBlankAndEveryGlyphKeepsItsNumber)
{
    const auto made = program({2});
    ASSERT_TRUE(made);
    EXPECT_THAT(outlines(*made),
                ElementsAre(simpleOutline('0'), "", simpleOutline('2'), "", "", ""));
    EXPECT_EQ(table(*made, "maxp"), m_tables["maxp"]);
    EXPECT_EQ(table(*made, "hmtx"), m_tables["hmtx"]);
}

TEST_F(SixGlyphs, AComposedGlyphComesWithItsParts)
{
    const auto made = program({5});
    ASSERT_TRUE(made);
    const std::string padding(2, '\0');
    EXPECT_THAT(outlines(*made), ElementsAre(simpleOutline('0'), simpleOutline('1'), "", "",
                                             m_glyphs[4] + padding, m_glyphs[5] + padding));
}

TEST_F(SixGlyphs, APartIsFoundBehindOneOfAnySize)
{
    constexpr std::uint16_t twoScales = 0x0040;
    constexpr std::uint16_t matrix = 0x0080;
    const std::map<unsigned, std::size_t> sizes{
        {0, 2},         {wideArguments, 4}, {oneScale, 4},
        {twoScales, 6}, {matrix, 10},       {wideArguments | matrix, 12},
    };
    for (const auto& [flags, size] : sizes) {
        m_glyphs[5] = bigEndian({isComposed, 0, 0, 0, 0}) +
                      bigEndian({static_cast<std::uint16_t>(moreComponents | flags), 1}) +
                      std::string(size, '\x7F') + bigEndian({0, 2, 0});
        setLocations(0);
        const auto made = program({5});
        ASSERT_TRUE(made);
        EXPECT_EQ(outlines(*made).at(1), simpleOutline('1')) << flags;
        EXPECT_EQ(outlines(*made).at(2), simpleOutline('2')) << flags;
        EXPECT_EQ(outlines(*made).at(4), "") << flags;
    }
}

TEST_F(SixGlyphs, AnOutlineIsNotTakenForParts)
{
    m_glyphs[2] = bigEndian({1, 0, 0, 0, 0, 0, 1, 0});
    m_glyphs[5] = bigEndian({isComposed, 0, 0, 0, 0}); // cut before its first part
    setLocations(0);
    const auto made = program({2, 5});
    ASSERT_TRUE(made);
    EXPECT_THAT(outlines(*made), ElementsAre(simpleOutline('0'), "", m_glyphs[2], "", "",
                                             m_glyphs[5] + std::string(2, '\0')));
}

TEST_F(SixGlyphs, LocationsInFourBytesAreReadToo)
{
    const auto narrow = program({1, 4});
    setLocations(1);
    const auto wide = program({1, 4});
    ASSERT_TRUE(narrow && wide);
    EXPECT_EQ(outlines(*wide), outlines(*narrow));
    EXPECT_EQ(table(*wide, "head").substr(50, 2), bigEndian({1}));
    EXPECT_EQ(table(*narrow, "head").substr(50, 2), bigEndian({1}));
}

TEST_F(SixGlyphs, ChecksumsAreRight)
{
    std::string made = program({1, 5}).value_or("");
    ASSERT_FALSE(made.empty());
    const auto sum = [](std::string bytes) {
        bytes.resize((bytes.size() + 3) / 4 * 4);
        std::uint32_t total = 0;
        for (std::size_t at = 0; at < bytes.size(); at += 4)
            total += word(bytes, at);
        return total;
    };
    EXPECT_EQ(sum(made), 0xB1B0AFBAU);
    std::vector<std::string> tags;
    for (const Record& record : records(made)) {
        tags.push_back(record.tag);
        std::string bytes = record.table;
        if (record.tag == "head") bytes.replace(8, 4, std::string(4, '\0'));
        EXPECT_EQ(record.checksum, sum(bytes)) << record.tag;
    }
    EXPECT_THAT(
        tags, ElementsAre("OS/2", "cvt ", "glyf", "head", "hhea", "hmtx", "loca", "maxp", "name"));
}

TEST_F(SixGlyphs, AReaderFindsTheFontsNameAndItsRights)
{
    const std::string made = program({1}).value_or("");
    const auto faces = SFNT::faces(std::as_bytes(std::span(made)));
    ASSERT_EQ(faces.size(), 1U);
    ASSERT_TRUE(faces[0].name && faces[0].os2);
    const NameStrings names = NameTable::strings(*faces[0].name);
    const auto fullName = names.find(4);
    ASSERT_NE(fullName, names.end());
    EXPECT_EQ(fullName->second, "Cedar Book");
    EXPECT_EQ(OS2Info::read(*faces[0].os2)->fsType, 4);
}

TEST_F(SixGlyphs, GlyphsThatTheFontHasNotAreNoGlyphs)
{
    const auto made = program({6, 70'000});
    ASSERT_TRUE(made);
    EXPECT_EQ(outlines(*made).size(), 6U);
}

TEST_F(SixGlyphs, WithoutOutlinesOrWithOthersThereIsNoProgram)
{
    for (const char* tag : {"head", "hhea", "hmtx", "maxp", "loca"}) {
        const std::string kept = std::exchange(m_tables[tag], {});
        EXPECT_FALSE(program({1})) << tag;
        m_tables[tag] = kept;
    }
    m_tables["glyf"] = {};
    EXPECT_FALSE(program({1}));
}

TEST_F(SixGlyphs, OutlinesThatOverlapAreNotCopied)
{
    // As many as there are would take the square of the font's size.
    std::string& locations = m_tables["loca"];
    locations.replace(2, 4, bigEndian({8, 4}));
    EXPECT_FALSE(program({1}));
}

TEST_F(SixGlyphs, OutlinesBehindTheEndOfTheFontAreNotCopied)
{
    m_tables["glyf"].pop_back();
    EXPECT_FALSE(program({1}));
}

TEST_F(SixGlyphs, MoreOutlinesThanAnyFontHasAreNotCopied)
{
    m_claimedOutlines = 64U << 20U;
    EXPECT_TRUE(program({1}));
    ++*m_claimedOutlines;
    EXPECT_FALSE(program({1}));
}

TEST_F(SixGlyphs, AnOutlineThatCannotBeReadIsBlank)
{
    // A composed glyph of a few kilobytes in a file that ends before it.
    setLocations(1);
    m_claimedOutlines = 5000;
    std::string& locations = m_tables["loca"];
    locations.replace(locations.size() - 4, 4, bigEndian({0, 4096}));
    const auto made = program({5});
    ASSERT_TRUE(made);
    EXPECT_EQ(outlines(*made).at(5), std::string(outlines(*made).at(5).size(), '\0'));
}

TEST_F(SixGlyphs, ADamagedTableIsLeftOutOrThereIsNoProgram)
{
    for (const auto& [tag, table] : m_tables) {
        const std::string kept = table;
        for (std::size_t size = 0; size <= kept.size(); ++size) {
            m_tables[tag].assign(kept, 0, size);
            if (const auto made = program({1, 2, 5})) {
                EXPECT_GE(outlines(*made).size(), 6U) << tag << ' ' << size;
            }
        }
        m_tables[tag] = kept;
    }
}

} // namespace
} // namespace quillmark
