#include "pdf/SubsetPrefix.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <string_view>

namespace quillmark {
namespace {

struct NameRow {
    std::string_view name; // of the case
    std::string_view rawName;
    std::string_view cleanName;
    bool subset;
};

class SubsetNames : public testing::TestWithParam<NameRow> {};

TEST_P(SubsetNames, AreSplit)
{
    const SubsetName expected{std::string(GetParam().cleanName), GetParam().subset};
    EXPECT_EQ(splitSubsetPrefix(GetParam().rawName), expected);
}

INSTANTIATE_TEST_SUITE_P(
    SubsetPrefix, SubsetNames,
    testing::ValuesIn(std::to_array<NameRow>({
        {"SixCapitals", "ABCDEF+Garamond-Bold", "Garamond-Bold", true},
        {"SixEqualCapitals", "AAAAAA+Garamond", "Garamond", true},
        {"OneLetterName", "ABCDEF+G", "G", true},
        {"SecondPlusStays", "ABCDEF+A+B", "A+B", true},
        {"PlusBehindThePrefixStays", "ABCDEF++B", "+B", true},
        {"SecondPrefixStays", "ABCDEF+GHIJKL+Foo", "GHIJKL+Foo", true},
        {"FiveLetters", "ABCDE+Garamond", "ABCDE+Garamond", false},
        {"SevenLetters", "ABCDEFG+Garamond", "ABCDEFG+Garamond", false},
        {"LowerCaseLetter", "AbCDEF+Garamond", "AbCDEF+Garamond", false},
        {"LowerCaseLastLetter", "ABCDEf+Garamond", "ABCDEf+Garamond", false},
        {"Digit", "ABCDE1+Garamond", "ABCDE1+Garamond", false},
        {"Space", "ABCDE +Garamond", "ABCDE +Garamond", false},
        {"Hyphen", "ABC-EF+Garamond", "ABC-EF+Garamond", false},
        {"NoTag", "+Garamond", "+Garamond", false},
        {"NoTagBeforeATaggedName", "+ABCDEF+Garamond", "+ABCDEF+Garamond", false},
        {"NoName", "ABCDEF+", "ABCDEF+", false},
        {"NoPlus", "ABCDEFGaramond", "ABCDEFGaramond", false},
        {"TagAlone", "ABCDEF", "ABCDEF", false},
        {"PlusAlone", "+", "+", false},
        {"Empty", "", "", false},
        {"PlusInAName", "Foo+Bar", "Foo+Bar", false},
        {"Unnamed", "(unnamed font)", "(unnamed font)", false},
        // Two bytes each, but six characters.
        {"CapitalsOutsideAscii", "ÄÖÜÉÈÅ+Garamond", "Garamond", true},
        {"GreekCapitals", "ΑΒΓΔΕΖ+Garamond", "Garamond", true},
        {"SmallLetterOutsideAscii", "ÄÖÜÉÈå+Garamond", "ÄÖÜÉÈå+Garamond", false},
        {"SharpS", "ABCDEß+Garamond", "ABCDEß+Garamond", false},
        // Six bytes, but three characters.
        {"SixBytesOnly", "ÄÖÜ+Garamond", "ÄÖÜ+Garamond", false},
        // A letter and its accent are one character.
        {"CombiningAccent", "A\u0308BCDEF+Garamond", "Garamond", true},
        {"CombiningAccentOnASmallLetter", "a\u0308BCDEF+Garamond", "a\u0308BCDEF+Garamond", false},
        {"SixCodePointsButFiveCharacters", "A\u0308BCDE+Garamond", "A\u0308BCDE+Garamond", false},
        // Not a letter by its category, but with the Uppercase property.
        {"CircledCapitals", "ⒶⒷⒸⒹⒺⒻ+Garamond", "Garamond", true},
        {"RomanNumeral", "ABCDEⅫ+Garamond", "Garamond", true},
        // A title-case letter is neither.
        {"TitleCaseLetter", "ABCDEǅ+Garamond", "ABCDEǅ+Garamond", false},
        {"LetterWithoutCase", "ABCDE中+Garamond", "ABCDE中+Garamond", false},
        {"CleanNameOutsideAscii", "ABCDEF+Größe", "Größe", true},
    })),
    [](const auto& test) { return std::string(test.param.name); });

TEST(SubsetPrefix, NamesThatDifferOnlyInThePrefixGiveOneCleanName)
{
    EXPECT_EQ(splitSubsetPrefix("ABCDEF+Foo").cleanName, "Foo");
    EXPECT_EQ(splitSubsetPrefix("GHIJKL+Foo").cleanName, "Foo");
    EXPECT_EQ(splitSubsetPrefix("Foo").cleanName, "Foo");
}

TEST(SubsetPrefix, AnEndlessTagIsNoTag)
{
    const std::string longTag = std::string(1'000'000, 'A') + "+Foo";
    EXPECT_FALSE(splitSubsetPrefix(longTag).subset);
    EXPECT_EQ(splitSubsetPrefix(longTag).cleanName, longTag);
}

} // namespace
} // namespace quillmark
