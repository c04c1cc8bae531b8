#include "ui/FontListView.h"

#include "SampleRows.h"
#include "support/TemporaryFolder.h"
#include "ui/AuditTableModel.h"
#include "ui/CellDelegate.h"
#include "ui/EmptyState.h"
#include "ui/FilterBar.h"
#include "ui/FilterChip.h"
#include "ui/FontTable.h"
#include "ui/VerdictBadge.h"

#include <gmock/gmock.h>

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QHelpEvent>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QPaintEvent>
#include <QRegion>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QToolTip>
#include <QVBoxLayout>

namespace quillmark::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::vector<SampleFont> fonts{
    {.name = "Acme Bold", .verdict = Verdict::restricted, .appleBundled = true},
    {.name = "Brook", .verdict = Verdict::restricted, .manufacturer = "The abcde foundry"},
    {.name = "Cedar", .verdict = Verdict::unknown},
    {.name = "Dale Bold", .verdict = Verdict::unknown, .appleBundled = true},
    {.name = "Elm", .verdict = Verdict::likelyOK},
};

std::vector<SampleFont> manyFonts(int count)
{
    std::vector<SampleFont> many;
    for (int i = 0; i < count; ++i)
        many.push_back({.name = "Font " + std::to_string(1000 + i)});
    return many;
}

class FontList : public testing::Test {
protected:
    FontList()
    {
        view.resize(900, 400);
        view.setList(listOf(fonts));
        view.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&view));
    }

    [[nodiscard]] std::vector<std::string> shown() const
    {
        std::vector<std::string> names;
        for (int row = 0; row < model().rowCount(); ++row)
            names.push_back(model().at(row).facts.displayName());
        return names;
    }
    [[nodiscard]] AuditTableModel& model() const { return *view.findChild<AuditTableModel*>(); }
    [[nodiscard]] FontTable& table() const { return *view.findChild<FontTable*>(); }
    [[nodiscard]] FilterBar& filters() const { return *view.findChild<FilterBar*>(); }
    [[nodiscard]] QComboBox& picker() const { return *view.findChild<QComboBox*>(); }
    [[nodiscard]] EmptyState& emptyState() const
    {
        return *view.findChild<EmptyState*>({}, Qt::FindDirectChildrenOnly);
    }
    /// What stands over the table when no row passes the filter.
    [[nodiscard]] EmptyState& noneShown() const
    {
        return *table().parentWidget()->findChild<EmptyState*>();
    }
    [[nodiscard]] FilterChip& chip(const std::string& word) const
    {
        for (FilterChip* const each : view.findChildren<FilterChip*>())
            if (each->text().toStdString().starts_with(word)) return *each;
        throw std::out_of_range(word);
    }
    [[nodiscard]] std::string selected() const
    {
        const auto row = view.selectedRow();
        return row ? row->facts.displayName() : "none";
    }
    /// What is painted as selected.
    [[nodiscard]] std::vector<std::string> selectedInTable() const
    {
        std::vector<std::string> names;
        for (const QModelIndex& index : table().selectionModel()->selectedRows())
            names.push_back(index.data().toString().toStdString());
        return names;
    }
    void select(const std::string& name) const
    {
        for (int row = 0; row < model().rowCount(); ++row)
            if (model().at(row).facts.displayName() == name) return table().selectRow(row);
        FAIL() << name;
    }
    void clickHeader(AuditColumn column) const
    {
        QHeaderView* const header = table().horizontalHeader();
        const int section = *model().sectionOf(column);
        const QPoint at(header->sectionViewportPosition(section) + 20, header->height() / 2);
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, at);
    }
    [[nodiscard]] static QMenu* openMenu()
    {
        return qobject_cast<QMenu*>(QApplication::activePopupWidget());
    }
    [[nodiscard]] int widthOf(AuditColumn column) const
    {
        return table().columnWidth(*model().sectionOf(column));
    }

    FontListView view;
};

TEST_F(FontList, BeginsWithAllFontsAndTheWorstVerdictFirst)
{
    EXPECT_THAT(shown(), ElementsAre("Acme Bold", "Brook", "Cedar", "Dale Bold", "Elm"));
    EXPECT_EQ(filters().verdict(), std::nullopt);
    EXPECT_EQ(filters().source(), Source::all);
    EXPECT_EQ(view.search(), QString());
    EXPECT_EQ(selected(), "none");
    EXPECT_EQ(model().rowSort(), RowSort());
}

