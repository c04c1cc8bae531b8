#include "text/RawValue.h"

#include <gtest/gtest.h>

#include <array>

namespace quillmark {
namespace {

enum class Fruit { apple, pear };

} // namespace

template <>
inline constexpr auto rawValues<Fruit> = std::to_array<std::string_view>({
    "apple",
    "pear",
});

namespace {

TEST(RawValue, IsTheStringOfTheCase)
{
    EXPECT_EQ(rawValue(Fruit::apple), "apple");
    EXPECT_EQ(rawValue(Fruit::pear), "pear");
}

TEST(RawValue, GivesTheCaseBack)
{
    EXPECT_EQ(fromRawValue<Fruit>("apple"), Fruit::apple);
    EXPECT_EQ(fromRawValue<Fruit>("pear"), Fruit::pear);
}

TEST(RawValue, CasesStandInDeclarationOrder)
{
    EXPECT_EQ(allCases<Fruit>, (std::array{Fruit::apple, Fruit::pear}));
}

TEST(RawValue, AnythingElseGivesNoCase)
{
    EXPECT_EQ(fromRawValue<Fruit>(""), std::nullopt);
    EXPECT_EQ(fromRawValue<Fruit>("Apple"), std::nullopt);
    EXPECT_EQ(fromRawValue<Fruit>("apple "), std::nullopt);
}

} // namespace
} // namespace quillmark
