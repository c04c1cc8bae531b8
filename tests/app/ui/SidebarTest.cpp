#include "ui/SidebarModel.h"
#include "ui/SidebarView.h"

#include "app/model/ModelFixture.h"
#include "support/SampleDocument.h"

#include <gmock/gmock.h>

#include <QAbstractItemModelTester>
#include <QAccessible>
#include <QApplication>
#include <QContextMenuEvent>
#include <QMenu>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>
#include <QTreeView>

namespace quillmark::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Everything that a sidebar lists, section by section.
std::vector<std::string> labels(const QAbstractItemModel& model, int role = Qt::DisplayRole)
{
    std::vector<std::string> all;
    for (int section = 0; section < model.rowCount(); ++section) {
        const QModelIndex parent = model.index(section, 0);
        all.push_back("[" + parent.data().toString().toStdString() + "]");
        for (int row = 0; row < model.rowCount(parent); ++row)
            all.push_back(model.index(row, 0, parent).data(role).toString().toStdString());
    }
    return all;
}

class SidebarFixture : public ModelFixture {
protected:
    /// Writes a PDF that embeds a font whose own bits forbid that.
    std::filesystem::path addRestrictedDocument(const std::string& name)
    {
        const Bytes font = FontBytes()
                               .face()
                               .name(1, u"Acme")
                               .name(6, u"Acme-Regular")
                               .os2({.fsType = forbidden})
                               .build();
        return folder.write(name, sampleDocument(1, {{"Acme-Regular", {1}, font}}));
    }
};

class SidebarRows : public SidebarFixture {
protected:
    [[nodiscard]] QModelIndex at(const SidebarItem& item) const { return sources->indexOf(item); }
    [[nodiscard]] QModelIndex folderRow(const std::filesystem::path& path) const
    {
        return at(SidebarItem::folder(path.native()));
    }

    std::unique_ptr<SidebarModel> sources{std::make_unique<SidebarModel>(*model)};
    QAbstractItemModelTester tester{sources.get(),
                                    QAbstractItemModelTester::FailureReportingMode::Fatal};
};

TEST_F(SidebarRows, AreTheInstalledFontsAndThePageForDocumentsAtFirst)
{
    EXPECT_THAT(labels(*sources),
                ElementsAre("[Fonts]", "Installed on This Mac", "[Documents]", "Check a Document"));
}

TEST_F(SidebarRows, FoldersFollowInTheirOrderWithTheirLastNamesAndCounts)
{
    const auto zebra = addScannedFolder("Zebra", {unknownFont(), likelyOKFont()});
    addScannedFolder("Acorn", {unknownFont()});
    EXPECT_THAT(labels(*sources), ElementsAre("[Fonts]", "Installed on This Mac", "Zebra", "Acorn",
                                              "[Documents]", "Check a Document"));
    EXPECT_EQ(folderRow(zebra).data(SidebarModel::countRole).toInt(), 2);
    EXPECT_EQ(folderRow(zebra).data(SidebarModel::symbolRole).toString().toStdString(), "folder");
    EXPECT_THAT(folderRow(zebra).data(Qt::ToolTipRole).toString().toStdString(),
                testing::HasSubstr(zebra.native()));
}

TEST_F(SidebarRows, TheInstalledFontsAreCounted)
{
    install(*fonts, unknownFont());
    install(*fonts, likelyOKFont());
    EXPECT_EQ(at(SidebarItem::installed()).data(SidebarModel::countRole).toInt(), 0);
    const QSignalSpy changes(sources.get(), &QAbstractItemModel::dataChanged);
    model->scanInstalled();
    background.runAll();
    EXPECT_EQ(at(SidebarItem::installed()).data(SidebarModel::countRole).toInt(), 2);
    EXPECT_EQ(changes.count(), 1);
    EXPECT_EQ(at(SidebarItem::installed()).data(SidebarModel::symbolRole).toString().toStdString(),
              "desktopcomputer");
}

TEST_F(SidebarRows, CountsAreSpokenInWords)
{
    install(*fonts, unknownFont());
    model->scanInstalled();
    addScannedFolder("Zebra", {unknownFont(), likelyOKFont()});
    EXPECT_THAT(labels(*sources, Qt::AccessibleTextRole),
                ElementsAre("[Fonts]", "Installed on This Mac, 1 font", "Zebra, 2 fonts",
                            "[Documents]", "Check a Document"));
}