TEST_F(FontList, ChipsShowTheirWordsAndTheNumbersOfTheWholeList)
{
    view.setSearch(QStringLiteral("bold"));
    std::vector<std::string> texts;
    for (const FilterChip* const each : view.findChildren<FilterChip*>())
        texts.push_back(each->text().toStdString());
    EXPECT_THAT(texts, ElementsAre("All 5", "Restricted 2", "Unknown 2", "Likely OK 1"));
}

TEST_F(FontList, AChipShowsItsVerdictOnlyAndAllShowsAllAgain)
{
    QTest::mouseClick(&chip("Restricted"), Qt::LeftButton);
    EXPECT_THAT(shown(), ElementsAre("Acme Bold", "Brook"));
    EXPECT_TRUE(chip("Restricted").isChecked());
    EXPECT_FALSE(chip("All").isChecked());
    QTest::mouseClick(&chip("Likely OK"), Qt::LeftButton);
    EXPECT_THAT(shown(), ElementsAre("Elm"));
    QTest::mouseClick(&chip("All"), Qt::LeftButton);
    EXPECT_EQ(shown().size(), 5U);
    EXPECT_TRUE(chip("All").isChecked());
}

TEST_F(FontList, ArrowKeysMoveAmongTheChips)
{
    view.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&view));
    chip("All").setFocus(Qt::TabFocusReason);
    QTest::keyClick(&chip("All"), Qt::Key_Right);
    EXPECT_TRUE(chip("Restricted").hasFocus());
    QTest::keyClick(&chip("Restricted"), Qt::Key_Space);
    EXPECT_TRUE(chip("Restricted").isChecked());
    EXPECT_THAT(shown(), ElementsAre("Acme Bold", "Brook"));
    QTest::keyClick(&chip("Restricted"), Qt::Key_Left);
    EXPECT_TRUE(chip("All").hasFocus());
}

TEST_F(FontList, AChipIsSpokenAsOneOfSeveralWithWordAndNumber)
{
    QAccessibleInterface* const spoken = QAccessible::queryAccessibleInterface(&chip("Restricted"));
    ASSERT_TRUE(spoken);
    EXPECT_EQ(spoken->text(QAccessible::Name).toStdString(), "Restricted 2");
    EXPECT_EQ(spoken->role(), QAccessible::RadioButton);
    EXPECT_TRUE(spoken->state().checkable);
}

TEST_F(FontList, AClickOnAChipLeavesTheKeyboardWhereItWas)
{
    QLineEdit* const field = new QLineEdit(&view);
    field->show();
    view.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&view));
    field->setFocus();
    QTest::mouseClick(&chip("Unknown"), Qt::LeftButton);
    EXPECT_TRUE(field->hasFocus());
}

TEST_F(FontList, ThePickerIsLabelledShowAndOffersTheThreeSources)
{
    QLabel* label = nullptr;
    for (QLabel* const each : view.findChildren<QLabel*>())
        if (each->buddy() == &picker()) label = each;
    ASSERT_TRUE(label);
    EXPECT_EQ(label->text().toStdString(), "Show");
    std::vector<std::string> items;
    for (int i = 0; i < picker().count(); ++i)
        items.push_back(picker().itemText(i).toStdString());
    EXPECT_THAT(items, ElementsAre("All fonts", "Added by you", "Came with macOS"));
    picker().setCurrentIndex(1);
    EXPECT_THAT(shown(), ElementsAre("Brook", "Cedar", "Elm"));
    picker().setCurrentIndex(2);
    EXPECT_THAT(shown(), ElementsAre("Acme Bold", "Dale Bold"));
}

TEST_F(FontList, TheRestrictedChipAndTheSystemsFontsTogetherLeaveThoseThatAreBoth)
{
    QTest::mouseClick(&chip("Restricted"), Qt::LeftButton);
    picker().setCurrentIndex(static_cast<int>(Source::apple));
    EXPECT_THAT(shown(), ElementsAre("Acme Bold"));
}

TEST_F(FontList, ADocumentsListHasNoPicker)
{
    EXPECT_TRUE(picker().isVisible());
    view.setList(documentOf({documentRow({.name = "A"}, EmbeddedProgram::cff, {1})}));
    EXPECT_FALSE(picker().isVisible());
    view.setList(listOf(fonts));
    EXPECT_TRUE(picker().isVisible());
}

