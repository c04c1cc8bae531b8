#include "assessment/Assessment.h"

#include "assessment/Brand.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <vector>

namespace quillmark {
namespace {

TEST(Verdict, RestrictedHasItsLabels)
{
    EXPECT_EQ(label(Verdict::restricted), "Restricted");
    EXPECT_EQ(shortLabel(Verdict::restricted), "Restricted");
}

TEST(Verdict, UnknownHasItsLabels)
{
    EXPECT_EQ(label(Verdict::unknown), "Unknown");
    EXPECT_EQ(shortLabel(Verdict::unknown), "Unknown");
}

TEST(Verdict, LikelyOKHasItsLabels)
{
    EXPECT_EQ(label(Verdict::likelyOK), "Likely OK to embed");
    EXPECT_EQ(shortLabel(Verdict::likelyOK), "Likely OK");
}

TEST(Verdict, IsStoredByItsRawValue)
{
    EXPECT_EQ(rawValue(Verdict::restricted), "restricted");
    EXPECT_EQ(rawValue(Verdict::unknown), "unknown");
    EXPECT_EQ(rawValue(Verdict::likelyOK), "likelyOK");
    EXPECT_EQ(fromRawValue<Verdict>("restricted"), Verdict::restricted);
    EXPECT_EQ(fromRawValue<Verdict>("unknown"), Verdict::unknown);
    EXPECT_EQ(fromRawValue<Verdict>("likelyOK"), Verdict::likelyOK);
    EXPECT_EQ(fromRawValue<Verdict>("likelyok"), std::nullopt);
}

TEST(Verdict, SortsTheWorstFirst)
{
    std::vector verdicts{Verdict::likelyOK, Verdict::restricted, Verdict::unknown};
    std::ranges::sort(verdicts);
    EXPECT_EQ(verdicts, (std::vector{Verdict::restricted, Verdict::unknown, Verdict::likelyOK}));
}

TEST(Verdict, AllOfThemStandInDeclarationOrder)
{
    ASSERT_EQ(allCases<Verdict>.size(), 3U);
    EXPECT_EQ(allCases<Verdict>[0], Verdict::restricted);
    EXPECT_EQ(allCases<Verdict>[1], Verdict::unknown);
    EXPECT_EQ(allCases<Verdict>[2], Verdict::likelyOK);
}

TEST(Assessment, EqualsAnotherOnlyWhenEveryFieldDoes)
{
    const Assessment first{.verdict = Verdict::unknown,
                           .headline = "Headline",
                           .reasons = {"One.", "Two."},
                           .license = LicenseKind::named,
                           .appleBundled = false};
    Assessment second = first;
    EXPECT_EQ(first, second);
    second.reasons = {"Two.", "One."};
    EXPECT_NE(first, second);
    second = first;
    second.appleBundled = true;
    EXPECT_NE(first, second);
}

TEST(Brand, IsTheProductsName)
{
    EXPECT_EQ(Brand, "Quillmark");
}

} // namespace
} // namespace quillmark