TEST_F(SidebarRows, AScanIsToldByARowThatCannotBeChosen)
{
    const auto zebra = addFolder("Zebra", {unknownFont()});
    const QSignalSpy insertions(sources.get(), &QAbstractItemModel::rowsInserted);
    model->scanFolder(zebra, AppModel::Select::no);
    EXPECT_THAT(labels(*sources), ElementsAre("[Fonts]", "Installed on This Mac", "Scanning Zebra",
                                              "[Documents]", "Check a Document"));
    EXPECT_EQ(insertions.count(), 1);
    const QModelIndex scanning = sources->index(1, 0, sources->index(0, 0));
    EXPECT_FALSE(scanning.flags().testFlag(Qt::ItemIsSelectable));
    EXPECT_EQ(sources->itemAt(scanning), std::nullopt);
    background.runAll();
    EXPECT_THAT(labels(*sources), ElementsAre("[Fonts]", "Installed on This Mac", "Zebra",
                                              "[Documents]", "Check a Document"));
}

TEST_F(SidebarRows, TheScanOfAFolderStandsBelowAllFolders)
{
    const auto zebra = addScannedFolder("Zebra", {unknownFont()});
    addScannedFolder("Acorn", {unknownFont()});
    model->scanFolder(zebra, AppModel::Select::no);
    EXPECT_THAT(labels(*sources), ElementsAre("[Fonts]", "Installed on This Mac", "Zebra", "Acorn",
                                              "Scanning Zebra", "[Documents]", "Check a Document"));
}

TEST_F(SidebarRows, AFolderThatIsReadAgainKeepsItsRow)
{
    const auto zebra = addScannedFolder("Zebra", {unknownFont()});
    addScannedFolder("Acorn", {unknownFont()});
    const QPersistentModelIndex row = folderRow(zebra);
    const QSignalSpy changes(sources.get(), &QAbstractItemModel::dataChanged);
    addScannedFolder("Zebra", {unknownFont(), likelyOKFont()});
    EXPECT_EQ(row, folderRow(zebra));
    EXPECT_EQ(row.row(), 1);
    EXPECT_EQ(row.data(SidebarModel::countRole).toInt(), 2);
    EXPECT_EQ(changes.count(), 1);
}

TEST_F(SidebarRows, ARemovedFolderTakesOnlyItsOwnRowAway)
{
    const auto zebra = addScannedFolder("Zebra", {unknownFont()});
    const auto acorn = addScannedFolder("Acorn", {unknownFont()});
    const QPersistentModelIndex row = folderRow(acorn);
    QSignalSpy removals(sources.get(), &QAbstractItemModel::rowsRemoved);
    model->removeFolder(zebra.native());
    ASSERT_EQ(removals.count(), 1);
    EXPECT_EQ(removals[0][1].toInt(), 1);
    EXPECT_EQ(removals[0][2].toInt(), 1);
    EXPECT_EQ(row.row(), 1);
    EXPECT_EQ(row, folderRow(acorn));
}

TEST_F(SidebarRows, ADocumentsSymbolWarnsAsSoonAsOneOfItsFontsIsRestricted)
{
    const auto path = addCheckedDocument("flyer.pdf");
    const QModelIndex row = at(SidebarItem::document(path.native()));
    EXPECT_EQ(row.data().toString().toStdString(), "flyer.pdf");
    EXPECT_EQ(row.data(SidebarModel::symbolRole).toString().toStdString(), "doc.richtext");
    EXPECT_FALSE(row.data(SidebarModel::restrictedRole).toBool());

    addRestrictedDocument("flyer.pdf"); // in its place
    model->recheck(*model->documents().front());
    background.runAll();
    const QModelIndex again = at(SidebarItem::document(path.native()));
    EXPECT_EQ(again.data(SidebarModel::symbolRole).toString().toStdString(),
              "exclamationmark.triangle");
    EXPECT_TRUE(again.data(SidebarModel::restrictedRole).toBool());
}

