#include "text/Utf8.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>

namespace quillmark {
namespace {

struct Row {
    char32_t codePoint;
    std::string_view bytes;
};

constexpr auto wellFormed = std::to_array<Row>({
    {U'\0', {"\0", 1}},
    {0x7F, "\x7F"},
    {0x80, "\xC2\x80"},
    {0x7FF, "\xDF\xBF"},
    {0x800, "\xE0\xA0\x80"},
    {0xD7FF, "\xED\x9F\xBF"},
    {0xE000, "\xEE\x80\x80"},
    {0xFFFF, "\xEF\xBF\xBF"},
    {0x10000, "\xF0\x90\x80\x80"},
    {0x10FFFF, "\xF4\x8F\xBF\xBF"},
});

TEST(Utf8, FirstAndLastSeeWholeCharacters)
{
    for (const Row& row : wellFormed) {
        const std::string before = "x" + std::string(row.bytes);
        const std::string behind = std::string(row.bytes) + "x";
        EXPECT_EQ(Utf8::first(behind).codePoint, row.codePoint);
        EXPECT_EQ(Utf8::first(behind).length, row.bytes.size());
        EXPECT_EQ(Utf8::last(before).codePoint, row.codePoint);
        EXPECT_EQ(Utf8::last(before).length, row.bytes.size());
    }
}

TEST(Utf8, AppendWritesTheShortestForm)
{
    for (const Row& row : wellFormed) {
        std::string text = "x";
        Utf8::append(text, row.codePoint);
        EXPECT_EQ(text, "x" + std::string(row.bytes));
    }
}

TEST(Utf8, IllFormedPartsAreOneReplacementCharacterEach)
{
    EXPECT_EQ(Utf8::first("\xF1\xBF\xBFx").codePoint, 0xFFFDU);
    EXPECT_EQ(Utf8::first("\xF1\xBF\xBFx").length, 3U);
    EXPECT_EQ(Utf8::last("x\xF1\xBF\xBF").codePoint, 0xFFFDU);
    EXPECT_EQ(Utf8::last("x\xF1\xBF\xBF").length, 3U);
    EXPECT_EQ(Utf8::last("x\x80\x80").length, 1U);
}

TEST(Utf8, IsAsciiSeesABytePlacedAnywhere)
{
    EXPECT_TRUE(Utf8::isAscii(""));
    const std::string text(67, '\x7F');
    EXPECT_TRUE(Utf8::isAscii(text));
    for (std::size_t at = 0; at < text.size(); ++at) {
        std::string other = text;
        other[at] = '\x80';
        EXPECT_FALSE(Utf8::isAscii(other)) << at;
    }
}

TEST(Utf8, AsciiLowerChangesCapitalsOnly)
{
    const std::string_view text = "@AZ[`az{\xC4";
    std::string lower(text);
    std::ranges::transform(lower, lower.begin(), Utf8::asciiLower);
    EXPECT_EQ(lower, "@az[`az{\xC4");
}

} // namespace
} // namespace quillmark
