#include "assessment/Needle.h"

#include "text/Case.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <map>
#include <string>
#include <string_view>

namespace quillmark {
namespace {

using namespace std::string_view_literals;

constexpr Needle mitLicense{"mit license"};
constexpr Needle gpl{"gpl"};
constexpr Needle oflVersion{"ofl-1.1"};

// Longer than two of the blocks in which a text is searched.
constexpr std::size_t longest = 100;

TEST(Needle, IsFoundAtEveryPlaceOfTextsOfEveryLength)
{
    constexpr std::string_view needle = "MIT License";
    for (std::size_t size = needle.size(); size <= longest; ++size) {
        for (std::size_t at = 0; at + needle.size() <= size; ++at) {
            std::string text(size, 'i');
            text.replace(at, needle.size(), needle);
            EXPECT_TRUE(mitLicense.occursIn(text)) << size << ' ' << at;
        }
    }
}

TEST(Needle, IsFoundAtEveryPlaceOfALongText)
{
    constexpr std::string_view needle = "MIT License";
    for (const std::size_t size : {1023U, 1024U, 1025U, 1200U}) {
        for (std::size_t at = 0; at + needle.size() <= size; ++at) {
            std::string text(size, 'i');
            text.replace(at, needle.size(), needle);
            EXPECT_TRUE(mitLicense.occursIn(text)) << size << ' ' << at;
        }
    }
}

TEST(Needle, IsNotFoundWhenOneCharacterDiffersAtAnyPlace)
{
    constexpr std::string_view needle = "mit license";
    for (std::size_t wrong = 0; wrong < needle.size(); ++wrong) {
        std::string differing(needle);
        differing[wrong] = '#';
        for (std::size_t at = 0; at + needle.size() <= longest; ++at) {
            std::string text(longest, 'm');
            text.replace(at, needle.size(), differing);
            EXPECT_FALSE(mitLicense.occursIn(text)) << differing << ' ' << at;
        }
    }
}

TEST(Needle, IsNotFoundInItsOwnBeginningOrEnd)
{
    EXPECT_FALSE(gpl.occursIn(""));
    EXPECT_FALSE(gpl.occursIn("gp"));
    EXPECT_FALSE(gpl.occursIn("pl"));
    EXPECT_TRUE(gpl.occursIn("gpl"));
    const std::string text(longest, 'x');
    EXPECT_FALSE(gpl.occursIn(text + "gp"));
    EXPECT_FALSE(gpl.occursIn("pl" + text));
    EXPECT_TRUE(gpl.occursIn(text + "gpl"));
}

TEST(Needle, DoesNotReachBeyondTheText)
{
    const std::string text = std::string(longest, 'x') + "gpl";
    EXPECT_FALSE(gpl.occursIn(std::string_view(text).substr(0, text.size() - 1)));
}

TEST(Needle, IsFoundWhateverTheCaseOfEachLetter)
{
    EXPECT_TRUE(gpl.occursIn("GPL"));
    EXPECT_TRUE(gpl.occursIn("the gPl."));
    EXPECT_TRUE(oflVersion.occursIn("OFL-1.1"));
}

TEST(Needle, IsFoundAmongTextOfOtherScripts)
{
    EXPECT_TRUE(gpl.occursIn("© Größe GPL 中文"));
    EXPECT_FALSE(gpl.occursIn("© Größe GΡL 中文")); // a Greek capital rho
}

TEST(Needle, AControlOrAnotherSignIsNotTakenForASignOfTheNeedle)
{
    // They differ from the needle's hyphen, digits and full stop in the bit of a letter's case.
    EXPECT_FALSE(oflVersion.occursIn("ofl\r1.1"));
    EXPECT_FALSE(oflVersion.occursIn("ofl-\x11.1"));
    EXPECT_FALSE(oflVersion.occursIn("ofl-1\x0E\x31"));
    EXPECT_FALSE(mitLicense.occursIn("mit\0license"sv));
    const std::string text(longest, '-');
    EXPECT_FALSE(oflVersion.occursIn(text + "ofl\r1.1" + text));
}

TEST(Needle, TextThatTheSearchCouldMissIsNotSuitable)
{
    EXPECT_TRUE(Needle::isSuitable("ofl-1.1"));
    EXPECT_TRUE(Needle::isSuitable("opensource.org/licenses/mit"));
    EXPECT_TRUE(Needle::isSuitable(" `z"));
    for (const std::string_view text : {
             ""sv,          // found everywhere
             "g"sv,         // without a second character to look for
             "GPL"sv,       // capitals
             "gn\u00FC"sv,  // not ASCII
             "link"sv,      // a Kelvin sign may stand for the k
             "sil mi"sv,    // a dotted capital I may stand for the i
             "a\nb"sv,      // controls
             "open_font"sv, // signs that the bit of a small letter would change
             "ofl@sil"sv, "[gpl]"sv, "a\\b"sv, "a^b"sv,
             "{gpl}"sv, // beyond z
         })
        EXPECT_FALSE(Needle::isSuitable(text)) << text;
}

/// `character`, from U+0080 up, in UTF-8.
std::string utf8(char32_t character)
{
    const auto trail = [character](unsigned shift) {
        return static_cast<char>(0x80U | (character >> shift & 0x3FU));
    };
    if (character < 0x800) return {static_cast<char>(0xC0U | character >> 6U), trail(0)};
    if (character < 0x10000)
        return {static_cast<char>(0xE0U | character >> 12U), trail(6), trail(0)};
    return {static_cast<char>(0xF0U | character >> 18U), trail(12), trail(6), trail(0)};
}

// What makes it right to compare the letters of ASCII only, with no k in a needle and no i at its
// end.
TEST(Needle, OnlyTheKelvinSignAndTheDottedIOutsideAsciiHaveLowerCaseLettersInAscii)
{
    std::map<char32_t, std::string> found;
    for (char32_t character = 0x80; character <= 0x10FFFF; ++character) {
        if (character == 0xD800) character = 0xE000; // surrogates are no characters
        const std::string lower = lowercased(utf8(character));
        for (const char byte : lower)
            if (static_cast<unsigned char>(byte) < 0x80) found[character] = lower;
    }
    EXPECT_EQ(found, (std::map<char32_t, std::string>{{0x0130, "i\u0307"}, {0x212A, "k"}}));
}

} // namespace
} // namespace quillmark
