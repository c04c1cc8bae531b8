#include "export/CFFProgram.h"

#include "fontfile/CFF.h"

#include <gtest/gtest.h>

#include <array>
#include <span>

namespace quillmark {
namespace {

TEST(CFFProgram, TellsItsNamesToAReader)
{
    const std::array glyphs{CharString(500).finish()};
    const std::string program =
        cffProgram({"ABCDEF+Cedar", "Cedar Book", "Cedar", "Copyright Example"}, glyphs);
    const auto read = CFF::read(std::as_bytes(std::span(program)));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->fontName, "ABCDEF+Cedar");
    EXPECT_EQ(read->fullName, "Cedar Book");
    EXPECT_EQ(read->familyName, "Cedar");
    EXPECT_EQ(read->notice, "Copyright Example");
}

TEST(CharString, StepsFromRoundedPointToRoundedPoint)
{
    CharString line(600);
    line.moveTo(0.4, 0.4);
    line.lineTo(0.8, 0.8);
    line.lineTo(1.2, 1.2);
    // 600 takes two bytes; then 0 0 rmoveto, 1 1 rlineto, 0 hlineto, endchar.
    EXPECT_EQ(line.finish(), std::string("\xF8\xEC\x8B\x8B\x15\x8C\x8C\x05\x8B\x06\x0E", 11));
}

TEST(CharString, LevelAndUprightLinesTakeOneNumber)
{
    CharString line(0);
    line.moveTo(1, 1);
    line.lineTo(3, 1);
    line.lineTo(3, 4);
    line.lineTo(4, 3);
    // 0; then 1 1 rmoveto, 2 hlineto, 3 vlineto, 1 -1 rlineto, endchar.
    EXPECT_EQ(line.finish(), std::string("\x8B\x8C\x8C\x15\x8D\x06\x8E\x07\x8C\x8A\x05\x0E", 12));
}

TEST(CharString, WritesNumbersOfEverySize)
{
    CharString line(-1131);
    line.moveTo(-107, 107);
    line.lineTo(108 - 107, -108 + 107);
    line.lineTo(1 + 1132, -1 - 1132);
    EXPECT_EQ(line.finish(), std::string("\xFE\xFF"         // -1131
                                         "\x20\xF6\x15"     // -107 107 rmoveto
                                         "\xF7\x00\xFB\x00" // 108 -108
                                         "\x05"             // rlineto
                                         "\x1C\x04\x6C\x1C\xFB\x94\x05\x0E",
                                         18));
}

} // namespace
} // namespace quillmark
