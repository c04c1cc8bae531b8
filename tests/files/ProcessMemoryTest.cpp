#include "files/ProcessMemory.h"

#include <cstddef>
#include <fstream>
#include <malloc.h>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace quillmark {
namespace {

/// What this process has, in bytes.
std::size_t residentMemory()
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with("VmRSS:")) return std::stoul(line.substr(6)) * 1024;
    return 0;
}

/// Takes so many pieces of 64 KiB, fills them and frees them again.
void takeAndFree(std::size_t pieces)
{
    constexpr std::size_t bytes = std::size_t{64} << 10U;
    std::vector<std::unique_ptr<std::vector<char>>> taken;
    for (std::size_t i = 0; i < pieces; ++i)
        taken.push_back(std::make_unique<std::vector<char>>(bytes, 'x'));
}

TEST(ProcessMemoryTest, WhatIsReservedIsNotTakenBeforeItIsFilled)
{
    if (isSanitized) GTEST_SKIP() << "the sanitizers have an allocator of their own";
    constexpr std::size_t mebibyte = std::size_t{1} << 20U;
    keepMemory();
    returnMemory(0); // what an earlier test has left
    const std::size_t before = residentMemory();
    reserveMemory(30 * mebibyte);
    EXPECT_LT(residentMemory(), before + 4 * mebibyte);
    const std::vector<char> filled(20 * mebibyte, 'x');
    EXPECT_GT(residentMemory(), before + 19 * mebibyte);
    EXPECT_LT(residentMemory(), before + 26 * mebibyte);
}

TEST(ProcessMemoryTest, WhatIsTooLittleOrTooMuchToReserveChangesNothing)
{
    if (isSanitized) GTEST_SKIP() << "the sanitizers have an allocator of their own";
    const auto used = [] { return ::mallinfo2().uordblks; };
    const std::size_t before = used();
    for (const std::size_t bytes : {std::size_t{0}, std::size_t{1000}, ~std::size_t{0} / 2}) {
        reserveMemory(bytes);
        EXPECT_LT(used(), before + 65'536) << bytes; // what is freed stays at hand
    }
}

TEST(ProcessMemoryTest, WhatIsFreeIsKeptUntilItIsMoreThanIsToBeSpare)
{
    if (isSanitized) GTEST_SKIP() << "the sanitizers have an allocator of their own";
    constexpr std::size_t mebibyte = std::size_t{1} << 20U;
    keepMemory();
    returnMemory(0); // what an earlier test has left
    const std::size_t before = residentMemory();
    takeAndFree(1'024);
    ASSERT_GT(residentMemory(), before + 60 * mebibyte);
    returnMemory(128 * mebibyte);
    EXPECT_GT(residentMemory(), before + 60 * mebibyte);
    returnMemory(4 * mebibyte);
    EXPECT_LT(residentMemory(), before + 8 * mebibyte);
}

} // namespace
} // namespace quillmark