TEST_F(FontList, PagesAreAColumnOfADocumentsListOnlyAndTheLastOneIsCalledDifferentlyThere)
{
    const auto titles = [&] {
        std::vector<std::string> all;
        for (int section = 0; section < model().columnCount(); ++section)
            all.push_back(model()
                              .headerData(section, Qt::Horizontal, Qt::DisplayRole)
                              .toString()
                              .toStdString());
        return all;
    };
    EXPECT_THAT(titles(),
                ElementsAre("Font", "Verdict", "License in the font", "Embedding bits", "Source"));
    view.setList(documentOf({documentRow({.name = "A"}, EmbeddedProgram::cff, {1})}));
    EXPECT_THAT(titles(), ElementsAre("Font", "Verdict", "License in the font", "Embedding bits",
                                      "Pages", "In the PDF"));
}

TEST_F(FontList, SearchesWhateverTheCase)
{
    view.setSearch(QStringLiteral("bold"));
    EXPECT_THAT(shown(), ElementsAre("Acme Bold", "Dale Bold"));
    view.setSearch(QStringLiteral("ABCD"));
    EXPECT_THAT(shown(), ElementsAre("Brook"));
    view.setSearch({});
    EXPECT_EQ(shown().size(), 5U);
}

TEST_F(FontList, WithoutRowsSaysWhatToDo)
{
    EXPECT_FALSE(emptyState().isVisible());
    view.setList(AuditList::ofFolder({"/fonts", {}}));
    EXPECT_TRUE(emptyState().isVisible());
    EXPECT_FALSE(table().isVisible());
    EXPECT_EQ(emptyState().title().toStdString(), "No fonts found");
    EXPECT_EQ(emptyState().description().toStdString(),
              "Add font files to this folder, then rescan.");
}

TEST_F(FontList, WithoutInstalledFontsSaysTheSameAsForAFolder)
{
    view.setList(listOf({}));
    EXPECT_TRUE(emptyState().isVisible());
    EXPECT_EQ(emptyState().title().toStdString(), "No fonts found");
}

TEST_F(FontList, ADocumentWithoutFontsSaysWhyThatMayBe)
{
    view.setList(documentOf({}));
    EXPECT_TRUE(emptyState().isVisible());
    EXPECT_EQ(emptyState().title().toStdString(), "No fonts in this PDF");
    EXPECT_EQ(emptyState().description().toStdString(),
              "It may be all images, or its text was turned into outlines.");
}

TEST_F(FontList, AFilterThatNothingPassesLeavesTheTableAndSaysSoWhereTheRowsWere)
{
    EXPECT_FALSE(noneShown().isVisible());
    view.setSearch(QStringLiteral("nothing is called that"));
    EXPECT_THAT(shown(), IsEmpty());
    EXPECT_TRUE(table().isVisible());
    EXPECT_FALSE(emptyState().isVisible());
    ASSERT_TRUE(noneShown().isVisible());
    QAccessibleInterface* const spoken = QAccessible::queryAccessibleInterface(&noneShown());
    ASSERT_TRUE(spoken);
    EXPECT_EQ(spoken->text(QAccessible::Name).toStdString(),
              "No fonts match\nChange the search or the filters to see more.");
    view.setSearch(QStringLiteral("brook"));
    EXPECT_FALSE(noneShown().isVisible());
}

TEST_F(FontList, ThatNothingPassesIsSaidForEachOfTheFiltersAndInBothKindsOfLists)
{
    auto some = fonts;
    some.pop_back(); // the only one that is likely OK
    view.setList(listOf(some));
    QTest::mouseClick(&chip("Likely OK"), Qt::LeftButton);
    EXPECT_TRUE(noneShown().isVisible());
    QTest::mouseClick(&chip("All"), Qt::LeftButton);
    EXPECT_FALSE(noneShown().isVisible());
    view.setList(listOf({{.name = "Brook"}}));
    picker().setCurrentIndex(static_cast<int>(Source::apple));
    EXPECT_TRUE(noneShown().isVisible());
    view.setList(documentOf({documentRow({.name = "A"}, EmbeddedProgram::cff, {1})}));
    EXPECT_FALSE(noneShown().isVisible()) << "another source begins without filters";
    QTest::mouseClick(&chip("Restricted"), Qt::LeftButton);
    EXPECT_TRUE(noneShown().isVisible());
    view.setList(documentOf({}));
    EXPECT_FALSE(noneShown().isVisible()) << "a list without fonts has its own words";
    EXPECT_TRUE(emptyState().isVisible());
}

