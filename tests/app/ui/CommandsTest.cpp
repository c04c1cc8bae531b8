#include "ui/Commands.h"

#include "app/model/ModelFixture.h"
#include "model/QtText.h"
#include "ui/EditMenu.h"

#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QListView>
#include <QPlainTextEdit>
#include <QTest>
#include <QVBoxLayout>

namespace quillmark::test {
namespace {

using namespace Qt::Literals::StringLiterals;

class CommandsTest : public ModelFixture {
protected:
    Commands commands{*model};
};

TEST_F(CommandsTest, HaveTheirWordsAndShortcuts)
{
    struct Expected {
        const QAction* action;
        const char* text;
        const char* shortcut;
    };
    const Expected expectations[]{
        {commands.scanFolder, "Scan a Font Folder…", "Ctrl+O"},
        {commands.checkDocument, "Check a Document…", "Ctrl+Shift+O"},
        {commands.rescanFonts, "Rescan Fonts", "Ctrl+R"},
        {commands.exportCsv, "Export as CSV…", "Ctrl+E"},
        {commands.exportPdf, "Export as PDF…", "Ctrl+Shift+E"},
        {commands.quit, "Quit", "Ctrl+Q"},
        {commands.find, "Find", "Ctrl+F"},
        {commands.help, "How Quillmark Decides", ""},
        {commands.checkForUpdates, "Check for Updates…", ""},
        {commands.about, "About Quillmark", ""},
        {commands.rescan, "Rescan", ""},
        {commands.checkAgain, "Check Again", ""},
        {commands.showDetails, "Details", ""},
    };
    for (const Expected& expected : expectations) {
        EXPECT_EQ(expected.action->text(), QString::fromUtf8(expected.text));
        EXPECT_EQ(expected.action->shortcut().toString(), QLatin1String(expected.shortcut))
            << expected.text;
    }
    EXPECT_EQ(commands.rescanFonts->shortcuts().value(1).toString(), u"F5"_s);
}

TEST_F(CommandsTest, ExplainTheToolbarsButtons)
{
    EXPECT_EQ(commands.rescan->toolTip(), u"Read the installed fonts and your folders again"_s);
    EXPECT_EQ(commands.checkAgain->toolTip(),
              u"Check this PDF again (after scanning a font folder, for example)"_s);
    EXPECT_EQ(commands.showDetails->toolTip(), u"Show or hide the font's details"_s);
}

TEST_F(CommandsTest, AskTheModel)
{
    commands.scanFolder->trigger();
    EXPECT_EQ(prompts.opened->prompt, "Scan Folder");
    commands.checkDocument->trigger();
    EXPECT_EQ(prompts.opened->prompt, "Check");
    commands.rescan->trigger();
    EXPECT_TRUE(model->scanningInstalled());
    commands.help->trigger();
    EXPECT_TRUE(model->showHelp());
}

TEST_F(CommandsTest, ExportTheShownListInTheFormatThatTheyName)
{
    const auto path = addScannedFolder("Fonts", {likelyOKFont()});
    model->setSelection(SidebarItem::folder(path));
    commands.exportCsv->trigger();
    EXPECT_EQ(prompts.saved, (SavePanel{"Fonts.csv", ExportFormat::csv}));
    commands.exportPdf->trigger();
    EXPECT_EQ(prompts.saved, (SavePanel{"Fonts.pdf", ExportFormat::pdf}));
}

TEST_F(CommandsTest, ExportingIsOfferedOnlyWhereThereIsAList)
{
    EXPECT_TRUE(commands.exportCsv->isEnabled());
    model->setSelection(SidebarItem::checkDocument());
    EXPECT_FALSE(commands.exportCsv->isEnabled());
    EXPECT_FALSE(commands.exportPdf->isEnabled());
    model->setSelection(SidebarItem::installed());
    EXPECT_TRUE(commands.exportPdf->isEnabled());
}

TEST_F(CommandsTest, ADocumentIsCheckedAgainWhereFontsAreRescanned)
{
    EXPECT_TRUE(commands.rescan->isVisible());
    EXPECT_FALSE(commands.checkAgain->isVisible());
    const auto path = addCheckedDocument("shop.pdf");
    ASSERT_EQ(model->selection(), SidebarItem::document(path.native()));
    EXPECT_FALSE(commands.rescan->isVisible());
    EXPECT_TRUE(commands.checkAgain->isVisible());
    commands.checkAgain->trigger();
    EXPECT_EQ(model->checkingDocument(), "shop.pdf");
}

TEST_F(CommandsTest, KeepTheirKeysWhereTextIsEdited)
{
    QWidget window;
    window.addAction(commands.exportCsv);
    QVBoxLayout layout(&window);
    QLineEdit field(u"some text"_s);
    layout.addWidget(&field);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    field.setFocus();

    QKeyEvent exporting(QEvent::ShortcutOverride, Qt::Key_E, Qt::ControlModifier);
    exporting.setAccepted(true);
    QApplication::sendEvent(&field, &exporting);
    EXPECT_FALSE(exporting.isAccepted()); // goes on as a shortcut

    QKeyEvent copying(QEvent::ShortcutOverride, Qt::Key_C, Qt::ControlModifier);
    copying.setAccepted(false);
    QApplication::sendEvent(&field, &copying);
    EXPECT_TRUE(copying.isAccepted()); // stays the field's
}

TEST_F(CommandsTest, LeaveADialogItsKeys)
{
    QDialog dialog;
    dialog.setModal(true);
    QLineEdit field(&dialog);
    dialog.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&dialog));
    QKeyEvent key(QEvent::ShortcutOverride, Qt::Key_A, Qt::ControlModifier);
    key.setAccepted(false);
    commands.find->setShortcut(Qt::CTRL | Qt::Key_A);
    QApplication::sendEvent(&field, &key);
    EXPECT_TRUE(key.isAccepted());
}

