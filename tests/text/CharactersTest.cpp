#include "text/Characters.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace quillmark {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Characters, CodePointsAreCountedNotBytes)
{
    EXPECT_EQ(codePointCount(""), 0U);
    EXPECT_EQ(codePointCount("abc"), 3U);
    EXPECT_EQ(codePointCount("aé中😀"), 4U);
    EXPECT_EQ(codePointCount("e\u0301"), 2U);
}

TEST(Characters, AsciiLettersAreCharacters)
{
    EXPECT_THAT(userCharacters("ABCDEF", 10), ElementsAre("A", "B", "C", "D", "E", "F"));
}

TEST(Characters, NoMoreThanTheLimitAreGiven)
{
    EXPECT_THAT(userCharacters("ABC", 0), IsEmpty());
    EXPECT_THAT(userCharacters("ABC", 2), ElementsAre("A", "B"));
    EXPECT_THAT(userCharacters("ÄÖÜ", 2), ElementsAre("Ä", "Ö"));
    EXPECT_THAT(userCharacters("AÖÜ", 2), ElementsAre("A", "Ö"));
    EXPECT_THAT(userCharacters("ABe\u0301", 2), ElementsAre("A", "B"));
}

TEST(Characters, CombiningMarkBelongsToTheLetterBeforeIt)
{
    EXPECT_THAT(userCharacters("Ae\u0301B", 10), ElementsAre("A", "e\u0301", "B"));
    EXPECT_THAT(userCharacters("A\u0308", 10), ElementsAre("A\u0308"));
}

TEST(Characters, CarriageReturnAndLineFeedAreOne)
{
    EXPECT_THAT(userCharacters("a\r\nb\n\r", 10), ElementsAre("a", "\r\n", "b", "\n", "\r"));
}

TEST(Characters, EmojiSequencesAndFlagsAreOneEach)
{
    EXPECT_THAT(userCharacters("👩‍👩‍👧🇸🇪🇳🇴x", 10),
                ElementsAre("👩‍👩‍👧", "🇸🇪", "🇳🇴", "x"));
}

TEST(Characters, HangulSyllablesOfSeveralLettersAreOne)
{
    EXPECT_THAT(userCharacters("\u1112\u1161\u11AB글", 10),
                ElementsAre("\u1112\u1161\u11AB", "글"));
}

TEST(Characters, EmptyTextHasNone)
{
    EXPECT_THAT(userCharacters("", 10), IsEmpty());
}

TEST(Characters, UppercaseIsTheProperty)
{
    for (const char* upper : {"A", "Z", "É", "Ω", "Ж", "Ⅷ", "Ⓐ", "𐐀"})
        EXPECT_TRUE(isUppercaseCharacter(upper)) << upper;
    for (const char* other : {"a", "z", "é", "ω", "ß", "1", "+", "中", "ǅ", "ª", "😀", " "})
        EXPECT_FALSE(isUppercaseCharacter(other)) << other;
}

TEST(Characters, LetterWithMarksIsUppercaseWhenOnlyLowerCasingChangesIt)
{
    EXPECT_TRUE(isUppercaseCharacter("E\u0301"));
    EXPECT_FALSE(isUppercaseCharacter("e\u0301"));
    EXPECT_FALSE(isUppercaseCharacter("1\u0301"));
    EXPECT_FALSE(isUppercaseCharacter("\r\n"));
}

TEST(Characters, NoCharacterIsNotUppercase)
{
    EXPECT_FALSE(isUppercaseCharacter(""));
}

} // namespace
} // namespace quillmark
