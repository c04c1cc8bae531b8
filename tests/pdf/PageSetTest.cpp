#include "pdf/PageSet.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace quillmark {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::size_t all = std::numeric_limits<std::size_t>::max();

TEST(PageSet, PagesInARowAreOneRun)
{
    PageSet set;
    for (const int page : {3, 4, 4, 5, 8})
        set.add(page);
    EXPECT_THAT(set.runs(), ElementsAre(PageSet::Run{3, 5}, PageSet::Run{8, 8}));
    EXPECT_EQ(set.size(), 4U);
    EXPECT_THAT(set.numbers(all), ElementsAre(3, 4, 5, 8));
}

TEST(PageSet, StartsEmpty)
{
    EXPECT_TRUE(PageSet().empty());
    EXPECT_EQ(PageSet().size(), 0U);
    EXPECT_THAT(PageSet().numbers(all), IsEmpty());
}

TEST(PageSet, UnionJoinsRunsThatOverlapOrTouch)
{
    const auto set = PageSet::of({{9, 12}, {1, 2}, {3, 3}, {20, 20}, {10, 11}, {12, 15}});
    EXPECT_THAT(set.runs(),
                ElementsAre(PageSet::Run{1, 3}, PageSet::Run{9, 15}, PageSet::Run{20, 20}));
}

TEST(PageSet, UnionReachesTheHighestPageNumber)
{
    constexpr int highest = std::numeric_limits<int>::max();
    const auto set = PageSet::of({{1, highest}, {highest, highest}});
    EXPECT_THAT(set.runs(), ElementsAre(PageSet::Run{1, highest}));
}

TEST(PageSet, NumbersAreTheLowestUpToTheLimit)
{
    const auto set = PageSet::of({{1, 3}, {7, 8}});
    EXPECT_THAT(set.numbers(0), IsEmpty());
    EXPECT_THAT(set.numbers(4), ElementsAre(1, 2, 3, 7));
    EXPECT_THAT(set.numbers(5), ElementsAre(1, 2, 3, 7, 8));
}

} // namespace
} // namespace quillmark
