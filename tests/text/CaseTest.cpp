#include "text/Case.h"

#include <gtest/gtest.h>

#include <ostream>

namespace quillmark {
namespace {

using namespace std::string_view_literals;

struct LowerCase {
    const char* name;
    std::string_view text;
    std::string_view lower;

    friend std::ostream& operator<<(std::ostream& out, const LowerCase& row)
    {
        return out << row.name;
    }
};

class Lowercased : public testing::TestWithParam<LowerCase> {};

TEST_P(Lowercased, IsFullUnicodeLowerCasing)
{
    EXPECT_EQ(lowercased(GetParam().text), GetParam().lower);
}

INSTANTIATE_TEST_SUITE_P(
    Case, Lowercased,
    testing::Values(
        LowerCase{"Empty", "", ""}, LowerCase{"Ascii", "AZ az 09 @[`{", "az az 09 @[`{"},
        LowerCase{"ZeroBytes", "A\0B"sv, "a\0b"sv}, LowerCase{"Latin", "ÀÉÑØÞ", "àéñøþ"},
        LowerCase{"GreekAndCyrillic", "ΑΒΓ ЖЯ", "αβγ жя"},
        LowerCase{"FinalSigma", "ΟΔΟΣ ΣΑΣ", "οδος σας"},
        LowerCase{"DottedCapitalIBecomesTwoCharacters", "İ", "i\u0307"},
        LowerCase{"CapitalIIsNotTurkish", "I\u00C9", "i\u00E9"},
        LowerCase{"KelvinSign", "\u212A", "k"}, LowerCase{"SharpSStays", "Straße", "straße"},
        LowerCase{"CapitalSharpS", "\u1E9E", "ß"}, LowerCase{"BeyondTheBasicPlane", "𐐀", "𐐨"},
        LowerCase{"ScriptsWithoutCaseStay", "中文 कखग", "中文 कखग"}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(Case, UpperCasingIsFullUnicodeInTheRootLocale)
{
    EXPECT_EQ(uppercased(""), "");
    EXPECT_EQ(uppercased("woff2 az AZ @[`{"), "WOFF2 AZ AZ @[`{");
    EXPECT_EQ(uppercased("àéñøþ αβς жя ß i"), "ÀÉÑØÞ ΑΒΣ ЖЯ SS I");
    EXPECT_EQ(uppercased("中文"), "中文");
}

struct ContainsCase {
    const char* name;
    std::string_view text;
    std::string_view needle;
    bool contains;

    friend std::ostream& operator<<(std::ostream& out, const ContainsCase& row)
    {
        return out << row.name;
    }
};

class ContainsIgnoringCase : public testing::TestWithParam<ContainsCase> {};

TEST_P(ContainsIgnoringCase, FoldsBothSides)
{
    EXPECT_EQ(containsIgnoringCase(GetParam().text, GetParam().needle), GetParam().contains);
}

INSTANTIATE_TEST_SUITE_P(
    Case, ContainsIgnoringCase,
    testing::Values(ContainsCase{"Ascii", "© none, APPLE INC. 2003", "Apple Inc", true},
                    ContainsCase{"AsciiOnBothSides", "(c) aPPLE iNC", "Apple Inc", true},
                    ContainsCase{"AsciiAtTheStart", "Apple", "APP", true},
                    ContainsCase{"AsciiAtTheEnd", "An apple", "APPLE", true},
                    ContainsCase{"AsciiNotFound", "Apple Computer", "Apple Inc", false},
                    ContainsCase{"NotFoundBeyondAscii", "Äpple Inc", "Apple Inc", false},
                    ContainsCase{"NeedleLongerThanTheText", "Inc", "Apple Inc", false},
                    ContainsCase{"WithinTextBeyondAscii", "Ünïcode LTD", "ünÏcode", true},
                    ContainsCase{"SharpSIsTwoLetters", "STRASSE", "straße", true},
                    ContainsCase{"LigatureIsItsLetters", "\uFB01n", "FIN", true},
                    ContainsCase{"KelvinSignIsALetterK", "\u212Aelvin", "kel", true},
                    ContainsCase{"SigmaInAllItsForms", "ΟΔΟΣ", "οδος", true},
                    ContainsCase{"EmptyNeedle", "Foo", "", true},
                    ContainsCase{"EmptyNeedleInEmptyText", "", "", true},
                    ContainsCase{"EmptyText", "", "Foo", false}),
    [](const auto& row) { return std::string(row.param.name); });

} // namespace
} // namespace quillmark
