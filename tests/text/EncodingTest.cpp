#include "text/Encoding.h"

#include "support/FontBytes.h"

#include <gtest/gtest.h>

#include <ostream>

namespace quillmark {
namespace {

using test::ascii;
using test::utf16;
using namespace std::string_view_literals;

struct Utf8Case {
    const char* name;
    std::string_view bytes;
    std::string_view text;

    friend std::ostream& operator<<(std::ostream& out, const Utf8Case& row)
    {
        return out << row.name;
    }
};

class Utf8Repair : public testing::TestWithParam<Utf8Case> {};

TEST_P(Utf8Repair, GivesOneReplacementPerMaximalIllFormedPart)
{
    EXPECT_EQ(repairedUtf8(GetParam().bytes), GetParam().text);
    EXPECT_EQ(decodeUtf8(ascii(GetParam().bytes)), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    Encoding, Utf8Repair,
    testing::Values(Utf8Case{"Empty", "", ""}, Utf8Case{"Ascii", "Foo\0Bar"sv, "Foo\0Bar"sv},
                    Utf8Case{"TwoBytes", "\u0080\u07FF", "\u0080\u07FF"},
                    Utf8Case{"ThreeBytes", "\u0800\uD7FF\uE000\uFFFF", "\u0800\uD7FF\uE000\uFFFF"},
                    Utf8Case{"FourBytes", "\U00010000\U0010FFFF", "\U00010000\U0010FFFF"},
                    Utf8Case{"NonShortestForms", "\xC0\xAF\xE0\x80\xBF\xF0\x81\x82\x41",
                             "\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFDA"},
                    Utf8Case{"Surrogates", "\xED\xA0\x80\xED\xBF\xBF\xED\xAF\x41",
                             "\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFDA"},
                    Utf8Case{"OtherIllFormedParts", "\xF4\x91\x92\x93\xFF\x41\x80\xBF\x42",
                             "\uFFFD\uFFFD\uFFFD\uFFFD\uFFFDA\uFFFD\uFFFDB"},
                    Utf8Case{"TruncatedParts", "\xE1\x80\xE2\xF0\x91\x92\xF1\xBF\x41",
                             "\uFFFD\uFFFD\uFFFD\uFFFDA"},
                    Utf8Case{"LeadByteAtTheEnd", "a\xC3", "a\uFFFD"},
                    Utf8Case{"ThreeByteCharacterCutAtTheEnd", "a\xE2\x82", "a\uFFFD"},
                    Utf8Case{"FourByteCharacterCutAtTheEnd", "a\xF0\x9F\x98", "a\uFFFD"},
                    Utf8Case{"LoneContinuation", "\x80z", "\uFFFDz"},
                    Utf8Case{"LeadBytesThatNeverOccur", "\xC1\xF5\xFE", "\uFFFD\uFFFD\uFFFD"},
                    Utf8Case{"BeyondUnicode", "\xF4\x90\x80\x80", "\uFFFD\uFFFD\uFFFD\uFFFD"},
                    Utf8Case{"FarBeyondUnicode", "\xF5\x80\x80\x80", "\uFFFD\uFFFD\uFFFD\uFFFD"}),
    [](const auto& row) { return std::string(row.param.name); });

struct Utf16Case {
    const char* name;
    std::u16string units;
    std::string_view text;

    friend std::ostream& operator<<(std::ostream& out, const Utf16Case& row)
    {
        return out << row.name;
    }
};

class Utf16BigEndian : public testing::TestWithParam<Utf16Case> {};

TEST_P(Utf16BigEndian, IsDecoded)
{
    EXPECT_EQ(decodeUtf16BigEndian(utf16(GetParam().units)), GetParam().text);
}

// Unpaired surrogates cannot be written in a literal.
INSTANTIATE_TEST_SUITE_P(
    Encoding, Utf16BigEndian,
    testing::Values(
        Utf16Case{"Empty", u"", ""}, Utf16Case{"Ascii", u"Foo Bold", "Foo Bold"},
        Utf16Case{"AsciiControls", std::u16string(u"\0\x7F", 2), "\0\x7F"sv},
        Utf16Case{"FirstTwoByteCharacter", u"a\u0080b", "a\u0080b"},
        Utf16Case{"LatinAndGreek", u"\u00E9\u03A9\u07FF", "\u00E9\u03A9\u07FF"},
        Utf16Case{"Chinese", u"\u4E2D\u6587 x", "\u4E2D\u6587 x"},
        Utf16Case{"AroundTheSurrogates", u"\u0800\uD7FF\uE000\uFFFF", "\u0800\uD7FF\uE000\uFFFF"},
        Utf16Case{"SurrogatePairs", u"\U00010000\U0001F600\U0010FFFF",
                  "\U00010000\U0001F600\U0010FFFF"},
        Utf16Case{"LoneHighSurrogate", {0xD83D, u'a'}, "\uFFFDa"},
        Utf16Case{"HighSurrogateAtTheEnd", {u'a', 0xDBFF}, "a\uFFFD"},
        Utf16Case{"LoneLowSurrogate", {0xDE00, u'a'}, "\uFFFDa"},
        Utf16Case{"SurrogatesTheWrongWayRound", {0xDE00, 0xD83D}, "\uFFFD\uFFFD"},
        Utf16Case{"TwoHighSurrogatesThenALowOne", {0xD83D, 0xD83D, 0xDE00}, "\uFFFD\U0001F600"}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(Encoding, ACharacterBeyondAsciiIsFoundWhereverItStandsInALongText)
{
    for (std::size_t size = 1; size <= 40; ++size) {
        for (std::size_t place = 0; place < size; ++place) {
            std::u16string units(size, u'a');
            const std::string before(place, 'a');
            const std::string after(size - place - 1, 'a');
            units[place] = u'\u0080';
            EXPECT_EQ(decodeUtf16BigEndian(utf16(units)), before + "\u0080" + after);
            units[place] = u'\u0141';
            EXPECT_EQ(decodeUtf16BigEndian(utf16(units)), before + "\u0141" + after);
        }
    }
}

TEST(Encoding, APairOfSurrogatesIsOneCharacterWhereverItStandsInALongText)
{
    for (std::size_t size = 2; size <= 50; ++size) {
        for (std::size_t place = 0; place + 1 < size; ++place) {
            std::u16string units(size, u'a');
            units.replace(place, 2, u"\U0001F600");
            const std::string expected =
                std::string(place, 'a') + "\U0001F600" + std::string(size - place - 2, 'a');
            EXPECT_EQ(decodeUtf16BigEndian(test::utf16(units)), expected)
                << size << " units, at " << place;
        }
    }
}

TEST(Encoding, OddLastByteOfUtf16IsIgnored)
{
    EXPECT_EQ(decodeUtf16BigEndian(ascii("\0A\0"sv)), "A");
    EXPECT_EQ(decodeUtf16BigEndian(ascii("A")), "");
}

TEST(Encoding, MacRomanLowerHalfIsAscii)
{
    std::string all;
    for (int value = 0; value < 0x80; ++value)
        all.push_back(static_cast<char>(value));
    EXPECT_EQ(decodeMacRoman(ascii(all)), all);
}

TEST(Encoding, MacRomanUpperHalfIsApplesTable)
{
    std::string upperHalf;
    for (int value = 0x80; value < 0x100; ++value)
        upperHalf.push_back(static_cast<char>(value));
    EXPECT_EQ(decodeMacRoman(ascii(upperHalf)), "ÄÅÇÉÑÖÜáàâäãåçéè"
                                                "êëíìîïñóòôöõúùûü"
                                                "†°¢£§•¶ß®©™´¨≠ÆØ"
                                                "∞±≤≥¥µ∂∑∏π∫ªºΩæø"
                                                "¿¡¬√ƒ≈∆«»…\u00A0ÀÃÕŒœ"
                                                "–—“”‘’÷◊ÿŸ⁄€‹›ﬁﬂ"
                                                "‡·‚„‰ÂÊÁËÈÍÎÏÌÓÔ"
                                                "\uF8FFÒÚÛÙıˆ˜¯˘˙˚¸˝˛ˇ");
}

TEST(Encoding, MacRomanLookalikesAreTheRightCharacters)
{
    // Micro sign, Greek capital omega, increment, middle dot, euro sign, macron.
    EXPECT_EQ(decodeMacRoman(ascii("\xB5\xBD\xC6\xE1\xDB\xF8")),
              "\u00B5\u03A9\u2206\u00B7\u20AC\u00AF");
}

TEST(Encoding, Latin1BytesAreTheirCodePoints)
{
    EXPECT_EQ(decodeLatin1(ascii("A\0\x7F\x80\x9F\xA0\xFF"sv)),
              "A\0\x7F\u0080\u009F\u00A0\u00FF"sv);
}

TEST(Encoding, AsciiReplacesEveryByteAbove127)
{
    EXPECT_EQ(decodeAscii(ascii("A\0\x7F\x80\xFF"sv)), "A\0\x7F\uFFFD\uFFFD"sv);
}

TEST(Encoding, EmptyInputIsEmptyText)
{
    EXPECT_EQ(decodeUtf8({}), "");
    EXPECT_EQ(decodeUtf16BigEndian({}), "");
    EXPECT_EQ(decodeMacRoman({}), "");
    EXPECT_EQ(decodeLatin1({}), "");
    EXPECT_EQ(decodeAscii({}), "");
}

} // namespace
} // namespace quillmark
