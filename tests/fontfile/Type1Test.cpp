#include "fontfile/Type1.h"

#include "support/FontBytes.h"

#include <gtest/gtest.h>

namespace quillmark {
namespace {

using test::ascii;
using namespace std::string_view_literals;

std::optional<BareFontInfo> read(std::string_view program)
{
    return Type1::read(ascii(program));
}

std::optional<std::string> fullName(std::string_view program)
{
    const auto info = read(program);
    return info ? info->fullName : std::nullopt;
}

std::optional<std::string> fontName(std::string_view program)
{
    const auto info = read(program);
    return info ? info->fontName : std::nullopt;
}

TEST(Type1, EveryFieldIsReadFromItsKey)
{
    const BareFontInfo info{"Foo-Bold", "Foo Bold", "Foo", "A notice", "(c) Someone"};
    EXPECT_EQ(Type1::read(test::type1Program(info)), info);
}

TEST(Type1, FullNameKeyDirectlyFollowedByNestedParentheses)
{
    EXPECT_EQ(fullName("/FullName(Foo (Bold)) def"), "Foo (Bold)");
}

TEST(Type1, NoticeWithAnEscapedParenthesis)
{
    EXPECT_EQ(read("/Notice (a\\)b) def")->notice, "a)b");
}

TEST(Type1, FontNameBehindTwoSpaces)
{
    EXPECT_EQ(fontName("/FontName  /Foo-Bold def"), "Foo-Bold");
}

TEST(Type1, FontNameWithoutASlashIsAbsent)
{
    const auto info = read("/FontName Foo def");
    ASSERT_TRUE(info);
    EXPECT_EQ(info->fontName, std::nullopt);
}

TEST(Type1, CopyrightWithoutAnyMarkerKeyGivesNothing)
{
    EXPECT_EQ(read("/Copyright (Someone) def /FamilyName (Foo) def"), std::nullopt);
}

TEST(Type1, AnyOneMarkerKeyGivesAResult)
{
    EXPECT_EQ(read("/FontName"), BareFontInfo{});
    EXPECT_EQ(read("/Notice"), BareFontInfo{});
    EXPECT_EQ(read("/FullName"), BareFontInfo{});
}

TEST(Type1, MarkerKeyLetsTheOtherKeysBeRead)
{
    EXPECT_EQ(read("/FontName /A def /Copyright (Someone) def")->copyright, "Someone");
}

TEST(Type1, EmptyInputGivesNothing)
{
    EXPECT_EQ(Type1::read({}), std::nullopt);
}

// The font name.

TEST(Type1, FontNameDirectlyBehindItsKey)
{
    EXPECT_EQ(fontName("/FontName/Foo def"), "Foo");
}

TEST(Type1, FontNameEndsAtEachOfItsDelimiters)
{
    for (const std::string_view delimiter : {" ", "\r", "\n", "\t", "/"})
        EXPECT_EQ(fontName("/FontName /Foo" + std::string(delimiter) + "def"), "Foo");
}

TEST(Type1, FontNameKeepsOtherSigns)
{
    EXPECT_EQ(fontName("/FontName /F(o)[o]{}<>%\\\f\v\0- def"sv), "F(o)[o]{}<>%\\\f\v\0-"sv);
}

TEST(Type1, FontNameMayEndWithTheText)
{
    EXPECT_EQ(fontName("/FontName /Foo"), "Foo");
}

TEST(Type1, OnlySpacesAreSkippedBeforeTheFontName)
{
    EXPECT_EQ(fontName("/FontName\t/Foo def"), std::nullopt);
    EXPECT_EQ(fontName("/FontName\n/Foo def"), std::nullopt);
}

TEST(Type1, FirstFontNameCounts)
{
    EXPECT_EQ(fontName("/FontName /One def /FontName /Two def"), "One");
    EXPECT_EQ(fontName("/FontName One def /FontName /Two def"), std::nullopt);
}

TEST(Type1, FontNameWithoutCharactersIsAbsent)
{
    EXPECT_EQ(read("/FontName / def"), BareFontInfo{});
}

TEST(Type1, FontNameIsLatin1)
{
    EXPECT_EQ(fontName("/FontName /F\xE9n\xFF def"), "F\u00E9n\u00FF");
}

// Strings in parentheses.

TEST(Type1, KeyWithASpaceIsPreferredToAnEarlierOneWithout)
{
    EXPECT_EQ(fullName("/FullName(direct) def /FullName (spaced) def"), "spaced");
}

TEST(Type1, FirstOccurrenceOfEachFormCounts)
{
    EXPECT_EQ(fullName("/FullName (one) def /FullName (two) def"), "one");
    EXPECT_EQ(fullName("/FullName(one) def /FullName(two) def"), "one");
}

TEST(Type1, KeyWithTwoSpacesBeforeTheParenthesisIsAbsent)
{
    EXPECT_EQ(fullName("/FullName  (Foo) def"), std::nullopt);
}

TEST(Type1, BackslashIsDroppedAndTheNextCharacterTakenLiterally)
{
    EXPECT_EQ(fullName(R"(/FullName (a\\b\(c\nd\101\)) def)"), R"(a\b(cnd101))");
}

TEST(Type1, EscapedParenthesesDoNotNest)
{
    EXPECT_EQ(fullName(R"(/FullName (a\(b) c) def)"), "a(b");
}

TEST(Type1, DeepNestingIsKept)
{
    EXPECT_EQ(fullName("/FullName (a(b(c)d)e) f) def"), "a(b(c)d)e");
}

TEST(Type1, UnclosedStringEndsWithTheText)
{
    EXPECT_EQ(fullName("/FullName (Foo (Bold"), "Foo (Bold");
    EXPECT_EQ(fullName("/FullName (Foo\\"), "Foo");
}

TEST(Type1, StringIsTrimmedOfWhiteSpaceAndLineEnds)
{
    EXPECT_EQ(fullName("/FullName ( \r\n\tFoo Bold\xA0\n) def"), "Foo Bold");
}

TEST(Type1, BlankStringIsAbsent)
{
    EXPECT_EQ(fullName("/FullName ( \n) def"), std::nullopt);
    EXPECT_EQ(fullName("/FullName () def"), std::nullopt);
}

TEST(Type1, StringsAreLatin1)
{
    EXPECT_EQ(read("/Notice (\xA9 Andr\xE9 \x80) def")->notice, "\u00A9 Andr\u00E9 \u0080");
}

TEST(Type1, StringOf4001CharactersIsWholeAndALongerOneIsCut)
{
    const std::string longest(4001, 'x');
    EXPECT_EQ(fullName("/FullName (" + longest + ") def"), longest);
    EXPECT_EQ(fullName("/FullName (" + longest + "y) def"), longest);
}

TEST(Type1, CutStringIsTrimmedAfterTheCut)
{
    EXPECT_EQ(fullName("/FullName (" + std::string(4000, 'x') + " y) def"), std::string(4000, 'x'));
}

TEST(Type1, CharactersNotBytesOfUtf8AreCounted)
{
    std::string expected;
    for (int i = 0; i < 4001; ++i)
        expected += "\u00E9";
    EXPECT_EQ(fullName("/FullName (" + std::string(5000, '\xE9') + ") def"), expected);
}

// What is searched.

TEST(Type1, MarkerThatEndsWithTheFirst65536BytesIsFound)
{
    const std::string filling(65536 - 9, ' ');
    EXPECT_EQ(read(filling + "/FontName /Foo def"), BareFontInfo{});
    EXPECT_EQ(read(filling + " /FontName /Foo def"), std::nullopt);
}

TEST(Type1, TextBehindTheFirst65536BytesIsNotRead)
{
    const std::string start = "/FullName (";
    const std::string filling(65536 - 2 - start.size(), ' ');
    EXPECT_EQ(fullName(filling + start + "abcd) def"), "ab");
}

TEST(Type1, SegmentHeadersOfWrappedProgramsAreJustBytes)
{
    EXPECT_EQ(fontName("\x80\x01\x20\x00\x00\x00%!PS-AdobeFont-1.0\n/FontName /Foo def"sv), "Foo");
}

TEST(Type1, ZeroBytesAreCharactersLikeAnyOther)
{
    EXPECT_EQ(fullName("\0/FullName (a\0b) def"sv), std::string("a\0b", 3));
}

} // namespace
} // namespace quillmark
