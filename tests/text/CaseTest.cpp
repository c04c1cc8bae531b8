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

} // namespace
} // namespace quillmark
