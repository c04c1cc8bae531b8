#include "library/FreeTypeMemory.h"

#include <gtest/gtest.h>

#include <cstring>

namespace quillmark {
namespace {

constexpr long kibibyte = 1024;

/// FreeType's way to its memory, of which it may have a mebibyte.
class FreeTypeMemoryTest : public testing::Test {
protected:
    [[nodiscard]] void* allocate(long size) { return m_functions->alloc(m_functions, size); }
    [[nodiscard]] void* resize(void* block, long before, long size)
    {
        return m_functions->realloc(m_functions, before, size, block);
    }
    void release(void* block) { m_functions->free(m_functions, block); }

private:
    FreeTypeMemory m_memory{std::size_t{1} << 20U};
    FT_Memory m_functions{m_memory.get()};
};

TEST_F(FreeTypeMemoryTest, IsGivenUpToTheTotal)
{
    void* const first = allocate(600 * kibibyte);
    void* const second = allocate(300 * kibibyte);
    ASSERT_NE(first, nullptr);
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(allocate(200 * kibibyte), nullptr);
    release(first);
    void* const third = allocate(600 * kibibyte);
    EXPECT_NE(third, nullptr);
    release(third);
    release(second);
}

TEST_F(FreeTypeMemoryTest, IsNotGivenForMoreThanThereCanBe)
{
    EXPECT_EQ(allocate(3'137'339'935), nullptr);
    EXPECT_EQ(allocate(-1), nullptr);
}

TEST_F(FreeTypeMemoryTest, ABlockThatMayNotGrowStaysAsItIs)
{
    void* block = allocate(600 * kibibyte);
    ASSERT_NE(block, nullptr);
    std::memset(block, 7, 600 * kibibyte);
    EXPECT_EQ(resize(block, 600 * kibibyte, 1100 * kibibyte), nullptr);
    EXPECT_EQ(static_cast<char*>(block)[600 * kibibyte - 1], 7);

    block = resize(block, 600 * kibibyte, 1000 * kibibyte);
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(static_cast<char*>(block)[600 * kibibyte - 1], 7);
    EXPECT_EQ(allocate(100 * kibibyte), nullptr);
    block = resize(block, 1000 * kibibyte, 10 * kibibyte);
    ASSERT_NE(block, nullptr);
    void* const other = allocate(900 * kibibyte);
    EXPECT_NE(other, nullptr);
    release(other);
    release(block);
}

} // namespace
} // namespace quillmark
