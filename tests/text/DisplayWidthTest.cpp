#include "text/DisplayWidth.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace quillmark {
namespace {

struct WidthCase {
    const char* description;
    std::string text;
    std::size_t columns;
};

class DisplayWidth : public testing::TestWithParam<WidthCase> {};

TEST_P(DisplayWidth, CountsTheColumnsOfATerminal)
{
    EXPECT_EQ(displayWidth(GetParam().text), GetParam().columns);
}

INSTANTIATE_TEST_SUITE_P(Text, DisplayWidth,
                         testing::ValuesIn(std::vector<WidthCase>{
                             {"Empty", "", 0},
                             {"Ascii", "Cedar Regular", 13},
                             {"Latin", "Größe", 5},
                             {"Greek", "αβγ", 3},
                             {"ChineseIsWide", "漢字", 4},
                             {"KanaIsWide", "かな", 4},
                             {"HangulSyllablesAreWide", "한글", 4},
                             {"HangulLettersJoinToOneSyllable", "\u1112\u1161\u11AB", 2},
                             {"FullWidthLetters", "\uFF21\uFF22", 4},
                             {"HalfWidthKana", "\uFF76\uFF85", 2},
                             {"EmojiIsWide", "\U0001F600", 2},
                             {"CombiningAccentTakesNoRoom", "e\u0301", 1},
                             {"EnclosingMarkTakesNoRoom", "1\u20E3", 1},
                             {"ZeroWidthJoinerTakesNoRoom", "a\u200Db", 2},
                             {"SoftHyphenIsDrawn", "a\u00ADb", 3},
                             {"AmbiguousIsNarrow", "§…", 2},
                             {"ReplacementCharacter", "\uFFFD", 1},
                             {"Signs", "✗?✓·", 4},
                         }),
                         [](const auto& test) { return test.param.description; });

TEST(PrefixOfWidth, TakesWhatFits)
{
    EXPECT_EQ(prefixOfWidth("Cedar", 3), "Ced");
    EXPECT_EQ(prefixOfWidth("Cedar", 5), "Cedar");
    EXPECT_EQ(prefixOfWidth("Cedar", 9), "Cedar");
    EXPECT_EQ(prefixOfWidth("Cedar", 0), "");
    EXPECT_EQ(prefixOfWidth("", 4), "");
}

TEST(PrefixOfWidth, LeavesOutAWideCharacterThatDoesNotFit)
{
    EXPECT_EQ(prefixOfWidth("漢字", 3), "漢");
    EXPECT_EQ(prefixOfWidth("漢字", 1), "");
}

TEST(PrefixOfWidth, KeepsTheMarksOfItsLastCharacter)
{
    EXPECT_EQ(prefixOfWidth("e\u0301\u0302tude", 1), "e\u0301\u0302");
}

} // namespace
} // namespace quillmark