TEST_F(FontList, ThatNothingPassesStandsBelowTheHeadersInAWindowOfAnySize)
{
    view.setSearch(QStringLiteral("nothing is called that"));
    for (const QSize size : {QSize(900, 400), QSize(1400, 700), QSize(460, 300)}) {
        view.resize(size);
        QCoreApplication::processEvents();
        const QWidget& rows = *table().viewport();
        EXPECT_EQ(QRect(noneShown().mapToGlobal(QPoint()), noneShown().size()),
                  QRect(rows.mapToGlobal(QPoint()), rows.size()));
    }
}

TEST_F(FontList, ATableWithoutRowsShowsThatItHasTheKeyboard)
{
    view.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&view));
    view.setSearch(QStringLiteral("nothing is called that"));
    view.focusTable();
    ASSERT_TRUE(table().hasFocus());
    const QImage with = table().viewport()->grab().toImage();
    table().clearFocus();
    EXPECT_NE(with, table().viewport()->grab().toImage());
}

TEST_F(FontList, TheSelectedRowIsCopiedAsItStandsInTheTable)
{
    QApplication::clipboard()->setText(QStringLiteral("before"));
    table().copy();
    EXPECT_EQ(QApplication::clipboard()->text().toStdString(), "before") << "nothing is selected";
    clickHeader(AuditColumn::font);
    clickHeader(AuditColumn::font); // from the last name on
    select("Brook");
    for (const QKeySequence& keys : QKeySequence::keyBindings(QKeySequence::Copy)) {
        QApplication::clipboard()->clear();
        QTest::keySequence(&table(), keys);
        EXPECT_EQ(QApplication::clipboard()->text().toStdString(),
                  "Brook\tRestricted\tNo license text\tNo OS/2 table\t")
            << keys.toString().toStdString();
    }
    EXPECT_TRUE(QApplication::clipboard()->mimeData()->html().isEmpty());
}

TEST_F(FontList, ARowThatTheFilterKeepsAwayIsNotCopied)
{
    select("Brook");
    QApplication::clipboard()->setText(QStringLiteral("before"));
    view.setSearch(QStringLiteral("elm"));
    table().copy();
    EXPECT_EQ(QApplication::clipboard()->text().toStdString(), "before");
}

TEST_F(FontList, TellsWhichRowIsSelected)
{
    QSignalSpy changes(&view, &FontListView::selectedRowChanged);
    select("Cedar");
    EXPECT_EQ(changes.count(), 1);
    EXPECT_EQ(selected(), "Cedar");
    table().setFocus();
    QTest::keyClick(&table(), Qt::Key_Down);
    EXPECT_EQ(selected(), "Dale Bold");
    EXPECT_EQ(changes.count(), 2);
}

TEST_F(FontList, TheSelectionComesBackWithItsFont)
{
    select("Cedar");
    QSignalSpy changes(&view, &FontListView::selectedRowChanged);
    view.setSearch(QStringLiteral("bold"));
    EXPECT_EQ(selected(), "none");
    EXPECT_THAT(selectedInTable(), IsEmpty());
    EXPECT_EQ(changes.count(), 1);
    view.setSearch({});
    EXPECT_EQ(selected(), "Cedar");
    EXPECT_THAT(selectedInTable(), ElementsAre("Cedar"));
    EXPECT_EQ(changes.count(), 2);
}

TEST_F(FontList, TheSelectionStaysWithItsFontInAnotherOrder)
{
    select("Dale Bold");
    QSignalSpy changes(&view, &FontListView::selectedRowChanged);
    clickHeader(AuditColumn::font);
    clickHeader(AuditColumn::verdict);
    clickHeader(AuditColumn::font);
    EXPECT_EQ(selected(), "Dale Bold");
    EXPECT_THAT(selectedInTable(), ElementsAre("Dale Bold"));
    EXPECT_EQ(changes.count(), 0);
}

