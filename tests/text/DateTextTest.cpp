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

TEST(DateText, ReachesAsFarAsTheDatesOfFiles)
{
    using namespace std::chrono;
    // Far beyond what the clock can count in nanoseconds.
    const auto last = sys_days(year(9999) / 6 / 14) + 12h;
    EXPECT_NE(dateText(last).find("9999"), std::string::npos) << dateText(last);
    EXPECT_NE(dayText(last).find("9999"), std::string::npos) << dayText(last);
}

TEST(DayText, HasTheDateAndNoTime)
{
    using namespace std::chrono;
    const auto noon = sys_days(year(2026) / 3 / 14) + 12h;
    const std::string text = dayText(noon);
    EXPECT_NE(text.find("2026"), std::string::npos) << text;
    EXPECT_EQ(dayText(noon + 1h), text);
    EXPECT_NE(dayText(noon + days(1)), text);
    EXPECT_TRUE(dateText(noon).starts_with(text)) << "as before a time";
}

TEST(TimeText, HasTheTimeToTheMinuteAndNoDate)
{
    using namespace std::chrono;
    const auto noon = sys_days(year(2026) / 3 / 14) + 12h;
    const std::string text = timeText(noon);
    EXPECT_FALSE(text.empty());
    EXPECT_EQ(text.find("2026"), std::string::npos) << text;
    EXPECT_EQ(timeText(noon + 30s), text);
    EXPECT_NE(timeText(noon + 1min), text);
    EXPECT_EQ(timeText(noon + days(1)), text);
    EXPECT_NE(dateText(noon).find(text), std::string::npos) << "as behind a date";
}

} // namespace
} // namespace quillmark
