#include "pdf/PDFFontInfo.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace quillmark {
namespace {

PDFFontInfo infoWith(EmbeddedProgram program, bool subset)
{
    PDFFontInfo info;
    info.program = program;
    info.subset = subset;
    return info;
}

PDFFontInfo infoOnPages(std::vector<int> pages)
{
    PDFFontInfo info;
    info.pages = std::move(pages);
    return info;
}

TEST(EmbeddedText, IsTheLabelOfTheProgram)
{
    EXPECT_EQ(embeddedText(infoWith(EmbeddedProgram::type1, false)), "Embedded (Type 1)");
    EXPECT_EQ(embeddedText(infoWith(EmbeddedProgram::notEmbedded, false)), "Not embedded");
}

TEST(EmbeddedText, SaysThatAFontIsASubset)
{
    EXPECT_EQ(embeddedText(infoWith(EmbeddedProgram::cff, true)), "Embedded (CFF), subset");
}

TEST(PageList, JoinsThePageNumbersWithCommaAndSpace)
{
    EXPECT_EQ(pageList(infoOnPages({1, 3, 12})), "1, 3, 12");
}

TEST(PageList, OfOnePageIsItsNumber)
{
    EXPECT_EQ(pageList(infoOnPages({7})), "7");
}

TEST(PageList, OfAFontThatIsNeverUsedIsEmpty)
{
    EXPECT_EQ(pageList({}), "");
}

struct PagesCase {
    std::vector<int> pages;
    std::string text;
};

TEST(PageRanges, JoinPagesThatFollowEachOther)
{
    const std::vector<PagesCase> cases{
        {{}, ""},
        {{1}, "1"},
        {{1, 2}, "1-2"},
        {{1, 2, 3, 7}, "1-3, 7"},
        {{2, 4, 6}, "2, 4, 6"},
        {{1, 3, 4, 5, 9, 10}, "1, 3-5, 9-10"},
    };
    for (const PagesCase& test : cases)
        EXPECT_EQ(pageRanges(infoOnPages(test.pages)), test.text);
}

} // namespace
} // namespace quillmark