TEST_F(FontList, SelectionFiltersAndSearchSurviveARescan)
{
    select("Dale Bold");
    view.setSearch(QStringLiteral("e"));
    filters().setVerdict(Verdict::unknown);
    QSignalSpy changes(&view, &FontListView::selectedRowChanged);
    auto fresh = fonts;
    fresh.insert(fresh.begin(), {.name = "Birch e", .verdict = Verdict::unknown});
    view.setList(listOf(fresh));
    EXPECT_THAT(shown(), ElementsAre("Birch e", "Cedar", "Dale Bold"));
    EXPECT_EQ(selected(), "Dale Bold");
    EXPECT_THAT(selectedInTable(), ElementsAre("Dale Bold"));
    EXPECT_EQ(changes.count(), 0);
    EXPECT_EQ(view.search().toStdString(), "e");
}

TEST_F(FontList, ARescanThatChangesTheSelectedFontTellsSo)
{
    select("Cedar");
    QSignalSpy changes(&view, &FontListView::selectedRowChanged);
    auto fresh = fonts;
    fresh[2].verdict = Verdict::likelyOK;
    view.setList(listOf(fresh));
    EXPECT_EQ(changes.count(), 1);
    EXPECT_EQ(view.selectedRow()->assessment.verdict, Verdict::likelyOK);
}

TEST_F(FontList, ARescanThatLosesTheSelectedFontSelectsNone)
{
    select("Elm");
    QSignalSpy changes(&view, &FontListView::selectedRowChanged);
    auto fresh = fonts;
    fresh.pop_back();
    view.setList(listOf(fresh));
    EXPECT_EQ(selected(), "none");
    EXPECT_EQ(changes.count(), 1);
}

TEST_F(FontList, FontsThatShareAnIdAreSelectedOneByOneAndStaySoAfterARescan)
{
    const auto twin = [](int page) {
        return documentRow({.name = "Twin"}, EmbeddedProgram::cff, {page});
    };
    view.setList(documentOf({twin(1), twin(2), twin(3)}));
    table().selectRow(1);
    EXPECT_THAT(view.selectedRow()->pdf->pages, ElementsAre(2));
    EXPECT_EQ(table().selectionModel()->selectedRows().size(), 1);
    view.setList(documentOf(
        {documentRow({.name = "Acme"}, EmbeddedProgram::cff, {1}), twin(1), twin(2), twin(3)}));
    EXPECT_THAT(view.selectedRow()->pdf->pages, ElementsAre(2));
    EXPECT_EQ(table().selectionModel()->selectedRows().front().row(), 2);
}

TEST_F(FontList, ScrollingSurvivesARescan)
{
    auto many = manyFonts(500);
    view.setList(listOf(many));
    QCoreApplication::processEvents();
    table().verticalScrollBar()->setValue(200 * table().rowHeight(0));
    const std::string top = model().at(table().topRow()).facts.displayName();
    many.erase(many.begin() + 10, many.begin() + 30);
    view.setList(listOf(many));
    QCoreApplication::processEvents();
    EXPECT_EQ(model().at(table().topRow()).facts.displayName(), top);
}

TEST_F(FontList, ARescanDoesNotScrollToASelectionThatWasOutOfView)
{
    auto many = manyFonts(500);
    view.setList(listOf(many));
    select("Font 1000");
    table().verticalScrollBar()->setValue(200 * table().rowHeight(0));
    const std::string top = model().at(table().topRow()).facts.displayName();
    many.pop_back();
    view.setList(listOf(many));
    QCoreApplication::processEvents();
    EXPECT_EQ(model().at(table().topRow()).facts.displayName(), top);
    EXPECT_EQ(selected(), "Font 1000");
}

TEST_F(FontList, AnotherSourceStartsWithoutFiltersAndKeepsTheOrder)
{
    select("Cedar");
    view.setSearch(QStringLiteral("e"));
    filters().setVerdict(Verdict::unknown);
    filters().setSource(Source::added);
    clickHeader(AuditColumn::font);
    QSignalSpy searches(&view, &FontListView::searchChanged);
    view.setList(AuditList::ofFolder({"/fonts", RowList(rowsOf(fonts))}));
    EXPECT_EQ(searches.count(), 1);
    EXPECT_EQ(view.search(), QString());
    EXPECT_EQ(filters().verdict(), std::nullopt);
    EXPECT_EQ(filters().source(), Source::all);
    EXPECT_EQ(selected(), "none");
    EXPECT_EQ(shown().size(), 5U);
    EXPECT_EQ(model().rowSort().column, AuditColumn::font);
}

