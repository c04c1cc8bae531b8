#include "ui/MainWindow.h"

#include "app/model/ModelFixture.h"
#include "ui/DocumentDropView.h"
#include "ui/DocumentHeader.h"
#include "ui/EmptyState.h"
#include "ui/FilterBar.h"
#include "ui/FontDetailView.h"
#include "ui/FontListView.h"
#include "ui/FontTable.h"
#include "ui/HelpDialog.h"
#include "ui/ListHeading.h"
#include "ui/ProgressPanel.h"
#include "ui/SearchField.h"
#include "ui/SidebarView.h"
#include "ui/StatusLine.h"
#include "ui/TextLabel.h"
#include "ui/WindowSettings.h"

#include <QAccessible>
#include <QAction>
#include <QApplication>
#include <QBitmap>
#include <QClipboard>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QHelpEvent>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QRegion>
#include <QSignalSpy>
#include <QSplitter>
#include <QTest>
#include <QToolBar>
#include <QToolButton>
#include <QToolTip>
#include <QTreeView>
#include <QUrl>

#include <memory>
#include <vector>

namespace quillmark::test {
namespace {

using namespace Qt::Literals::StringLiterals;

class MainWindowTest : public ModelFixture {
protected:
    MainWindowTest() { open(); }
    ~MainWindowTest() override { window.reset(); }

    /// Opens a window in place of the one that is there, as another run of the program would.
    void open()
    {
        if (window) window->close();
        window.reset();
        window = std::make_unique<MainWindow>(*model, places);
        window->show();
        (void)QTest::qWaitForWindowActive(window.get());
    }

    template <typename Widget>
    [[nodiscard]] Widget& the() const
    {
        auto* const found = window->findChild<Widget*>();
        if (found == nullptr) throw std::logic_error("the window has no such part");
        return *found;
    }

    [[nodiscard]] static QStringList texts(const QList<QAction*>& actions)
    {
        QStringList found;
        for (const QAction* const action : actions)
            found.push_back(action->isSeparator() ? u"-"_s : action->text());
        return found;
    }

    [[nodiscard]] QList<QAction*> menu(const QString& title) const
    {
        for (const QAction* const entry : window->menuBar()->actions())
            if (entry->text() == title) return entry->menu()->actions();
        return {};
    }

    [[nodiscard]] QAction* command(const QString& text) const
    {
        for (const QString& title : {u"&File"_s, u"&Edit"_s, u"&View"_s, u"&Help"_s})
            for (QAction* const action : menu(title))
                if (action->text() == text) return action;
        return nullptr;
    }

    /// The words on the toolbar's buttons that can be seen.
    [[nodiscard]] QStringList buttons() const
    {
        QCoreApplication::processEvents(); // a toolbar arranges itself later
        QStringList found;
        for (const QToolButton* const button : the<QToolBar>().findChildren<QToolButton*>())
            if (button->isVisibleTo(window.get()) && !button->text().isEmpty())
                found.push_back(button->text());
        found.removeAll(u"Search"_s);
        found.removeAll(u"Clear the search"_s);
        return found;
    }

    /// Scans a folder with a font of each of two verdicts, and shows it.
    std::filesystem::path showFolder()
    {
        const auto path = addScannedFolder("Fonts", {likelyOKFont(), restrictedFont()});
        model->setSelection(SidebarItem::folder(path));
        return path;
    }

