#include "model/RunningWork.h"

#include <gtest/gtest.h>

namespace quillmark::test {
namespace {

TEST(RunningWork, ShowsWhatBeganLastAmongAllThatHasNotEnded)
{
    RunningWork work;
    EXPECT_EQ(work.latest(), std::nullopt);
    const auto first = work.begin("1", "one");
    const auto second = work.begin("2", "two");
    const auto third = work.begin("3", "three");
    EXPECT_EQ(work.latest(), "three");
    EXPECT_TRUE(work.end(second));
    EXPECT_EQ(work.latest(), "three");
    EXPECT_TRUE(work.end(third));
    EXPECT_EQ(work.latest(), "one");
    EXPECT_TRUE(work.end(first));
    EXPECT_EQ(work.latest(), std::nullopt);
}

TEST(RunningWork, ResultsCountUnlessLaterOnesOfTheSubjectHaveCome)
{
    RunningWork work;
    const auto first = work.begin("a", "");
    const auto second = work.begin("a", "");
    const auto third = work.begin("a", "");
    const auto other = work.begin("b", "");
    EXPECT_TRUE(work.end(other));
    EXPECT_TRUE(work.end(second));
    EXPECT_FALSE(work.end(first));
    EXPECT_TRUE(work.end(third));
}

TEST(RunningWork, EndsOnce)
{
    RunningWork work;
    const auto ticket = work.begin("a", "");
    EXPECT_TRUE(work.end(ticket));
    EXPECT_FALSE(work.end(ticket));
}

} // namespace
} // namespace quillmark::test
