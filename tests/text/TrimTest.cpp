#include "text/Trim.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

namespace quillmark {
namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;

/// Every character with the White_Space property.
constexpr auto whiteSpace = std::to_array<std::string_view>({
    "\u0009", "\u000A", "\u000B", "\u000C", "\u000D", "\u0020", "\u0085", "\u00A0", "\u1680",
    "\u2000", "\u2001", "\u2002", "\u2003", "\u2004", "\u2005", "\u2006", "\u2007", "\u2008",
    "\u2009", "\u200A", "\u2028", "\u2029", "\u202F", "\u205F", "\u3000",
});

/// Characters that look or act like white space without having the property.
constexpr auto notWhiteSpace = std::to_array<std::string_view>({
    "\u001C",
    "\u001F",
    "\u007F",
    "\u0080",
    "\u180E",
    "\u200B",
    "\u200E",
    "\u2060",
    "\u3164",
    "\uFEFF",
    "\uFFFD",
});

TEST(Trim, EveryWhiteSpaceCharacterIsCutAtBothEnds)
{
    for (const std::string_view space : whiteSpace) {
        const std::string text = std::string(space) + "x" + std::string(space);
        EXPECT_EQ(trimmed(text), "x") << testing::PrintToString(text);
    }
}

TEST(Trim, OtherInvisibleCharactersStay)
{
    for (const std::string_view other : notWhiteSpace) {
        const std::string text = std::string(other) + "x" + std::string(other);
        EXPECT_EQ(trimmed(text), text);
    }
}

TEST(Trim, WhiteSpaceInsideStays)
{
    EXPECT_EQ(trimmed("\n a \u3000 b\r\n"), "a \u3000 b");
}

TEST(Trim, BlankTextBecomesEmpty)
{
    EXPECT_EQ(trimmed(""), "");
    EXPECT_EQ(trimmed(" \u2003\r\n\u3000\t"), "");
}

TEST(Trim, CharactersBeyondAsciiAtTheEndsStayWhole)
{
    EXPECT_EQ(trimmed(" \u00E9\u4E2D\U0001F600 "), "\u00E9\u4E2D\U0001F600");
}

TEST(Trim, NulIsCutOnlyWhenAskedFor)
{
    constexpr std::string_view text = "\0 \0Foo\0Bar \0\0 "sv;
    EXPECT_EQ(trimmed(text, TrimAlso::nul), "Foo\0Bar"sv);
    EXPECT_EQ(trimmed(text), "\0 \0Foo\0Bar \0\0"sv);
    EXPECT_EQ(trimmed("\x01x\x01"sv, TrimAlso::nul), "\x01x\x01"sv);
}

TEST(Trim, ControlsAreCutOnlyWhenAskedFor)
{
    for (const std::string_view control :
         {"\0"sv, "\x01"sv, "\x1F"sv, "\x7F"sv, "\u0080"sv, "\u009F"sv}) {
        const std::string text = std::string(control) + " AB\t" + std::string(control);
        EXPECT_EQ(trimmed(text, TrimAlso::controls), "AB");
        EXPECT_EQ(trimmed(text), text);
    }
}

TEST(Trim, TextOfAFontIsAbsentWhenNothingIsLeft)
{
    EXPECT_EQ(trimmedOrAbsent("Foo"), "Foo");
    EXPECT_EQ(trimmedOrAbsent(" Foo Bold\n"), "Foo Bold");
    EXPECT_EQ(trimmedOrAbsent(""), std::nullopt);
    EXPECT_EQ(trimmedOrAbsent(" \r\n\u3000"), std::nullopt);
    EXPECT_EQ(trimmedOrAbsent("\0"s), "\0"s);
    EXPECT_EQ(trimmedOrAbsent("\0 \0"s, TrimAlso::nul), std::nullopt);
    EXPECT_EQ(trimmedOrAbsent("\x01 A\x7F", TrimAlso::controls), "A");
}

TEST(Trim, ReplacementCharactersAreNoControls)
{
    EXPECT_EQ(trimmed("\uFFFDAB\uFFFD", TrimAlso::controls), "\uFFFDAB\uFFFD");
}

} // namespace
} // namespace quillmark
