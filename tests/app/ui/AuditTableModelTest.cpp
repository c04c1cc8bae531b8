#include "ui/AuditTableModel.h"

#include "SampleRows.h"

#include <gmock/gmock.h>

#include <QAbstractItemModelTester>
#include <QPersistentModelIndex>
#include <QSignalSpy>

namespace quillmark::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class AuditTable : public testing::Test {
protected:
    [[nodiscard]] std::vector<std::string> shown(int column = 0) const
    {
        std::vector<std::string> texts;
        for (int row = 0; row < model.rowCount(); ++row)
            texts.push_back(
                model.index(row, column).data(Qt::DisplayRole).toString().toStdString());
        return texts;
    }
    [[nodiscard]] QPersistentModelIndex at(const std::string& name) const
    {
        for (int row = 0; row < model.rowCount(); ++row)
            if (model.at(row).facts.displayName() == name) return model.index(row, 0);
        return {};
    }
    [[nodiscard]] static std::string textOf(const QPersistentModelIndex& index)
    {
        return index.isValid() ? index.data().toString().toStdString() : "gone";
    }
    void sortBy(AuditColumn column, Qt::SortOrder order = Qt::AscendingOrder)
    {
        model.sort(*model.sectionOf(column), order);
    }

    AuditTableModel model;
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};
};

const std::vector<SampleFont> fonts{
    {.name = "cedar", .verdict = Verdict::likelyOK, .license = LicenseKind::ofl},
    {.name = "Dale", .verdict = Verdict::unknown, .filePath = "/f/one.ttf"},
    {.name = "Brook", .verdict = Verdict::unknown, .filePath = "/f/Two.ttf"},
    {.name = "Acme", .verdict = Verdict::restricted, .appleBundled = true},
    {.name = "Elm", .verdict = Verdict::likelyOK, .license = LicenseKind::apache},
    {.name = "Zinc", .verdict = Verdict::restricted},
};

TEST_F(AuditTable, ShowsTheWorstVerdictFirstAndNamesWithinIt)
{
    model.setList(listOf(fonts));
    EXPECT_THAT(shown(), ElementsAre("Acme", "Zinc", "Brook", "Dale", "Elm", "cedar"))
        << "names by their character codes, so capitals first";
    EXPECT_EQ(model.rowSort(), RowSort());
}

TEST_F(AuditTable, IsEmptyWithoutAList)
{
    model.setList(listOf(fonts));
    model.setList(std::nullopt);
    EXPECT_EQ(model.rowCount(), 0);
    EXPECT_EQ(model.columnCount(), 5);
}

TEST_F(AuditTable, ShowsWhatPassesTheFilter)
{
    model.setList(listOf(fonts));
    model.setFilter({.verdict = Verdict::unknown, .source = Source::all, .search = ""});
    EXPECT_THAT(shown(), ElementsAre("Brook", "Dale"));
    model.setFilter({.verdict = {}, .source = Source::all, .search = "E"});
    EXPECT_THAT(shown(), ElementsAre("Acme", "Dale", "Elm", "cedar"));
    model.setFilter({.verdict = {}, .source = Source::apple, .search = ""});
    EXPECT_THAT(shown(), ElementsAre("Acme"));
    model.setFilter({});
    EXPECT_EQ(model.rowCount(), 6);
}

TEST_F(AuditTable, SortsByAColumnAndThenAsByDefault)
{
    model.setList(listOf(fonts));
    sortBy(AuditColumn::font);
    EXPECT_THAT(shown(), ElementsAre("Acme", "Brook", "Dale", "Elm", "Zinc", "cedar"));
    sortBy(AuditColumn::font, Qt::DescendingOrder);
    EXPECT_THAT(shown(), ElementsAre("cedar", "Zinc", "Elm", "Dale", "Brook", "Acme"));
    sortBy(AuditColumn::verdict, Qt::DescendingOrder);
    EXPECT_THAT(shown(), ElementsAre("Elm", "cedar", "Brook", "Dale", "Acme", "Zinc"))
        << "names keep their order within a verdict";
    sortBy(AuditColumn::source);
    EXPECT_THAT(shown(4), ElementsAre("", "", "", "Came with macOS", "one.ttf", "Two.ttf"));
    EXPECT_THAT(shown(), ElementsAre("Zinc", "Elm", "cedar", "Acme", "Dale", "Brook"));
}

TEST_F(AuditTable, SortsPagesByTheirNumbers)
{
    model.setList(documentOf({
        documentRow({.name = "A"}, EmbeddedProgram::cff, {10}),
        documentRow({.name = "B"}, EmbeddedProgram::cff, {2, 3}),
        documentRow({.name = "C"}, EmbeddedProgram::cff, {2}),
    }));
    sortBy(AuditColumn::pages);
    EXPECT_THAT(shown(), ElementsAre("C", "B", "A"));
}

TEST_F(AuditTable, KeepsTheListsOrderWhereNothingElseDecides)
{
    model.setList(listOf({
        {.name = "A", .postScriptName = "second"},
        {.name = "A", .postScriptName = "first"},
        {.name = "A", .postScriptName = "third"},
    }));
    const auto names = [&] {
        std::vector<std::string> all;
        for (int row = 0; row < model.rowCount(); ++row)
            all.push_back(model.at(row).facts.postScriptName);
        return all;
    };
    EXPECT_THAT(names(), ElementsAre("second", "first", "third"));
    sortBy(AuditColumn::license, Qt::DescendingOrder);
    EXPECT_THAT(names(), ElementsAre("second", "first", "third"));
}

