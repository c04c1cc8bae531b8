#include "text/Collation.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

namespace quillmark {
namespace {

using testing::ElementsAre;

/// Sorted by `compare`, after making sure that the sort keys say the same of every pair.
std::vector<std::string> sorted(const Collator& collator, std::vector<std::string> texts)
{
    const auto sign = [](int value) { return (value > 0) - (value < 0); };
    for (const std::string& left : texts)
        for (const std::string& right : texts)
            EXPECT_EQ(sign(collator.compare(left, right)),
                      sign(collator.sortKey(left).compare(collator.sortKey(right))))
                << left << " " << right;
    std::ranges::stable_sort(texts, [&](const std::string& left, const std::string& right) {
        return collator.compare(left, right) < 0;
    });
    return texts;
}

TEST(Collation, DigitsCompareByTheirValue)
{
    EXPECT_THAT(sorted(Collator("en"), {"Font 10", "Font 9", "Font 1", "Font 2b", "Font 2a"}),
                ElementsAre("Font 1", "Font 2a", "Font 2b", "Font 9", "Font 10"));
}

TEST(Collation, CaseAndAccentsCountLeast)
{
    EXPECT_THAT(sorted(Collator("en"), {"Zed", "éa", "Eb", "ea", "Ea", "arial"}),
                ElementsAre("arial", "ea", "Ea", "éa", "Eb", "Zed"));
}

TEST(Collation, LanguagesHaveTheirOwnOrder)
{
    EXPECT_THAT(sorted(Collator("sv_SE"), {"Ånge", "Zed", "Öland", "Arial"}),
                ElementsAre("Arial", "Zed", "Ånge", "Öland"));
    EXPECT_THAT(sorted(Collator("de"), {"Ånge", "Zed", "Öland", "Arial"}),
                ElementsAre("Ånge", "Arial", "Öland", "Zed"));
}

TEST(Collation, UnknownLocaleGivesTheRootOrder)
{
    EXPECT_THAT(sorted(Collator("xx_YY"), {"Zed", "Ånge", "b", "A", "Öland"}),
                ElementsAre("A", "Ånge", "b", "Öland", "Zed"));
    EXPECT_THAT(sorted(Collator("not a locale at all"), {"Zed", "b", "A"}),
                ElementsAre("A", "b", "Zed"));
}

TEST(Collation, UsersLocaleIsTakenWhenNoneIsNamed)
{
    // Whatever the language of the machine, letters come before case.
    EXPECT_THAT(sorted(Collator(), {"b", "C", "a", "Font 10", "Font 9"}),
                ElementsAre("a", "b", "C", "Font 9", "Font 10"));
}

/// Whether a new process whose environment names `language` sorts "Z" before "Ö".
void expectSwedishOrder(const char* language, bool isSwedish)
{
    // ICU asks the environment once, so only a process that has not used it yet will do.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            setenv("LC_ALL", language, 1);
            const Collator collator;
            const bool lettersBeforeCase = collator.compare("a", "B") < 0;
            const bool swedish = collator.compare("Z", "Ö") < 0;
            std::exit(lettersBeforeCase && swedish == isSwedish ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

TEST(CollationDeathTest, UsersLocaleComesFromTheEnvironment)
{
    expectSwedishOrder("sv_SE.UTF-8", true);
    expectSwedishOrder("de_DE.UTF-8", false);
}

TEST(CollationDeathTest, EnvironmentWithoutALanguageGivesTheRootOrder)
{
    expectSwedishOrder("C", false);
    expectSwedishOrder("POSIX", false);
    expectSwedishOrder("C.UTF-8", false);
}

TEST(Collation, EqualTextsCompareEqual)
{
    const Collator collator("en");
    EXPECT_EQ(collator.compare("Foo", "Foo"), 0);
    EXPECT_EQ(collator.compare("", ""), 0);
    EXPECT_EQ(collator.compare("é", "e\u0301"), 0);
    EXPECT_EQ(collator.sortKey("é"), collator.sortKey("e\u0301"));
}

TEST(Collation, EmptyTextComesFirst)
{
    EXPECT_LT(Collator("en").compare("", "a"), 0);
    EXPECT_GT(Collator("en").compare("a", ""), 0);
}

} // namespace
} // namespace quillmark
