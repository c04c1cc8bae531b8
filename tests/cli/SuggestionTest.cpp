#include "cli/Suggestion.h"

#include <gmock/gmock.h>

#include <string>

namespace quillmark::cli {
namespace {

using testing::Eq;
using testing::Optional;

const std::vector<std::string_view> names{"scan", "show", "notes"};

TEST(Suggestion, IsTheNearestName)
{
    EXPECT_THAT(nearest("scna", names), Optional(Eq("scan")));
    EXPECT_THAT(nearest("sow", names), Optional(Eq("show")));
    EXPECT_THAT(nearest("note", names), Optional(Eq("notes")));
    EXPECT_THAT(nearest("sh", names), Optional(Eq("show")));
}

TEST(Suggestion, OfSeveralIsTheFirst)
{
    EXPECT_THAT(nearest("s_o_", {"slow", "show", "snow"}), Optional(Eq("slow")));
}

TEST(Suggestion, IsAbsentWhenNothingIsNear)
{
    EXPECT_EQ(nearest("frobnicate", names), std::nullopt);
    EXPECT_EQ(nearest("", names), std::nullopt);
    EXPECT_EQ(nearest("x", {}), std::nullopt);
    EXPECT_EQ(nearest(std::string(10'000'000, 's'), names), std::nullopt);
}

TEST(Suggestion, IsAbsentForWhatIsKnown)
{
    EXPECT_EQ(nearest("show", names), std::nullopt);
}

} // namespace
} // namespace quillmark::cli
