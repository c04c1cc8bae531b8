#include "export/CFFProgram.h"

#include "fontfile/CFF.h"

#include <gmock/gmock.h>

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
