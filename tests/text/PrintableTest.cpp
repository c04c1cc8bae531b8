#include "text/Printable.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

namespace quillmark {
namespace {

TEST(Printable, OrdinaryTextStaysAsItIs)
{
    EXPECT_EQ(printable(""), "");
    EXPECT_EQ(printable("Foo Bold ~"), "Foo Bold ~");
    EXPECT_EQ(printable("Ünïcode 中文 עברית 😀"), "Ünïcode 中文 עברית 😀");
}

TEST(Printable, EveryAsciiControlIsReplaced)
{
    for (int value = 0; value <= 0x7F; ++value) {
        if (value >= 0x20 && value != 0x7F) continue;
        const std::string text = "a" + std::string(1, static_cast<char>(value)) + "b";
        EXPECT_EQ(printable(text), "a\uFFFDb") << value;
    }
}

TEST(Printable, ControlsSeparatorsAndBidirectionalControlsAreReplaced)
{
    const auto unsafe = std::to_array<std::string_view>({
        "\u0080", "\u0085", "\u009B", "\u009F", // C1: the last but one starts escape sequences
        "\u2028", "\u2029",                     // line and paragraph separator
        "\u061C", "\u200E", "\u200F",           // marks
        "\u202A", "\u202B", "\u202C", "\u202D", "\u202E", // embeddings and overrides
        "\u2066", "\u2067", "\u2068", "\u2069",           // isolates
    });
    for (const std::string_view character : unsafe)
        EXPECT_EQ(printable("a" + std::string(character) + "b"), "a\uFFFDb");
}

TEST(Printable, NeighboursOfTheReplacedCharactersStay)
{
    const auto safe = std::to_array<std::string_view>({
        "\u0020",
        "\u007E",
        "\u00A0",
        "\u061B",
        "\u061D",
        "\u200D",
        "\u2010",
        "\u2027",
        "\u202F",
        "\u2065",
        "\u206A",
        "\uFFFD",
    });
    for (const std::string_view character : safe)
        EXPECT_EQ(printable(character), character);
}

TEST(Printable, EscapeSequenceLosesItsStart)
{
    EXPECT_EQ(printable("\x1B[31mred\x1B[0m\r\n"), "\uFFFD[31mred\uFFFD[0m\uFFFD\uFFFD");
}

} // namespace
} // namespace quillmark
