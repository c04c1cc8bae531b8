#include "fontfile/NameStrings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quillmark {
namespace {

using testing::ElementsAre;
using testing::Pair;

TEST(NameStrings, LieInTheOrderOfTheIdentifiers)
{
    NameStrings names{{4, "Foo Bold"}, {1, "Foo"}};
    names.add(2, "Bold");
    names.add(65535, "last");
    EXPECT_THAT(names, ElementsAre(Pair(1, "Foo"), Pair(2, "Bold"), Pair(4, "Foo Bold"),
                                   Pair(65535, "last")));
}

TEST(NameStrings, KeepTheFirstStringOfAnIdentifier)
{
    NameStrings names{{1, "Foo"}, {1, "Bar"}};
    names.add(1, "Baz");
    EXPECT_THAT(names, ElementsAre(Pair(1, "Foo")));
}

TEST(NameStrings, AreFoundByIdentifier)
{
    const NameStrings names{{1, "Foo"}, {4, "Foo Bold"}};
    ASSERT_NE(names.find(4), names.end());
    EXPECT_EQ(names.find(4)->second, "Foo Bold");
    EXPECT_EQ(names.find(0), names.end());
    EXPECT_EQ(names.find(2), names.end());
    EXPECT_EQ(names.find(5), names.end());
}

TEST(NameStrings, AreEmptyUntilOneIsAdded)
{
    NameStrings names;
    EXPECT_TRUE(names.empty());
    EXPECT_EQ(names.find(0), names.end());
    names.add(0, "copyright");
    EXPECT_FALSE(names.empty());
    EXPECT_EQ(names.size(), 1U);
}

} // namespace
} // namespace quillmark