TEST_F(FontList, AClickOnAHeaderSortsByItAndAnotherTurnsTheOrderRound)
{
    EXPECT_EQ(table().horizontalHeader()->sortIndicatorSection(), 1);
    EXPECT_EQ(table().horizontalHeader()->sortIndicatorOrder(), Qt::AscendingOrder);
    clickHeader(AuditColumn::font);
    EXPECT_EQ(model().rowSort(), (RowSort{AuditColumn::font, Qt::AscendingOrder}));
    clickHeader(AuditColumn::font);
    EXPECT_EQ(model().rowSort(), (RowSort{AuditColumn::font, Qt::DescendingOrder}));
    EXPECT_EQ(shown().front(), "Elm");
}

TEST_F(FontList, ALetterJumpsToTheNextNameWhicheverColumnWasClicked)
{
    QTest::mouseClick(table().viewport(), Qt::LeftButton, {},
                      table().visualRect(model().index(0, 2)).center());
    EXPECT_EQ(selected(), "Acme Bold");
    QTest::keyClick(&table(), Qt::Key_D);
    EXPECT_EQ(selected(), "Dale Bold");
}

TEST_F(FontList, HomeAndEndGoToTheEndsOfTheList)
{
    select("Cedar");
    QTest::keyClick(&table(), Qt::Key_End);
    EXPECT_EQ(selected(), "Elm");
    QTest::keyClick(&table(), Qt::Key_Home);
    EXPECT_EQ(selected(), "Acme Bold");
}

TEST_F(FontList, TabLeavesTheTable)
{
    select("Cedar");
    QLineEdit* const field = new QLineEdit(&view);
    field->show();
    QWidget::setTabOrder(&table(), field);
    view.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&view));
    view.focusTable();
    ASSERT_TRUE(table().hasFocus());
    QTest::keyClick(&table(), Qt::Key_Tab);
    EXPECT_TRUE(field->hasFocus());
}

TEST_F(FontList, ColumnsKeepToTheirSmallestAndLargestWidths)
{
    table().setColumnWidth(0, 10);
    EXPECT_EQ(widthOf(AuditColumn::font), 160);
    table().setColumnWidth(1, 10);
    EXPECT_EQ(widthOf(AuditColumn::verdict), std::max(96, VerdictDelegate::neededWidth()));
    table().setColumnWidth(1, 400);
    EXPECT_EQ(widthOf(AuditColumn::verdict), std::max(140, VerdictDelegate::neededWidth()));
    table().setColumnWidth(4, 1);
    EXPECT_EQ(widthOf(AuditColumn::source), 100);
}

TEST_F(FontList, ColumnsFillTheTableAndShrinkWithIt)
{
    const auto total = [&] { return table().horizontalHeader()->length(); };
    EXPECT_EQ(total(), table().viewport()->width());
    view.resize(1400, 400);
    EXPECT_EQ(total(), table().viewport()->width());
    EXPECT_GT(widthOf(AuditColumn::font), 230);
    EXPECT_LE(widthOf(AuditColumn::verdict), 140);
    view.resize(700, 400);
    EXPECT_EQ(total(), table().viewport()->width());
    EXPECT_GE(widthOf(AuditColumn::font), 160);
    view.resize(460, 400);
    EXPECT_GT(total(), table().viewport()->width()) << "scrolls sideways";
    EXPECT_EQ(widthOf(AuditColumn::license), 120);
}

TEST_F(FontList, TheLastColumnTakesUpWhatADraggedOneLeaves)
{
    const int license = widthOf(AuditColumn::license);
    table().setColumnWidth(0, 300);
    EXPECT_EQ(widthOf(AuditColumn::font), 300);
    EXPECT_EQ(widthOf(AuditColumn::license), license);
    EXPECT_EQ(table().horizontalHeader()->length(), table().viewport()->width());
}

TEST_F(FontList, WidthsAndOrderAreRememberedFromOneRunToTheNext)
{
    table().setColumnWidth(0, 300);
    const int source = widthOf(AuditColumn::source);
    clickHeader(AuditColumn::license);
    const QByteArray saved = view.saveColumns();

    FontListView next;
    next.resize(view.size());
    next.setList(listOf(fonts));
    next.restoreColumns(saved);
    next.show();
    auto& columns = *next.findChild<FontTable*>();
    EXPECT_EQ(columns.columnWidth(0), 300);
    EXPECT_EQ(columns.columnWidth(4), source);
    EXPECT_EQ(next.findChild<AuditTableModel*>()->rowSort().column, AuditColumn::license);
    EXPECT_EQ(columns.horizontalHeader()->sortIndicatorSection(), 2);
}

