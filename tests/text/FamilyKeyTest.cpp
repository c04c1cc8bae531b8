#include "text/FamilyKey.h"

#include <gtest/gtest.h>

#include <ostream>

namespace quillmark {
namespace {

struct KeyCase {
    const char* name;
    std::string_view family;
    std::string_view key;

    friend std::ostream& operator<<(std::ostream& out, const KeyCase& row)
    {
        return out << row.name;
    }
};

class FamilyKey : public testing::TestWithParam<KeyCase> {};

TEST_P(FamilyKey, KeepsLowerCasedLettersMarksAndNumbers)
{
    EXPECT_EQ(familyKey(GetParam().family), GetParam().key);
}

INSTANTIATE_TEST_SUITE_P(
    Text, FamilyKey,
    testing::Values(KeyCase{"Empty", "", ""}, KeyCase{"Spaces", "Times New Roman", "timesnewroman"},
                    KeyCase{"HyphenAndUnderscore", "times-new_roman", "timesnewroman"},
                    KeyCase{"Digits", "Source Sans 3", "sourcesans3"},
                    KeyCase{"AsciiPunctuation", "!\"#$%&'()*+,-./:;<=>?@[\\]^_`{|}~", ""},
                    KeyCase{"EdgesOfTheAsciiRanges", "/0 9: @A Z[ `a z{", "09azaz"},
                    KeyCase{"AccentedLetters", "Café Ñandú", "caféñandú"},
                    KeyCase{"CombiningMarks", "Cafe\u0301", "cafe\u0301"},
                    KeyCase{"DevanagariVowelSigns", "हिन्दी", "हिन्दी"},
                    KeyCase{"Chinese", "方正 书宋", "方正书宋"},
                    KeyCase{"ArabicDigits", "خط ٣", "خط٣"},
                    KeyCase{"RomanNumeralAndFraction", "Ⅳ ½", "ⅳ½"},
                    KeyCase{"SymbolsAreDropped", "Foo™ © 2020 – Bär€", "foo2020bär"},
                    KeyCase{"NoBreakSpaceIsDropped", "Foo\u00A0Bar", "foobar"},
                    KeyCase{"EmojiIsDropped", "Foo 😀", "foo"},
                    KeyCase{"LettersBeyondTheBasicPlane", "𐐀 𝟙", "𐐨𝟙"}),
    [](const auto& row) { return std::string(row.param.name); });

} // namespace
} // namespace quillmark