TEST_F(AuditTable, IndexesStayWithTheirFontsWhenOrderOrFilterChanges)
{
    model.setList(listOf(fonts));
    const auto dale = at("Dale");
    const auto zinc = at("Zinc");
    sortBy(AuditColumn::font, Qt::DescendingOrder);
    EXPECT_EQ(textOf(dale), "Dale");
    EXPECT_EQ(dale.row(), 3);
    model.setFilter({.verdict = Verdict::unknown, .source = Source::all, .search = ""});
    EXPECT_EQ(textOf(dale), "Dale");
    EXPECT_EQ(dale.row(), 0);
    EXPECT_EQ(textOf(zinc), "gone");
}

TEST_F(AuditTable, IndexesStayWithTheirFontsWhenTheListIsReadAgain)
{
    model.setList(listOf(fonts));
    const auto dale = at("Dale");
    const auto zinc = at("Zinc");
    auto fresh = fonts;
    fresh.pop_back(); // Zinc
    fresh.insert(fresh.begin(), {.name = "Birch", .verdict = Verdict::unknown});
    const QSignalSpy resets(&model, &QAbstractItemModel::modelReset);
    EXPECT_EQ(model.setList(listOf(fresh)), AuditTableModel::Change::sameSource);
    EXPECT_EQ(resets.count(), 0);
    EXPECT_THAT(shown(), ElementsAre("Acme", "Birch", "Brook", "Dale", "Elm", "cedar"));
    EXPECT_EQ(textOf(dale), "Dale");
    EXPECT_EQ(textOf(zinc), "gone");
}

TEST_F(AuditTable, FontsWithTheSameIdAreToldApartWhenTheListIsReadAgain)
{
    const auto twin = [](int page) {
        return documentRow({.name = "Twin"}, EmbeddedProgram::cff, {page});
    };
    model.setList(documentOf({twin(1), twin(2), twin(3)}));
    const QPersistentModelIndex second = model.index(1, 0);
    const QPersistentModelIndex third = model.index(2, 0);
    model.setList(
        documentOf({documentRow({.name = "Acme"}, EmbeddedProgram::cff, {1}), twin(1), twin(2)}));
    EXPECT_EQ(second.row(), 2);
    EXPECT_FALSE(third.isValid());
}

TEST_F(AuditTable, AListOfAnotherSourceIsNewThroughout)
{
    model.setList(listOf(fonts));
    const auto dale = at("Dale");
    const QSignalSpy resets(&model, &QAbstractItemModel::modelReset);
    EXPECT_EQ(model.setList(AuditList::ofFolder({"/fonts", RowList(rowsOf(fonts))})),
              AuditTableModel::Change::otherSource);
    EXPECT_EQ(resets.count(), 1);
    EXPECT_FALSE(dale.isValid());
}

TEST_F(AuditTable, ADocumentHasAColumnMore)
{
    model.setList(listOf(fonts));
    EXPECT_EQ(model.columnCount(), 5);
    EXPECT_EQ(model.headerData(4, Qt::Horizontal, Qt::DisplayRole).toString().toStdString(),
              "Source");
    model.setList(documentOf({}));
    EXPECT_EQ(model.columnCount(), 6);
    EXPECT_EQ(model.headerData(4, Qt::Horizontal, Qt::DisplayRole).toString().toStdString(),
              "Pages");
    EXPECT_EQ(model.headerData(5, Qt::Horizontal, Qt::DisplayRole).toString().toStdString(),
              "In the PDF");
}

TEST_F(AuditTable, KeepsTheOrderForAnotherSourceUnlessItLacksTheColumn)
{
    model.setList(documentOf({}));
    sortBy(AuditColumn::font, Qt::DescendingOrder);
    model.setList(listOf(fonts));
    EXPECT_EQ(model.rowSort(), (RowSort{AuditColumn::font, Qt::DescendingOrder}));
    EXPECT_EQ(shown().front(), "cedar");
    model.setList(documentOf({}));
    sortBy(AuditColumn::pages);
    model.setList(listOf(fonts));
    EXPECT_EQ(model.rowSort(), RowSort());
    EXPECT_EQ(shown().front(), "Acme");
}

TEST_F(AuditTable, VerdictsAreSpokenInFull)
{
    model.setList(listOf({{.name = "A", .verdict = Verdict::likelyOK}}));
    const QModelIndex verdict = model.index(0, *model.sectionOf(AuditColumn::verdict));
    EXPECT_EQ(verdict.data(Qt::DisplayRole).toString().toStdString(), "Likely OK");
    EXPECT_EQ(verdict.data(Qt::AccessibleTextRole).toString().toStdString(), "Likely OK to embed");
}

TEST_F(AuditTable, KnowsWhereAFontStandsInTheListAndInTheTable)
{
    model.setList(listOf(fonts));
    model.setFilter({.verdict = Verdict::unknown, .source = Source::all, .search = ""});
    EXPECT_EQ(model.positionOf(0), 2U);
    EXPECT_EQ(model.rowOf(2), 0);
    EXPECT_EQ(model.rowOf(0), -1);
    EXPECT_THAT(shown(), ElementsAre("Brook", "Dale"));
}

TEST_F(AuditTable, SurvivesAFilterThatNothingPasses)
{
    model.setList(listOf(fonts));
    const auto dale = at("Dale");
    model.setFilter({.verdict = {}, .source = Source::all, .search = "nothing is called that"});
    EXPECT_THAT(shown(), IsEmpty());
    EXPECT_FALSE(dale.isValid());
    model.setFilter({});
    EXPECT_EQ(model.rowCount(), 6);
}

} // namespace
} // namespace quillmark::test
