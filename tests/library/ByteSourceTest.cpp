#include "library/ByteSource.h"

#include "CountingSource.h"
#include "support/FontBytes.h"

#include <gtest/gtest.h>

namespace quillmark {
namespace {

using test::Bytes;
using test::CountingSource;

Bytes numbered(std::size_t size)
{
    Bytes bytes(size);
    for (std::size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<std::byte>(i % 251);
    return bytes;
}

TEST(MemorySource, ReadsUpToItsEnd)
{
    const Bytes bytes = numbered(10);
    const MemorySource source(bytes);
    Bytes into(4);
    EXPECT_EQ(source.size(), 10U);
    EXPECT_EQ(source.read(3, into), 4U);
    EXPECT_EQ(into[0], std::byte{3});
    EXPECT_EQ(source.read(8, into), 2U);
    EXPECT_EQ(source.read(10, into), 0U);
    EXPECT_EQ(source.read(~std::uint64_t{0}, into), 0U);
}

TEST(HeadedSource, GivesTheFirstBytesWithoutReadingAgain)
{
    const Bytes bytes = numbered(10000);
    const CountingSource source(bytes);
    const HeadedSource headed(source);
    Bytes scratch;
    EXPECT_EQ(headed.head().size(), 4096U);
    EXPECT_EQ(headed.view(4000, 96, scratch)[95], bytes[4095]);
    EXPECT_EQ(headed.copy(0, 4096)->at(4095), bytes[4095]);
    EXPECT_EQ(source.reads, 1U);
    EXPECT_EQ(headed.view(4000, 97, scratch)[96], bytes[4096]);
    EXPECT_EQ(headed.copy(9990, 10)->at(9), bytes[9999]);
    EXPECT_EQ(source.reads, 3U);
}

TEST(HeadedSource, EndsViewsWhereTheSourceEnds)
{
    const Bytes bytes = numbered(5000);
    const MemorySource source(bytes);
    const HeadedSource headed(source);
    Bytes scratch;
    EXPECT_EQ(headed.view(4990, 100, scratch).size(), 10U);
    EXPECT_EQ(headed.view(5000, 1, scratch).size(), 0U);
    EXPECT_EQ(headed.view(~std::uint64_t{0}, 1, scratch).size(), 0U);
    const MemorySource nothing({});
    EXPECT_EQ(HeadedSource(nothing).head().size(), 0U);
}

TEST(HeadedSource, CopiesAllOrNothing)
{
    const Bytes bytes = numbered(5000);
    CountingSource source(bytes);
    const HeadedSource headed(source);
    EXPECT_TRUE(headed.copy(4990, 10));
    EXPECT_FALSE(headed.copy(4990, 11));
    EXPECT_FALSE(headed.copy(5001, 0));
    EXPECT_FALSE(headed.copy(~std::uint64_t{0}, 2));
    EXPECT_TRUE(headed.copy(5000, 0));
    source.readable = 4995;
    EXPECT_FALSE(headed.copy(4990, 10));
}

} // namespace
} // namespace quillmark