class EditMenuTest : public testing::Test {
protected:
    EditMenuTest()
    {
        layout.addWidget(&field);
        layout.addWidget(&notes);
        window.show();
        (void)QTest::qWaitForWindowActive(&window);
    }

    QAction* action(const QString& text)
    {
        for (QAction* const candidate : menu.actions())
            if (candidate->text() == text) return candidate;
        return nullptr;
    }

    QWidget window;
    QVBoxLayout layout{&window};
    QLineEdit field;
    QPlainTextEdit notes;
    EditMenu menu;
};

TEST_F(EditMenuTest, ListsItsCommandsInTheUsualOrder)
{
    QStringList texts;
    for (const QAction* const entry : menu.actions())
        if (!entry->isSeparator()) texts.push_back(entry->text());
    EXPECT_EQ(texts, (QStringList{u"Undo"_s, u"Redo"_s, u"Cut"_s, u"Copy"_s, u"Paste"_s,
                                  u"Select All"_s}));
}

TEST_F(EditMenuTest, ActsOnWhateverHasTheFocus)
{
    field.setText(u"foundry"_s);
    notes.setPlainText(u"receipt"_s);
    field.setFocus();
    action(u"Select All"_s)->trigger();
    EXPECT_EQ(field.selectedText(), u"foundry"_s);
    EXPECT_FALSE(notes.textCursor().hasSelection());
    action(u"Copy"_s)->trigger();
    notes.setFocus();
    action(u"Paste"_s)->trigger();
    EXPECT_EQ(notes.toPlainText(), u"foundryreceipt"_s);
    action(u"Undo"_s)->trigger();
    EXPECT_EQ(notes.toPlainText(), u"receipt"_s);
}

TEST_F(EditMenuTest, OffersOnlyWhatMakesSenseWhileItIsOpen)
{
    field.setText(u"foundry"_s);
    field.setFocus();
    menu.popup({0, 0});
    EXPECT_FALSE(action(u"Undo"_s)->isEnabled());
    EXPECT_FALSE(action(u"Copy"_s)->isEnabled());
    EXPECT_TRUE(action(u"Paste"_s)->isEnabled());
    EXPECT_TRUE(action(u"Select All"_s)->isEnabled());
    menu.hide();
    EXPECT_TRUE(action(u"Undo"_s)->isEnabled());
}

TEST_F(EditMenuTest, OffersAListWhatItCanDoWithItsRows)
{
    const auto canSelectAll = [this](QAbstractItemView::SelectionMode mode) {
        QListView list(&window);
        list.setSelectionMode(mode);
        list.setFocusPolicy(Qt::StrongFocus);
        list.show();
        list.setFocus();
        menu.popup({0, 0});
        const bool can = action(u"Select All"_s)->isEnabled();
        menu.hide();
        return can;
    };
    EXPECT_FALSE(canSelectAll(QAbstractItemView::SingleSelection));
    EXPECT_TRUE(canSelectAll(QAbstractItemView::ExtendedSelection));
}

TEST_F(EditMenuTest, OffersNothingWhereNothingCanBeEdited)
{
    window.setFocusPolicy(Qt::StrongFocus);
    window.setFocus();
    menu.popup({0, 0});
    for (const QAction* const entry : menu.actions())
        EXPECT_TRUE(entry->isSeparator() || !entry->isEnabled()) << qPrintable(entry->text());
    menu.hide();
}

} // namespace
} // namespace quillmark::test
