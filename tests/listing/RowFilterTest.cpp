#include "listing/RowFilter.h"

#include <gtest/gtest.h>

#include <string>

namespace quillmark::test {
namespace {

/// What matters of a font here. Empty texts are left out.
struct SampleFont {
    std::string name;
    Verdict verdict{Verdict::unknown};
    std::string postScriptName{};
    std::string manufacturer{};
    bool appleBundled{};
};

AuditRow rowOf(const SampleFont& font)
{
    AuditRow row;
    row.facts.fullName = font.name;
    row.facts.postScriptName = font.postScriptName.empty() ? font.name : font.postScriptName;
    if (!font.manufacturer.empty()) row.facts.manufacturer = font.manufacturer;
    row.assessment.verdict = font.verdict;
    row.assessment.appleBundled = font.appleBundled;
    return row;
}

bool passes(const AuditRow& row, const RowFilter& filter)
{
    const CaseFolding folding("en_US");
    return RowMatcher(filter, folding).matches(row, searchedNames(row, folding));
}

bool finds(const SampleFont& font, const std::string& search)
{
    return passes(rowOf(font), {.verdict = {}, .source = Source::all, .search = search});
}

TEST(RowFilter, WithoutAnyWishKeepsEveryRow)
{
    EXPECT_TRUE(passes(rowOf({.name = "Brook"}), {}));
    EXPECT_TRUE(passes(AuditRow(), {}));
}

TEST(RowFilter, KeepsOnlyRowsOfTheVerdict)
{
    const RowFilter filter{.verdict = Verdict::restricted, .source = Source::all, .search = ""};
    EXPECT_TRUE(passes(rowOf({.name = "A", .verdict = Verdict::restricted}), filter));
    EXPECT_FALSE(passes(rowOf({.name = "A", .verdict = Verdict::unknown}), filter));
    EXPECT_FALSE(passes(rowOf({.name = "A", .verdict = Verdict::likelyOK}), filter));
}

TEST(RowFilter, TellsWhatTheUserAddedFromWhatCameWithTheSystem)
{
    const AuditRow added = rowOf({.name = "A"});
    const AuditRow apple = rowOf({.name = "A", .appleBundled = true});
    EXPECT_TRUE(passes(added, {.verdict = {}, .source = Source::added, .search = ""}));
    EXPECT_FALSE(passes(apple, {.verdict = {}, .source = Source::added, .search = ""}));
    EXPECT_FALSE(passes(added, {.verdict = {}, .source = Source::apple, .search = ""}));
    EXPECT_TRUE(passes(apple, {.verdict = {}, .source = Source::apple, .search = ""}));
}

TEST(RowFilter, RestrictedFontsThatCameWithTheSystemAreThoseThatAreBoth)
{
    const RowFilter filter{.verdict = Verdict::restricted, .source = Source::apple, .search = ""};
    const auto row = [](Verdict verdict, bool apple) {
        return rowOf({.name = "A", .verdict = verdict, .appleBundled = apple});
    };
    EXPECT_TRUE(passes(row(Verdict::restricted, true), filter));
    EXPECT_FALSE(passes(row(Verdict::restricted, false), filter));
    EXPECT_FALSE(passes(row(Verdict::unknown, true), filter));
}

TEST(RowFilter, FindsPartOfADisplayNameWhateverItsCase)
{
    EXPECT_TRUE(finds({.name = "Brook Bold"}, "bold"));
    EXPECT_TRUE(finds({.name = "Brook Bold"}, "K BO"));
    EXPECT_FALSE(finds({.name = "Brook Bold"}, "italic"));
}

TEST(RowFilter, FindsAFontByItsManufacturerWhenNeitherNameHasIt)
{
    EXPECT_TRUE(finds({.name = "Brook", .manufacturer = "The abcde foundry"}, "ABCD"));
    EXPECT_FALSE(finds({.name = "Brook"}, "ABCD"));
}

TEST(RowFilter, FindsAPostScriptName)
{
    EXPECT_TRUE(finds({.name = "Brook Bold", .postScriptName = "BrookPro-Bd"}, "kpro-"));
}

TEST(RowFilter, TakesTheSearchAsTyped)
{
    EXPECT_FALSE(finds({.name = "Brook"}, " brook")) << "not trimmed";
    EXPECT_TRUE(finds({.name = "The Brook"}, " brook"));
}

TEST(RowFilter, FindsNothingAcrossTwoNames)
{
    EXPECT_FALSE(finds({.name = "Brook", .postScriptName = "Cedar"}, "brookcedar"));
    EXPECT_FALSE(finds({.name = "Brook", .postScriptName = "Cedar"}, "okce"));
}

TEST(RowFilter, SourcesAreCalledAsThePickerShowsThem)
{
    EXPECT_EQ(label(Source::all), "All fonts");
    EXPECT_EQ(label(Source::added), "Added by you");
    EXPECT_EQ(label(Source::apple), "Came with macOS");
}

} // namespace
} // namespace quillmark::test
