#include "library/Parallel.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <future>
#include <stdexcept>
#include <vector>

namespace quillmark {
namespace {

TEST(Parallel, DoesEachIndexOnce)
{
    for (const std::size_t count : {0U, 1U, 15U, 16U, 17U, 1000U}) {
        std::vector<std::atomic<int>> calls(count);
        forEachIndex(count, [&](std::size_t i) { ++calls[i]; });
        for (const auto& number : calls)
            EXPECT_EQ(number, 1);
    }
}

TEST(Parallel, GivesAThreadSixteenAtOnceAndTheNextOnesToAnother)
{
    if (coreCount() < 2) GTEST_SKIP() << "needs two cores";
    std::promise<void> isReached;
    auto reached = isReached.get_future();
    forEachIndex(32, [&](std::size_t i) {
        if (i == 16) isReached.set_value();
        if (i != 15) return;
        EXPECT_EQ(reached.wait_for(std::chrono::seconds(30)), std::future_status::ready);
    });
}

TEST(Parallel, ThrowsAgainWhatTheWorkThrows)
{
    std::atomic<int> calls{0};
    EXPECT_THROW(forEachIndex(10000,
                              [&](std::size_t i) {
                                  ++calls;
                                  if (i == 3) throw std::runtime_error("third");
                              }),
                 std::runtime_error);
    EXPECT_GE(calls, 4);
}

} // namespace
} // namespace quillmark
