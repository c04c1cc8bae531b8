#include "text/DateText.h"

#include <gtest/gtest.h>

namespace quillmark {
namespace {

TEST(DateText, HasTheDateAndTheTimeToTheMinute)
{
    using namespace std::chrono;
    const auto noon = sys_days(year(2026) / 3 / 14) + 12h;
    const std::string text = dateText(noon);
    EXPECT_NE(text.find("2026"), std::string::npos) << text;
    EXPECT_NE(text.find("14"), std::string::npos) << text;
    EXPECT_EQ(dateText(noon + 30s), text);
    EXPECT_NE(dateText(noon + 1min), text);
    EXPECT_NE(dateText(noon + days(1)), text);
}

} // namespace
} // namespace quillmark