TEST_F(FontList, DamagedMemoriesOfWidthsChangeNothingThatMatters)
{
    const QByteArray saved = view.saveColumns();
    view.restoreColumns({});
    view.restoreColumns(QByteArray("nonsense"));
    view.restoreColumns(saved.left(saved.size() - 1));
    EXPECT_EQ(view.saveColumns(), saved);
    QByteArray wild = saved;
    for (qsizetype i = 12; i < wild.size(); ++i)
        wild[i] = '\x7F';
    view.restoreColumns(wild);
    EXPECT_LE(widthOf(AuditColumn::verdict), std::max(140, VerdictDelegate::neededWidth()));
    EXPECT_LE(widthOf(AuditColumn::font), 4000);
}

TEST_F(FontList, RowsAreAsHighAsTheFontAsksForAndNeverCutABadge)
{
    EXPECT_GE(table().rowHeight(0), verdictBadgeSize(Verdict::unknown, BadgeSize::small).height());
    EXPECT_EQ(table().rowHeight(0), CellDelegate::rowHeight());
    const QFont before = QApplication::font();
    QFont large = before;
    large.setPointSizeF(before.pointSizeF() * 2);
    QApplication::setFont(large);
    QCoreApplication::processEvents();
    EXPECT_EQ(table().rowHeight(0), CellDelegate::rowHeight());
    EXPECT_GT(widthOf(AuditColumn::verdict),
              verdictBadgeSize(Verdict::likelyOK, BadgeSize::small).width());
    QApplication::setFont(before);
}

TEST_F(FontList, ASelectedRowsBadgeStandsOnAPlateOfTheTablesGround)
{
    select("Cedar");
    const QImage image = table().viewport()->grab().toImage();
    const QRect cell = table().visualRect(model().index(2, 1));
    const QColor capsule =
        image.pixelColor(cell.left() + CellDelegate::margin + 5, cell.center().y());
    EXPECT_GT(capsule.red(), 240) << "the tint on white, not on the selection";
    EXPECT_EQ(image.pixelColor(cell.left() + 3, cell.center().y()),
              table().palette().color(QPalette::Highlight));
}

TEST_F(FontList, ASelectedRowShowsThatTheTableHasTheKeyboard)
{
    select("Cedar");
    const auto row = [this] {
        const QRect cell = table().visualRect(model().index(2, 0));
        return table().viewport()->grab(cell).toImage();
    };
    view.focusTable();
    ASSERT_TRUE(QTest::qWaitFor([this] { return table().hasFocus(); }));
    const QImage with = row();
    table().clearFocus();
    EXPECT_NE(with, row());
}

/// What a widget has drawn anew.
class PaintedRegion final : public QObject {
public:
    explicit PaintedRegion(QWidget& widget) { widget.installEventFilter(this); }
    QRegion region;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Paint) region += static_cast<QPaintEvent*>(event)->region();
        return QObject::eventFilter(watched, event);
    }
};

TEST_F(FontList, TheRowThatTheKeyboardLeavesIsDrawnAnew)
{
    view.focusTable();
    table().selectionModel()->setCurrentIndex(model().index(0, 0), QItemSelectionModel::NoUpdate);
    QTest::qWait(50);
    PaintedRegion painted(*table().viewport());
    QTest::keyClick(&table(), Qt::Key_Down);
    const QRect end = table().visualRect(model().index(0, model().columnCount() - 1));
    EXPECT_TRUE(QTest::qWaitFor([&] { return painted.region.contains(end.center()); }));
}

TEST_F(FontList, VerdictsAreSpokenInFullAndTheTableHasAName)
{
    QAccessibleInterface* const spoken = QAccessible::queryAccessibleInterface(&table());
    ASSERT_TRUE(spoken);
    EXPECT_EQ(spoken->text(QAccessible::Name).toStdString(), "Fonts");
    QAccessibleInterface* const cell = spoken->tableInterface()->cellAt(4, 1);
    ASSERT_TRUE(cell);
    EXPECT_EQ(cell->text(QAccessible::Name).toStdString(), "Likely OK to embed");
}