TEST_F(SidebarRows, ThePageForDocumentsHasItsSymbol)
{
    EXPECT_EQ(
        at(SidebarItem::checkDocument()).data(SidebarModel::symbolRole).toString().toStdString(),
        "doc.text.magnifyingglass");
}

TEST_F(SidebarRows, SectionsCannotBeChosen)
{
    for (int section = 0; section < 2; ++section) {
        EXPECT_EQ(sources->index(section, 0).flags(), Qt::NoItemFlags);
        EXPECT_EQ(sources->itemAt(sources->index(section, 0)), std::nullopt);
    }
}

TEST_F(SidebarRows, AFolderWhoseNameLooksLikeMarkupOrTurnsTheLineIsShownAsText)
{
    const auto zebra = addScannedFolder("a <b> \u202Ex", {unknownFont()});
    EXPECT_EQ(folderRow(zebra).data().toString().toStdString(), "a <b> \uFFFDx");
    EXPECT_THAT(folderRow(zebra).data(Qt::ToolTipRole).toString().toStdString(),
                testing::HasSubstr("a &lt;b&gt; \uFFFDx"));
}

class Sidebar : public SidebarFixture {
protected:
    Sidebar()
    {
        view.resize(SidebarView::idealColumnWidth, 400);
        view.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&view));
    }
    ~Sidebar() override
    {
        if (QWidget* const menu = QApplication::activePopupWidget()) menu->close();
    }

    [[nodiscard]] QTreeView& tree() const { return *view.findChild<QTreeView*>(); }
    [[nodiscard]] SidebarModel& sources() const { return *view.findChild<SidebarModel*>(); }
    [[nodiscard]] std::string selected() const
    {
        const QModelIndexList rows = tree().selectionModel()->selectedIndexes();
        return rows.isEmpty() ? "none" : rows.front().data().toString().toStdString();
    }
    [[nodiscard]] QRect placeOf(const SidebarItem& item) const
    {
        return tree().visualRect(sources().indexOf(item));
    }
    void click(const SidebarItem& item) const
    {
        QTest::mouseClick(tree().viewport(), Qt::LeftButton, {}, placeOf(item).center());
    }
    void rightClick(const SidebarItem& item) const
    {
        const QPoint at = placeOf(item).center();
        QTest::mouseClick(tree().viewport(), Qt::RightButton, {}, at);
        QContextMenuEvent event(QContextMenuEvent::Mouse, at, tree().viewport()->mapToGlobal(at));
        QCoreApplication::sendEvent(tree().viewport(), &event);
    }
    [[nodiscard]] static std::vector<std::string> menuItems()
    {
        std::vector<std::string> items;
        const auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (menu == nullptr) return items;
        for (const QAction* const action : menu->actions())
            items.push_back(action->isSeparator() ? "-" : action->text().toStdString());
        return items;
    }
    static void choose(int item)
    {
        auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        ASSERT_TRUE(menu);
        menu->actions().at(item)->trigger();
        menu->close();
    }

    SidebarView view{*model};
};

TEST_F(Sidebar, SelectsWhatTheModelShows)
{
    EXPECT_EQ(selected(), "Installed on This Mac");
    const auto zebra = addScannedFolder("Zebra", {unknownFont()});
    model->setSelection(SidebarItem::folder(zebra.native()));
    EXPECT_EQ(selected(), "Zebra");
    model->setSelection(SidebarItem::checkDocument());
    EXPECT_EQ(selected(), "Check a Document");
    model->setSelection(std::nullopt);
    EXPECT_EQ(selected(), "none");
}

TEST_F(Sidebar, AClickShowsWhatIsClicked)
{
    const auto zebra = addScannedFolder("Zebra", {unknownFont()});
    const SidebarItem item = SidebarItem::folder(zebra.native());
    click(item);
    EXPECT_EQ(model->selection(), item);
    click(SidebarItem::checkDocument());
    EXPECT_EQ(model->selection(), SidebarItem::checkDocument());
}

TEST_F(Sidebar, ArrowKeysPassOverTheSections)
{
    tree().setFocus();
    QTest::keyClick(&tree(), Qt::Key_Down);
    EXPECT_EQ(model->selection(), SidebarItem::checkDocument());
    QTest::keyClick(&tree(), Qt::Key_Up);
    EXPECT_EQ(model->selection(), SidebarItem::installed());
    QTest::keyClick(&tree(), Qt::Key_Up);
    EXPECT_EQ(model->selection(), SidebarItem::installed());
    EXPECT_EQ(selected(), "Installed on This Mac");
}