    std::unique_ptr<MainWindow> window;
};

TEST_F(MainWindowTest, IsNamedAfterTheProductAndHasItsSize)
{
    EXPECT_EQ(window->windowTitle(), u"Quillmark"_s);
    EXPECT_EQ(window->objectName(), u"main"_s);
    EXPECT_EQ(window->size(), QSize(1280, 780));
}

TEST_F(MainWindowTest, ItsMenusListTheCommandsInOrder)
{
    EXPECT_EQ(texts(window->menuBar()->actions()),
              (QStringList{u"&File"_s, u"&Edit"_s, u"&View"_s, u"&Help"_s}));
    EXPECT_EQ(texts(menu(u"&File"_s)),
              (QStringList{u"Scan a Font Folder…"_s, u"Check a Document…"_s, u"Rescan Fonts"_s,
                           u"-"_s, u"Export as CSV…"_s, u"Export as PDF…"_s, u"-"_s, u"Quit"_s}));
    EXPECT_EQ(texts(menu(u"&Edit"_s)).last(), u"Find"_s);
    EXPECT_EQ(texts(menu(u"&View"_s)), (QStringList{u"Details"_s, u"Sidebar"_s}));
    EXPECT_EQ(texts(menu(u"&Help"_s)),
              (QStringList{u"How Quillmark Decides"_s, u"-"_s, u"Check for Updates…"_s,
                           u"About Quillmark"_s}));
}

TEST_F(MainWindowTest, F10OpensTheMenusWhereverTheFocusIs)
{
    showFolder();
    the<SearchField>().setFocus();
    QTest::keyClick(&the<SearchField>(), Qt::Key_F10);
    auto* const open = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_TRUE(open);
    EXPECT_EQ(open->title(), u"&File"_s);
    EXPECT_EQ(open->activeAction()->text(), u"Scan a Font Folder…"_s);
    QTest::keyClick(open, Qt::Key_Right);
    auto* const next = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_TRUE(next);
    EXPECT_EQ(next->title(), u"&Edit"_s);
    QTest::keyClick(next, Qt::Key_Escape);
    EXPECT_FALSE(QApplication::activePopupWidget());
}

TEST_F(MainWindowTest, TheCheckForUpdatesIsPassedOn)
{
    const QSignalSpy asked(window.get(), &MainWindow::checkForUpdatesRequested);
    command(u"Check for Updates…"_s)->trigger();
    EXPECT_EQ(asked.count(), 1);
}

TEST_F(MainWindowTest, ItsToolbarBelongsToTheList)
{
    showFolder();
    EXPECT_EQ(buttons(), (QStringList{u"Rescan"_s, u"Export"_s, u"Details"_s}));
    addCheckedDocument("shop.pdf");
    EXPECT_EQ(buttons(), (QStringList{u"Check Again"_s, u"Export"_s, u"Details"_s}));
    EXPECT_FALSE(the<QToolBar>().isMovable());
}

TEST_F(MainWindowTest, ExportOffersItsTwoFormats)
{
    const QToolButton* button = nullptr;
    for (const QToolButton* const candidate : the<QToolBar>().findChildren<QToolButton*>())
        if (candidate->text() == u"Export"_s) button = candidate;
    ASSERT_TRUE(button);
    EXPECT_EQ(button->toolTip(), u"Export this list as a CSV or PDF audit"_s);
    EXPECT_EQ(button->popupMode(), QToolButton::InstantPopup);
    EXPECT_EQ(texts(button->menu()->actions()),
              (QStringList{u"Export as CSV…"_s, u"Export as PDF…"_s}));
    EXPECT_TRUE(button->isEnabled());
    model->setSelection(SidebarItem::checkDocument());
    EXPECT_FALSE(button->isEnabled());
}

TEST_F(MainWindowTest, ItsColumnsKeepToTheirWidths)
{
    EXPECT_EQ(the<SidebarView>().minimumWidth(), 190);
    EXPECT_EQ(the<SidebarView>().maximumWidth(), 320);
    EXPECT_EQ(the<FontDetailView>().minimumWidth(), 300);
    EXPECT_EQ(the<FontDetailView>().maximumWidth(), 520);
    showFolder();
    const QList<int> sizes = the<QSplitter>().sizes();
    EXPECT_NEAR(sizes[0], 240, 2);
    EXPECT_NEAR(sizes[2], 340, 2);
    EXPECT_FALSE(the<QSplitter>().childrenCollapsible());
}

TEST_F(MainWindowTest, TheKeyboardBeginsInTheSidebar)
{
    EXPECT_TRUE(QTest::qWaitFor([this] { return the<QTreeView>().hasFocus(); }));
}

TEST_F(MainWindowTest, TheKeyboardGoesFromDetailsThatAreGoneToTheSidebar)
{
    showFolder();
    the<FontTable>().selectRow(0);
    the<QPlainTextEdit>().setFocus();
    ASSERT_TRUE(the<QPlainTextEdit>().hasFocus());
    model->setSelection(SidebarItem::installed()); // as when a check has ended meanwhile
    EXPECT_TRUE(the<QTreeView>().hasFocus());
}

TEST_F(MainWindowTest, WhileNoFontIsKnownYetItSaysThatTheyAreBeingRead)
{
    install(*fonts, likelyOKFont());
    model->scanInstalled();
    EXPECT_TRUE(the<ProgressPanel>().isVisible());
    const QProgressBar* const bar{the<ProgressPanel>().findChild<QProgressBar*>()};
    EXPECT_EQ(bar->accessibleName(), u"Reading every installed font…");
    EXPECT_FALSE(the<FontListView>().isVisible());
    background.runAll();
    EXPECT_FALSE(the<ProgressPanel>().isVisible());
    EXPECT_TRUE(the<FontListView>().isVisible());
    model->scanInstalled(); // again, with rows to look at meanwhile
    EXPECT_TRUE(the<FontListView>().isVisible());
}

TEST_F(MainWindowTest, WithNothingSelectedItSaysSo)
{
    model->setSelection(std::nullopt);
    const auto states = window->findChildren<EmptyState*>();
    const auto* const shown = *std::find_if(states.begin(), states.end(),
                                            [](const EmptyState* s) { return s->isVisible(); });
    EXPECT_EQ(shown->title(), u"Nothing selected"_s);
}

TEST_F(MainWindowTest, ThePageForDocumentsNamesTheWindow)
{
    model->setSelection(SidebarItem::checkDocument());
    EXPECT_TRUE(the<DocumentDropView>().isVisible());
    EXPECT_FALSE(the<FontDetailView>().isVisible());
    EXPECT_FALSE(the<SearchField>().isEnabled());
    EXPECT_FALSE(command(u"Details"_s)->isEnabled());
    EXPECT_EQ(window->windowTitle(), u"Check a Document"_s);
    showFolder();
    EXPECT_EQ(window->windowTitle(), u"Quillmark"_s);
    EXPECT_TRUE(the<FontDetailView>().isVisible());
}

TEST_F(MainWindowTest, ADocumentsListHasItsHeader)
{
    showFolder();
    EXPECT_FALSE(the<DocumentHeader>().isVisible());
    addCheckedDocument("shop.pdf");
    EXPECT_TRUE(the<DocumentHeader>().isVisible());
}

TEST_F(MainWindowTest, TheNameOfAFolderIsShownAsTextOnOneLine)
{
    const auto path = addScannedFolder("R&D\n<b>", {likelyOKFont()});
    model->setSelection(SidebarItem::folder(path));
    const auto labels = the<ListHeading>().findChildren<QLabel*>();
    ASSERT_EQ(labels.size(), 2);
    EXPECT_EQ(labels[0]->text(), u"R&D\uFFFD<b>"_s);
    EXPECT_TRUE(labels[1]->text().endsWith(u"/R&D\uFFFD<b>"_s));
}

TEST_F(MainWindowTest, TheNameOfAFolderBeginsAtTheSameEdgeInEveryScript)
{
    for (const std::string name : {"Brook", "\u05D0\u05D1\u05D2 Brook"}) {
        model->setSelection(SidebarItem::folder(addScannedFolder(name, {likelyOKFont()})));
        QCoreApplication::processEvents();
        const auto labels = the<ListHeading>().findChildren<QLabel*>();
        const QImage title = labels.at(0)->grab().toImage();
        ASSERT_EQ(labels.at(0)->text().toStdString(), name);
        const QRect ink = QRegion(QBitmap::fromImage(title.createHeuristicMask())).boundingRect();
        EXPECT_LT(ink.left(), 10) << name;
        EXPECT_LT(ink.right(), title.width() / 2) << name;
    }
}

TEST_F(MainWindowTest, ALongFolderNameIsCutVisiblyAndTheWholeIsAToolTip)
{
    const std::string name = "R&D <b> " + std::string(200, 'W');
    model->setSelection(SidebarItem::folder(addScannedFolder(name, {likelyOKFont()})));
    QCoreApplication::processEvents();
    EXPECT_EQ(window->width(), 1280);
    for (TextLabel* const label : the<ListHeading>().findChildren<TextLabel*>()) {
        EXPECT_TRUE(label->shownText().contains(u'…'));
        EXPECT_LE(label->fontMetrics().horizontalAdvance(label->shownText()), label->width());
        QHelpEvent hover(QEvent::ToolTip, {5, 5}, label->mapToGlobal(QPoint(5, 5)));
        QCoreApplication::sendEvent(label, &hover);
        EXPECT_TRUE(QToolTip::text().contains(u"R&amp;D &lt;b&gt; "_s + QString(200, u'W')));
    }
}

/// All that is told to screen readers, in their order.
void collect(QAccessibleInterface* parent, QObjectList& found)
{
    for (int i = 0; i < parent->childCount(); ++i) {
        QAccessibleInterface* const child = parent->child(i);
        if (child == nullptr || child->object() == nullptr) continue; // a cell
        found.append(child->object());
        collect(child, found);
    }
}

TEST_F(MainWindowTest, ScreenReadersGoThroughItAsItIsRead)
{
    showFolder();
    QObjectList order;
    collect(QAccessible::queryAccessibleInterface(window.get()), order);
    qsizetype before = -1;
    const std::vector<const QObject*> expected{&the<SidebarView>(), &the<ListHeading>(),
                                               &the<FilterBar>(), &the<FontTable>(),
                                               &the<FontDetailView>()};
    for (const QObject* const part : expected) {
        const qsizetype at = order.indexOf(part);
        EXPECT_GT(at, before) << part->metaObject()->className();
        before = at;
    }
}

TEST_F(MainWindowTest, NoDrawingIsKeptInTheColoursOfOneMoment)
{
    showFolder();
    for (const QLabel* const label : window->findChildren<QLabel*>())
        EXPECT_TRUE(label->pixmap(Qt::ReturnByValue).isNull())
            << qPrintable(label->accessibleName());
}

TEST_F(MainWindowTest, ALongNameDoesNotWidenTheWindow)
{
    model->checkDocuments({addDocument(std::string(240, 'W') + ".pdf")});
    ASSERT_TRUE(model->checkingDocument());
    QCoreApplication::processEvents();
    EXPECT_LT(window->minimumSizeHint().width(), 1280);
    EXPECT_EQ(window->width(), 1280);
}

TEST_F(MainWindowTest, TheSearchNarrowsTheList)
{
    showFolder();
    command(u"Find"_s)->trigger();
    EXPECT_TRUE(the<SearchField>().hasFocus());
    EXPECT_EQ(the<SearchField>().placeholderText(), u"Font, PostScript name or maker"_s);
    QTest::keyClicks(&the<SearchField>(), u"cedar"_s);
    EXPECT_EQ(the<FontListView>().shownRows(), 1);
    EXPECT_TRUE(the<StatusLine>().text().startsWith(u"1 shown of 2 fonts"_s));
    QTest::keyClick(&the<SearchField>(), Qt::Key_Escape);
    EXPECT_EQ(the<FontListView>().shownRows(), 2);
    QTest::keyClick(&the<SearchField>(), Qt::Key_Escape);
    EXPECT_TRUE(the<FontTable>().hasFocus());
}

TEST_F(MainWindowTest, CtrlCCopiesTheSelectedFontAndTheEditMenuOffersItWhileOneIsSelected)
{
    showFolder();
    QAction* const copy = command(u"Copy"_s);
    auto* const edit = qobject_cast<QMenu*>(copy->parent());
    ASSERT_TRUE(edit);
    the<FontTable>().setFocus();
    the<FontTable>().clearSelection();
    edit->popup({0, 0});
    EXPECT_FALSE(copy->isEnabled());
    edit->hide();
    the<FontTable>().selectRow(0);
    edit->popup({0, 0});
    EXPECT_TRUE(copy->isEnabled());
    edit->hide();
    QApplication::clipboard()->clear();
    QTest::keyClick(&the<FontTable>(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text().section(u'\t', 0, 1), u"Acme Bold\tRestricted"_s);
}

TEST_F(MainWindowTest, AnotherSourceBeginsWithoutASearch)
{
    showFolder();
    the<SearchField>().setText(u"cedar"_s);
    addCheckedDocument("shop.pdf");
    EXPECT_EQ(the<SearchField>().text(), QString());
}

TEST_F(MainWindowTest, DetailsShowTheSelectedFontAndCanBeHidden)
{
    showFolder();
    the<FontTable>().selectRow(0);
    EXPECT_TRUE(the<FontListView>().selectedRow());
    EXPECT_TRUE(the<FontDetailView>().isVisible());
    command(u"Details"_s)->trigger();
    EXPECT_FALSE(the<FontDetailView>().isVisible());
    model->setSelection(SidebarItem::installed());
    EXPECT_FALSE(the<FontDetailView>().isVisible());
    command(u"Details"_s)->trigger();
    EXPECT_TRUE(the<FontDetailView>().isVisible());
}

TEST_F(MainWindowTest, ComesBackAsItWasLeft)
{
    window->resize(1100, 700);
    command(u"Sidebar"_s)->trigger();
    command(u"Details"_s)->trigger();
    EXPECT_FALSE(the<SidebarView>().isVisible());
    open();
    EXPECT_EQ(window->size(), QSize(1100, 700));
    EXPECT_FALSE(the<SidebarView>().isVisible());
    EXPECT_FALSE(the<FontDetailView>().isVisible());
    EXPECT_FALSE(command(u"Details"_s)->isChecked());
}

TEST_F(MainWindowTest, ADamagedMemoryLeavesItsPartsBesideEachOther)
{
    const QByteArray whole = the<QSplitter>().saveState();
    for (qsizetype length = 0; length < whole.size(); ++length) {
        window.reset();
        WindowSettings{.splitter = whole.left(length)}.save(places.settingsFile);
        open();
        const auto& splitter = the<QSplitter>();
        EXPECT_EQ(splitter.orientation(), Qt::Horizontal) << length;
        EXPECT_EQ(splitter.handleWidth(), 1) << length;
        EXPECT_TRUE(splitter.opaqueResize()) << length;
        EXPECT_FALSE(splitter.childrenCollapsible()) << length;
        EXPECT_EQ(splitter.sizes().size(), 3) << length;
        EXPECT_GE(splitter.sizes().at(0), SidebarView::minimumColumnWidth) << length;
    }
}

TEST_F(MainWindowTest, HelpIsASheetThatCanBeOpenedAgain)
{
    for (int time = 0; time < 2; ++time) {
        command(u"How Quillmark Decides"_s)->trigger();
        auto* const help = window->findChild<HelpDialog*>();
        ASSERT_TRUE(help);
        EXPECT_TRUE(help->isVisible());
        EXPECT_EQ(help->windowModality(), Qt::WindowModal);
        QTest::keyClick(help, time == 0 ? Qt::Key_Return : Qt::Key_Escape);
        EXPECT_FALSE(model->showHelp());
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        EXPECT_FALSE(window->findChild<HelpDialog*>());
    }
}

TEST_F(MainWindowTest, FilesDroppedOutsideThePageAreCheckedToo)
{
    const auto path = addDocument("shop.pdf");
    showFolder();
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(QString::fromStdString(path))});
    QDragEnterEvent enter({600, 400}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(window.get(), &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent drop({600, 400}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(window.get(), &drop);
    EXPECT_EQ(model->checkingDocument(), "shop.pdf");
}

TEST_F(MainWindowTest, TextThatIsDraggedIsNotTaken)
{
    QMimeData data;
    data.setText(u"no file"_s);
    QDragEnterEvent enter({600, 400}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(window.get(), &enter);
    EXPECT_FALSE(enter.isAccepted());
}

TEST_F(MainWindowTest, QuitClosesIt)
{
    command(u"Quit"_s)->trigger();
    EXPECT_FALSE(window->isVisible());
}

TEST_F(MainWindowTest, EveryControlHasANameForScreenReaders)
{
    showFolder();
    for (const QToolButton* const button : window->findChildren<QToolButton*>())
        EXPECT_FALSE(button->isVisible() && button->text().isEmpty() &&
                     button->accessibleName().isEmpty())
            << qPrintable(button->objectName());
    EXPECT_FALSE(the<SearchField>().accessibleName().isEmpty());
}

} // namespace
} // namespace quillmark::test
