#include "model/RowList.h"

#include <gmock/gmock.h>

#include <string>
#include <utility>
#include <vector>

namespace quillmark::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

AuditRow row(std::string name, Verdict verdict)
{
    AuditRow made;
    made.facts.family = std::move(name);
    made.assessment.verdict = verdict;
    return made;
}

const std::vector<AuditRow> rows{
    row("Cedar", Verdict::likelyOK),
    row("brook", Verdict::restricted),
    row("Brook", Verdict::restricted),
    row("Brook", Verdict::likelyOK),
};

TEST(RowList, IsIndexedOnceForAllCopies)
{
    const RowList list(rows);
    const RowList copy = list;
    EXPECT_FALSE(copy.isPrepared());
    list.prepare();
    EXPECT_TRUE(copy.isPrepared());
    EXPECT_EQ(&list.index(), &copy.index());
    EXPECT_NE(&list.index(), &RowList(rows).index());
}

TEST(RowList, ItsIndexHasTheWorstVerdictFirstAndNamesByTheirCharacters)
{
    const RowList list(rows);
    const RowIndex& index = list.index();
    EXPECT_THAT(index.defaultOrder, ElementsAre(2U, 1U, 3U, 0U));
    EXPECT_THAT(index.nameRanks, ElementsAre(1U, 2U, 0U, 0U));
}

TEST(RowList, ItsIndexHasTheNamesAsTheyAreSearched)
{
    const RowList list(rows);
    ASSERT_EQ(list.index().names.size(), 4U);
    EXPECT_THAT(list.index().names[0], testing::HasSubstr(list.index().folding.folded("CEDAR")));
    EXPECT_EQ(list.index().names[2], list.index().names[3]);
}

TEST(RowList, AnEmptyOneHasAnEmptyIndex)
{
    EXPECT_TRUE(RowList().isPrepared());
    EXPECT_THAT(RowList().index().names, IsEmpty());
    EXPECT_THAT(RowList(std::vector<AuditRow>()).index().defaultOrder, IsEmpty());
}

TEST(RowList, IsEqualToAnotherWithTheSameRows)
{
    EXPECT_EQ(RowList(rows), RowList(rows));
    EXPECT_EQ(RowList(), RowList(std::vector<AuditRow>()));
    EXPECT_NE(RowList(rows), RowList());
}

} // namespace
} // namespace quillmark::test