TEST_F(Sidebar, AClickOnASectionOrOnAScanChangesNothing)
{
    model->scanFolder(addFolder("Zebra", {unknownFont()}), AppModel::Select::no);
    const QModelIndex section = sources().index(0, 0);
    for (const QModelIndex& index : {section, sources().index(1, 0, section)}) {
        QTest::mouseClick(tree().viewport(), Qt::LeftButton, {}, tree().visualRect(index).center());
        EXPECT_EQ(model->selection(), SidebarItem::installed());
        EXPECT_EQ(selected(), "Installed on This Mac");
    }
}

TEST_F(Sidebar, AClickBesideTheRowsKeepsTheSelection)
{
    QTest::mouseClick(tree().viewport(), Qt::LeftButton, {},
                      QPoint(20, tree().viewport()->height() - 5));
    EXPECT_EQ(model->selection(), SidebarItem::installed());
    EXPECT_EQ(selected(), "Installed on This Mac");
}

TEST_F(Sidebar, AClickWithCtrlKeepsTheSelection)
{
    const QRect row = tree().visualRect(tree().currentIndex());
    QTest::mouseClick(tree().viewport(), Qt::LeftButton, Qt::ControlModifier, row.center());
    EXPECT_EQ(model->selection(), SidebarItem::installed());
    EXPECT_EQ(selected(), "Installed on This Mac");
}

TEST_F(Sidebar, RemovingTheSelectedFolderShowsTheInstalledFonts)
{
    const auto zebra = addScannedFolder("Zebra", {unknownFont()});
    addScannedFolder("Acorn", {unknownFont()});
    model->setSelection(SidebarItem::folder(zebra.native()));
    model->removeFolder(zebra.native());
    EXPECT_EQ(model->selection(), SidebarItem::installed());
    EXPECT_EQ(selected(), "Installed on This Mac");
}

TEST_F(Sidebar, RemovingTheSelectedDocumentShowsThePageForDocuments)
{
    const auto first = addCheckedDocument("a.pdf");
    addCheckedDocument("b.pdf");
    model->setSelection(SidebarItem::document(first.native()));
    model->removeDocument(first.native());
    EXPECT_EQ(model->selection(), SidebarItem::checkDocument());
    EXPECT_EQ(selected(), "Check a Document");
}

TEST_F(Sidebar, AFolderCanBeRescannedShownOrRemoved)
{
    const auto zebra = addScannedFolder("Zebra", {unknownFont()});
    const SidebarItem item = SidebarItem::folder(zebra.native());
    rightClick(item);
    EXPECT_THAT(menuItems(), ElementsAre("Rescan", "Show in Finder", "-", "Remove from List"));
    EXPECT_EQ(model->selection(), SidebarItem::installed()) << "a right click goes nowhere";
    choose(0);
    EXPECT_EQ(model->scanningFolder(), zebra.native());
    background.runAll();
    rightClick(item);
    choose(1);
    EXPECT_THAT(prompts.revealed, ElementsAre(zebra));
    rightClick(item);
    choose(3);
    EXPECT_THAT(folderPaths(), IsEmpty());
}

TEST_F(Sidebar, ADocumentCanBeCheckedAgainShownOrRemoved)
{
    const auto path = addCheckedDocument("a.pdf");
    const SidebarItem item = SidebarItem::document(path.native());
    rightClick(item);
    EXPECT_THAT(menuItems(), ElementsAre("Check Again", "Show in Finder", "-", "Remove from List"));
    choose(0);
    EXPECT_EQ(model->checkingDocument(), "a.pdf");
    background.runAll();
    rightClick(item);
    choose(1);
    EXPECT_THAT(prompts.revealed, ElementsAre(path));
    rightClick(item);
    choose(3);
    EXPECT_THAT(documentPaths(), IsEmpty());
}

TEST_F(Sidebar, OtherRowsHaveNoMenu)
{
    for (const SidebarItem& item : {SidebarItem::installed(), SidebarItem::checkDocument()}) {
        rightClick(item);
        EXPECT_THAT(menuItems(), IsEmpty());
    }
}

