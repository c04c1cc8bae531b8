#include "export/CFFProgram.h"

#include "fontfile/CFF.h"
#include "support/FontBytes.h"

#include <gmock/gmock.h>

#include <cstdint>
#include <span>
#include <string>

namespace quillmark {
namespace {

TEST(CFFProgram, TellsItsNamesToAReader)
{
    CharStrings glyphs;
    CharString(glyphs, 500).finish();
    const std::string program =
        cffProgram({"ABCDEF+Cedar", "Cedar Book", "Cedar", "Copyright Example"}, glyphs);
    const auto read = CFF::read(std::as_bytes(std::span(program)));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->fontName, "ABCDEF+Cedar");
    EXPECT_EQ(read->fullName, "Cedar Book");
    EXPECT_EQ(read->familyName, "Cedar");
    EXPECT_EQ(read->notice, "Copyright Example");
}

TEST(CFFProgram, EndsWithTheCharStringsAndTheirDictionary)
{
    CharStrings glyphs;
    CharString(glyphs, 0).finish();
    CharString(glyphs, 1).finish();
    EXPECT_THAT(glyphs.ends, testing::ElementsAre(2, 4));
    // Two entries with offsets of four bytes: 1, 3 and 5; then what they hold.
    const std::string expected("\x00\x02\x04\x00\x00\x00\x01\x00\x00\x00\x03\x00\x00\x00\x05"
                               "\x8B\x0E\x8C\x0E",
                               19);
    EXPECT_THAT(cffProgram({"Cedar", {}, {}, {}}, glyphs), testing::HasSubstr(expected));
}

std::string charactersOf(const test::ByteWriter& writer)
{
    const test::Bytes& bytes = writer.build();
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

TEST(CFFProgram, HasEachPartWhereTheTopDictionarySays)
{
    CharStrings glyphs;
    for (int i = 0; i < 3; ++i)
        CharString(glyphs, 0).finish();
    test::ByteWriter expected;
    expected.u8(1).u8(0).u8(4).u8(4);                              // header
    expected.u16(1).u8(4).u32(1).u32(6).text("Cedar");             // names
    expected.u16(1).u8(4).u32(1).u32(50);                          // the top dictionary:
    expected.text("\xF8\x1B\xF8\x1C\x8B\x0C\x1E");                 // 391 392 0 ROS
    expected.text("\xF8\x1D\x01\xF8\x1E\x02\xF8\x1F\x03");         // Notice, FullName, FamilyName
    expected.u8(29).u32(3).u8(12).u8(34);                          // CIDCount
    expected.u8(29).u32(125).u8(15).u8(29).u32(130).u8(12).u8(37); // charset, FDSelect
    expected.u8(29).u32(138).u8(17).u8(29).u32(163).u8(12).u8(36); // CharStrings, FDArray
    expected.u16(5).u8(4).u32(1).u32(6).u32(14).u32(15).u32(16);   // strings
    expected.u32(17).text("AdobeIdentityNFY");                     //
    expected.u16(0);                                               // no subroutines
    expected.u8(2).u16(1).u16(1);                                  // charset: CIDs 1 and 2
    expected.u8(3).u16(1).u16(0).u8(0).u16(3);                     // FDSelect: all are of the first
    expected.u16(3).u8(4).u32(1).u32(3).u32(5).u32(7);             // charstrings
    expected.text("\x8B\x0E\x8B\x0E\x8B\x0E");                     //
    expected.u16(1).u8(4).u32(1).u32(12);                          // the only font dictionary
    expected.u8(29).u32(2).u8(29).u32(185).u8(18);                 // Private
    expected.text("\x8B\x14");                                     // 0 defaultWidthX
    EXPECT_EQ(cffProgram({"Cedar", "F", "Y", "N"}, glyphs), charactersOf(expected));
}

TEST(CFFProgram, NumbersItsGlyphsFromOne)
{
    const auto program = [](int count) {
        CharStrings glyphs;
        for (int i = 0; i < count; ++i)
            CharString(glyphs, 0).finish();
        return cffProgram({"Cedar", {}, {}, {}}, glyphs);
    };
    // Behind the empty list of subroutines: the glyphs' numbers, then their only dictionary.
    const auto behindSubroutines = [](const test::ByteWriter& charset, std::uint16_t glyphs) {
        test::ByteWriter expected;
        expected.text("Identity").u16(0).bytes(charset.build());
        expected.u8(3).u16(1).u16(0).u8(0).u16(glyphs);
        return testing::HasSubstr(charactersOf(expected));
    };
    EXPECT_THAT(program(1), behindSubroutines(test::ByteWriter().u8(0), 1));
    EXPECT_THAT(program(2), behindSubroutines(test::ByteWriter().u8(2).u16(1).u16(0), 2));
    EXPECT_THAT(program(300), behindSubroutines(test::ByteWriter().u8(2).u16(1).u16(298), 300));
}

TEST(CharString, StepsFromRoundedPointToRoundedPoint)
{
    CharStrings drawn;
    CharString line(drawn, 600);
    line.moveTo(0.4, 0.4);
    line.lineTo(0.8, 0.8);
    line.lineTo(1.2, 1.2);
    // 600 takes two bytes; then 0 0 rmoveto, 1 1 rlineto, 0 hlineto, endchar.
    line.finish();
    EXPECT_EQ(drawn.bytes, std::string("\xF8\xEC\x8B\x8B\x15\x8C\x8C\x05\x8B\x06\x0E", 11));
}

TEST(CharString, LevelAndUprightLinesTakeOneNumber)
{
    CharStrings drawn;
    CharString line(drawn, 0);
    line.moveTo(1, 1);
    line.lineTo(3, 1);
    line.lineTo(3, 4);
    line.lineTo(4, 3);
    // 0; then 1 1 rmoveto, 2 hlineto, 3 vlineto, 1 -1 rlineto, endchar.
    line.finish();
    EXPECT_EQ(drawn.bytes, std::string("\x8B\x8C\x8C\x15\x8D\x06\x8E\x07\x8C\x8A\x05\x0E", 12));
}

TEST(CharString, WritesNumbersOfEverySize)
{
    CharStrings drawn;
    CharString line(drawn, -1131);
    line.moveTo(-107, 107);
    line.lineTo(108 - 107, -108 + 107);
    line.lineTo(1 + 1132, -1 - 1132);
    line.finish();
    EXPECT_EQ(drawn.bytes, std::string("\xFE\xFF"         // -1131
                                       "\x20\xF6\x15"     // -107 107 rmoveto
                                       "\xF7\x00\xFB\x00" // 108 -108
                                       "\x05"             // rlineto
                                       "\x1C\x04\x6C\x1C\xFB\x94\x05\x0E",
                                       18));
}

} // namespace
} // namespace quillmark
