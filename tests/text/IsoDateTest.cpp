#include "text/IsoDate.h"

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace quillmark {
namespace {

using namespace std::chrono;
using namespace std::chrono_literals;

TEST(IsoDate, IsWrittenInUTCWithSeconds)
{
    EXPECT_EQ(isoDate(sys_seconds(0s)), "1970-01-01T00:00:00Z");
    EXPECT_EQ(isoDate(sys_seconds(1795233600s)), "2026-11-21T04:00:00Z");
    EXPECT_EQ(isoDate(sys_seconds(951'868'799s)), "2000-02-29T23:59:59Z");
    EXPECT_EQ(isoDate(sys_seconds(-1s)), "1969-12-31T23:59:59Z");
}

TEST(IsoDate, HasFourDigitsForEarlyYears)
{
    EXPECT_EQ(isoDate(sys_days(3y / March / 4)), "0003-03-04T00:00:00Z");
}

TEST(IsoDate, StaysWithinFourDigitsOfTheYear)
{
    EXPECT_EQ(isoDate(sys_seconds::max()), "9999-12-31T23:59:59Z");
    EXPECT_EQ(isoDate(sys_seconds::min()), "0000-01-01T00:00:00Z");
    EXPECT_EQ(isoDate(sys_days(10'000y / January / 1)), "9999-12-31T23:59:59Z");
    EXPECT_EQ(isoDate(sys_days(year(-1) / December / 31)), "0000-01-01T00:00:00Z");
}

struct Form {
    std::string_view name;
    std::string_view text;
};

class ReadForms : public testing::TestWithParam<Form> {};

TEST_P(ReadForms, MeanTheSameSecond)
{
    EXPECT_EQ(parseIsoDate(GetParam().text), sys_days(2026y / March / 14) + 9h + 26min + 53s);
}

constexpr auto forms = std::to_array<Form>({
    {"UTC", "2026-03-14T09:26:53Z"},
    {"SmallLetters", "2026-03-14t09:26:53z"},
    {"NoOffset", "2026-03-14T09:26:53+00:00"},
    {"NegativeNoOffset", "2026-03-14T09:26:53-00:00"},
    {"OffsetWithColon", "2026-03-14T10:26:53+01:00"},
    {"OffsetWithoutColon", "2026-03-14T10:26:53+0100"},
    {"OffsetOfHours", "2026-03-14T10:26:53+01"},
    {"OffsetOfHalfAnHour", "2026-03-14T14:56:53+05:30"},
    {"OffsetToTheWest", "2026-03-14T01:26:53-08:00"},
    {"LargestOffset", "2026-03-15T09:25:53+23:59"},
    {"LargestOffsetToTheWest", "2026-03-13T09:27:53-23:59"},
    {"OffsetAcrossMidnight", "2026-03-13T22:26:53-1100"},
    {"Milliseconds", "2026-03-14T09:26:53.589Z"},
    {"Nanoseconds", "2026-03-14T09:26:53.999999999Z"},
    {"FractionWithComma", "2026-03-14T09:26:53,5+00:00"},
    {"LongFraction", "2026-03-14T09:26:53.11111111111111111111111111111111111111111111Z"},
});

INSTANTIATE_TEST_SUITE_P(IsoDate, ReadForms, testing::ValuesIn(forms),
                         [](const auto& test) { return std::string(test.param.name); });

class UnreadForms : public testing::TestWithParam<Form> {};

TEST_P(UnreadForms, AreAbsent)
{
    EXPECT_EQ(parseIsoDate(GetParam().text), std::nullopt);
}

constexpr auto unreadForms = std::to_array<Form>({
    {"Empty", ""},
    {"DateAlone", "2026-03-14"},
    {"NoZone", "2026-03-14T09:26:53"},
    {"NoSeconds", "2026-03-14T09:26Z"},
    {"Space", "2026-03-14 09:26:53Z"},
    {"SpaceBehind", "2026-03-14T09:26:53Z "},
    {"TextBehind", "2026-03-14T09:26:53Z+01:00"},
    {"BasicFormat", "20260314T092653Z"},
    {"Month0", "2026-00-14T09:26:53Z"},
    {"Month13", "2026-13-14T09:26:53Z"},
    {"Day0", "2026-03-00T09:26:53Z"},
    {"Day29OfAShortFebruary", "2026-02-29T09:26:53Z"},
    {"Day31OfApril", "2026-04-31T09:26:53Z"},
    {"Hour24", "2026-03-14T24:00:00Z"},
    {"Minute60", "2026-03-14T09:60:53Z"},
    {"Second60", "2026-03-14T09:26:60Z"},
    {"FractionWithoutDigits", "2026-03-14T09:26:53.Z"},
    {"OffsetOf24Hours", "2026-03-14T09:26:53+24:00"},
    {"OffsetOf60Minutes", "2026-03-14T09:26:53+01:60"},
    {"OffsetOfOneDigit", "2026-03-14T09:26:53+1"},
    {"OffsetOfThreeDigits", "2026-03-14T09:26:53+010"},
    {"OffsetWithColonOnly", "2026-03-14T09:26:53+01:"},
    {"FiveDigitYear", "12026-03-14T09:26:53Z"},
    {"SignedYear", "+2026-03-14T09:26:53Z"},
    {"NegativeYear", "-026-03-14T09:26:53Z"},
    {"Letters", "2026-0x-14T09:26:53Z"},
    {"BeforeTheYears", "0000-01-01T00:00:00+00:01"},
    {"BehindTheYears", "9999-12-31T23:59:59-00:01"},
});

INSTANTIATE_TEST_SUITE_P(IsoDate, UnreadForms, testing::ValuesIn(unreadForms),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(IsoDate, ReadsBackTheFirstAndTheLastSecond)
{
    for (const std::string_view text : {"0000-01-01T00:00:00Z", "9999-12-31T23:59:59Z"}) {
        const auto time = parseIsoDate(text);
        ASSERT_TRUE(time) << text;
        EXPECT_EQ(isoDate(*time), text);
    }
}

} // namespace
} // namespace quillmark