TEST_F(Sidebar, KeysOpenTheMenuOfTheSelectedRow)
{
    const auto zebra = addScannedFolder("Zebra", {unknownFont()});
    model->setSelection(SidebarItem::folder(zebra.native()));
    QTest::keyClick(&tree(), Qt::Key_F10, Qt::ShiftModifier);
    EXPECT_THAT(menuItems(), ElementsAre("Rescan", "Show in Finder", "-", "Remove from List"));
    choose(1);
    EXPECT_THAT(prompts.revealed, ElementsAre(zebra));
    // What the window system makes of the Menu key.
    QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(), QPoint());
    QCoreApplication::sendEvent(&tree(), &event);
    EXPECT_EQ(menuItems().size(), 4U);
}

TEST_F(Sidebar, AMenuOfARowThatIsGoneMeanwhileDoesNothing)
{
    const auto path = addCheckedDocument("a.pdf");
    rightClick(SidebarItem::document(path.native()));
    model->removeDocument(path.native());
    choose(0);
    EXPECT_EQ(model->checkingDocument(), std::nullopt);
}

TEST_F(Sidebar, TheButtonAtTheBottomAsksForAFolder)
{
    auto& button = *view.findChild<QToolButton*>();
    EXPECT_EQ(button.text().toStdString(), "Scan a Font Folder…");
    EXPECT_TRUE(button.autoRaise()) << "without a border";
    EXPECT_GT(button.geometry().top(), tree().geometry().bottom());
    QTest::mouseClick(&button, Qt::LeftButton);
    ASSERT_TRUE(prompts.opened);
    EXPECT_EQ(prompts.opened->choice, OpenPanel::Choice::folder);
}

TEST_F(Sidebar, KeepsToItsSmallestAndLargestWidths)
{
    EXPECT_EQ(view.minimumWidth(), 190);
    EXPECT_EQ(view.sizeHint().width(), 240);
    EXPECT_EQ(view.maximumWidth(), 320);
}

TEST_F(Sidebar, TheTreeItsColumnAndItsRowsHaveNames)
{
    install(*fonts, unknownFont());
    model->scanInstalled();
    background.runAll();
    QAccessibleInterface* const spoken = QAccessible::queryAccessibleInterface(&tree());
    ASSERT_TRUE(spoken);
    EXPECT_EQ(spoken->text(QAccessible::Name).toStdString(), "Sources");
    EXPECT_EQ(sources().headerData(0, Qt::Horizontal, Qt::DisplayRole).toString().toStdString(),
              "Source");
    std::vector<std::string> names;
    for (int i = 0; i < spoken->childCount(); ++i)
        names.push_back(spoken->child(i)->text(QAccessible::Name).toStdString());
    EXPECT_THAT(names, testing::Contains("Installed on This Mac, 1 font"));
}

TEST_F(Sidebar, RowsAreHighEnoughForTheFont)
{
    const auto height = [&] { return placeOf(SidebarItem::installed()).height(); };
    const int before = height();
    EXPECT_GT(before, QFontMetrics(QApplication::font()).height());
    const QFont font = QApplication::font();
    QFont large = font;
    large.setPointSizeF(font.pointSizeF() * 2);
    QApplication::setFont(large);
    QCoreApplication::processEvents();
    EXPECT_GT(height(), before + 5);
    QApplication::setFont(font);
}

TEST_F(Sidebar, ARestrictedDocumentsTriangleHasTheColourOfRestrictedFonts)
{
    const auto path = addRestrictedDocument("a.pdf");
    model->checkDocuments({path});
    background.runAll();
    model->setSelection(SidebarItem::installed());
    const QRect row = placeOf(SidebarItem::document(path.native()));
    const QImage image = tree().viewport()->grab(row).toImage();
    int found = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) {
            // The lines are thin, so hardly any pixel has the colour itself.
            const QColor pixel = image.pixelColor(x, y);
            found += pixel.red() - pixel.green() > 80 && pixel.red() - pixel.blue() > 80 ? 1 : 0;
        }
    EXPECT_GT(found, 5);
}

} // namespace
} // namespace quillmark::test