TEST_F(FontList, ACutTextCanBeReadInAToolTipAndAnyOtherHasNone)
{
    auto some = fonts;
    some[0].name = "A <b>very</b> long name " + std::string(200, 'x');
    view.setList(listOf(some));
    const auto tipAt = [&](int row) {
        const QPoint at = table().visualRect(model().index(row, 0)).center();
        QHelpEvent event(QEvent::ToolTip, at, table().viewport()->mapToGlobal(at));
        QCoreApplication::sendEvent(table().viewport(), &event);
        return QToolTip::text().toStdString();
    };
    EXPECT_EQ(tipAt(1), "");
    EXPECT_THAT(tipAt(0), testing::HasSubstr("A &lt;b&gt;very&lt;/b&gt; long name"));
    (void)tipAt(1);
    EXPECT_TRUE(QTest::qWaitFor([] { return QToolTip::text().isEmpty(); }));
}

TEST_F(FontList, OffersToShowAFontsFileWhereThereIsOne)
{
    const TemporaryFolder folder;
    const std::string path = folder.write("brook.ttf", "x").native();
    view.setList(listOf({{.name = "Brook", .filePath = path}}));
    QSignalSpy reveals(&view, &FontListView::revealRequested);
    const QPoint at = table().visualRect(model().index(0, 0)).center();
    QContextMenuEvent event(QContextMenuEvent::Mouse, at, table().viewport()->mapToGlobal(at));
    QCoreApplication::sendEvent(table().viewport(), &event);
    ASSERT_TRUE(openMenu());
    ASSERT_EQ(openMenu()->actions().size(), 1);
    EXPECT_EQ(openMenu()->actions().front()->text().toStdString(), "Show Font File in Finder");
    openMenu()->actions().front()->trigger();
    ASSERT_EQ(reveals.count(), 1);
    EXPECT_EQ(reveals.front().front().value<std::string>(), path);
    openMenu()->close();
}

TEST_F(FontList, OffersNothingWhereTheFileIsGoneOrThereIsNone)
{
    view.setList(listOf({{.name = "A", .filePath = "/no/such/file.ttf"}, {.name = "B"}}));
    for (const int row : {0, 1}) {
        const QPoint at = table().visualRect(model().index(row, 0)).center();
        QContextMenuEvent event(QContextMenuEvent::Mouse, at, table().viewport()->mapToGlobal(at));
        QCoreApplication::sendEvent(table().viewport(), &event);
        EXPECT_FALSE(openMenu());
    }
}

TEST_F(FontList, KeysOpenTheContextMenuOfTheSelectedFont)
{
    const TemporaryFolder folder;
    view.setList(listOf({{.name = "A", .filePath = folder.write("a.ttf", "x").native()}}));
    QTest::keyClick(&table(), Qt::Key_F10, Qt::ShiftModifier);
    EXPECT_FALSE(openMenu()) << "nothing is selected";
    select("A");
    QTest::keyClick(&table(), Qt::Key_F10, Qt::ShiftModifier);
    ASSERT_TRUE(openMenu());
    openMenu()->close();
    // What the window system makes of the Menu key.
    QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(), QPoint());
    QCoreApplication::sendEvent(table().viewport(), &event);
    ASSERT_TRUE(openMenu());
    openMenu()->close();
}

TEST_F(FontList, AHeaderStandsAboveTheFilters)
{
    auto* const header = new QLabel(QStringLiteral("a.pdf"));
    view.setHeader(header);
    QCoreApplication::processEvents();
    EXPECT_TRUE(header->isVisible());
    EXPECT_LT(header->mapTo(&view, QPoint()).y(), filters().mapTo(&view, QPoint()).y());
}

TEST_F(FontList, ThePickerGoesBelowTheChipsWhereThereIsNoRoomBesideThem)
{
    const auto top = [](const QWidget& widget) {
        return widget.mapTo(widget.window(), widget.rect().center()).y();
    };
    EXPECT_NEAR(top(picker()), top(chip("All")), 2);
    view.resize(view.minimumSizeHint().width(), 400);
    QCoreApplication::processEvents();
    EXPECT_GT(top(picker()), top(chip("All")) + 10);
}

} // namespace
} // namespace quillmark::test
