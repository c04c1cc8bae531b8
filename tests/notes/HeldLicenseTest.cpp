#include "notes/HeldLicense.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace quillmark {
namespace {

struct LicenseRow {
    HeldLicense license;
    std::string_view raw;
    std::string_view label;
};

class HeldLicenses : public testing::TestWithParam<LicenseRow> {};

TEST_P(HeldLicenses, HaveTheirLabels)
{
    EXPECT_EQ(label(GetParam().license), GetParam().label);
}

TEST_P(HeldLicenses, AreStoredByTheirRawValues)
{
    EXPECT_EQ(rawValue(GetParam().license), GetParam().raw);
    EXPECT_EQ(fromRawValue<HeldLicense>(GetParam().raw), GetParam().license);
}

constexpr auto licenses = std::to_array<LicenseRow>({
    {HeldLicense::notSet, "notSet", "Not set"},
    {HeldLicense::openLicense, "openLicense", "Open license (OFL, Apache, \xE2\x80\xA6)"},
    {HeldLicense::desktop, "desktop", "Desktop"},
    {HeldLicense::desktopCommercial, "desktopCommercial", "Desktop + commercial products / POD"},
    {HeldLicense::web, "web", "Web font"},
    {HeldLicense::app, "app", "App embedding"},
    {HeldLicense::ebook, "ebook", "Ebook / ePub"},
    {HeldLicense::extended, "extended", "Extended / enterprise"},
    {HeldLicense::appleSystem, "appleSystem", "Came with macOS"},
    {HeldLicense::other, "other", "Other"},
});

INSTANTIATE_TEST_SUITE_P(HeldLicense, HeldLicenses, testing::ValuesIn(licenses),
                         [](const auto& test) { return std::string(test.param.raw); });

TEST(HeldLicense, ThereAreTenInTheOrderInWhichTheyAreOffered)
{
    ASSERT_EQ(allCases<HeldLicense>.size(), licenses.size());
    for (std::size_t i = 0; i < licenses.size(); ++i)
        EXPECT_EQ(allCases<HeldLicense>[i], licenses[i].license);
}

TEST(HeldLicense, RawValuesCompareExactly)
{
    EXPECT_EQ(fromRawValue<HeldLicense>("Desktop"), std::nullopt);
    EXPECT_EQ(fromRawValue<HeldLicense>(""), std::nullopt);
    EXPECT_EQ(fromRawValue<HeldLicense>("print"), std::nullopt);
}

} // namespace
} // namespace quillmark
