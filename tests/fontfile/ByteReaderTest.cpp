#include "fontfile/ByteReader.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>

namespace quillmark {
namespace {

constexpr std::size_t farthest = std::numeric_limits<std::size_t>::max();

constexpr std::array five{std::byte{0x81}, std::byte{2}, std::byte{3}, std::byte{4}, std::byte{5}};

TEST(ByteReader, ValuesAreBigEndian)
{
    const ByteReader reader(five);
    EXPECT_EQ(reader.size(), 5U);
    EXPECT_EQ(reader.u8(0), 0x81);
    EXPECT_EQ(reader.u16(0), 0x8102);
    EXPECT_EQ(reader.u32(0), 0x81020304U);
    EXPECT_EQ(reader.u32(1), 0x02030405U);
}

TEST(ByteReader, ValuesOfAnyWidthFromOneToFourAreUnsigned)
{
    const ByteReader reader(five);
    EXPECT_EQ(reader.unsignedValue(0, 1), 0x81U);
    EXPECT_EQ(reader.unsignedValue(0, 2), 0x8102U);
    EXPECT_EQ(reader.unsignedValue(0, 3), 0x810203U);
    EXPECT_EQ(reader.unsignedValue(0, 4), 0x81020304U);
    EXPECT_EQ(reader.unsignedValue(0, 0), std::nullopt);
    EXPECT_EQ(reader.unsignedValue(0, 5), std::nullopt);
}

TEST(ByteReader, ValueThatEndsWithTheBufferIsReadAndOneByteFurtherIsAbsent)
{
    const ByteReader reader(five);
    EXPECT_EQ(reader.u8(4), 0x05);
    EXPECT_EQ(reader.u8(5), std::nullopt);
    EXPECT_EQ(reader.u16(3), 0x0405);
    EXPECT_EQ(reader.u16(4), std::nullopt);
    EXPECT_EQ(reader.u32(1), 0x02030405U);
    EXPECT_EQ(reader.u32(2), std::nullopt);
    EXPECT_EQ(reader.unsignedValue(2, 3), 0x030405U);
    EXPECT_EQ(reader.unsignedValue(3, 3), std::nullopt);
}

TEST(ByteReader, OffsetsFarBehindTheEndAreAbsent)
{
    const ByteReader reader(five);
    for (const std::size_t at : {farthest, farthest - 1, farthest - 3}) {
        EXPECT_EQ(reader.u8(at), std::nullopt);
        EXPECT_EQ(reader.u16(at), std::nullopt);
        EXPECT_EQ(reader.u32(at), std::nullopt);
        EXPECT_FALSE(reader.slice(at, 1));
        EXPECT_FALSE(reader.slice(at, 4));
    }
}

TEST(ByteReader, SliceLiesWhollyInsideOrIsAbsent)
{
    const ByteReader reader(five);
    const auto whole = reader.slice(0, 5);
    ASSERT_TRUE(whole);
    EXPECT_EQ(whole->data(), five.data());
    EXPECT_EQ(whole->size(), 5U);
    EXPECT_EQ(reader.slice(3, 2)->front(), std::byte{4});
    EXPECT_FALSE(reader.slice(0, 6));
    EXPECT_FALSE(reader.slice(3, 3));
    EXPECT_FALSE(reader.slice(1, farthest));
    EXPECT_FALSE(reader.slice(6, 0));
}

TEST(ByteReader, EmptySliceAtTheEndIsInside)
{
    const auto slice = ByteReader(five).slice(5, 0);
    ASSERT_TRUE(slice);
    EXPECT_TRUE(slice->empty());
}

TEST(ByteReader, EmptyBufferHasNothing)
{
    const ByteReader reader({});
    EXPECT_EQ(reader.u8(0), std::nullopt);
    EXPECT_EQ(reader.u16(0), std::nullopt);
    EXPECT_EQ(reader.u32(0), std::nullopt);
    EXPECT_TRUE(reader.slice(0, 0));
}

} // namespace
} // namespace quillmark
