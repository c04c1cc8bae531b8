#include "ui/DocumentDropView.h"

#include "app/model/ModelFixture.h"
#include "assessment/Classifier.h"
#include "model/QtText.h"
#include "ui/DisclaimerBox.h"
#include "ui/DroppedFiles.h"

#include <QAccessible>
#include <QApplication>
#include <QDragEnterEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>
#include <QTreeWidget>
#include <QUrl>
#include <QVBoxLayout>

namespace quillmark::test {
namespace {

using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

class DocumentDrops : public ModelFixture {
protected:
    DocumentDrops()
    {
        auto* const layout = new QVBoxLayout(&window);
        layout->addWidget(&search);
        layout->addWidget(&view);
        window.resize(700, 650);
        window.show();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
        view.setFocus();
    }
    ~DocumentDrops() override
    {
        view.setParent(nullptr);
        search.setParent(nullptr);
    }

    /// Drags this list of addresses over the page; whether it was taken.
    bool drag(const QByteArray& list, Qt::DropActions actions = Qt::CopyAction | Qt::MoveAction)
    {
        mime.setData(u"text/uri-list"_s, list);
        QDragEnterEvent enter({50, 50}, actions, &mime, Qt::LeftButton, Qt::NoModifier);
        enter.ignore();
        QApplication::sendEvent(&view, &enter);
        if (!enter.isAccepted()) return false;
        QDragMoveEvent move({60, 60}, actions, &mime, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&view, &move);
        return move.isAccepted();
    }
    /// The same to the end. The action that the source learns of.
    Qt::DropAction drop(const QByteArray& list,
                        Qt::DropActions actions = Qt::CopyAction | Qt::MoveAction)
    {
        drag(list, actions);
        QDropEvent event({60, 60}, actions, &mime, Qt::LeftButton, Qt::NoModifier);
        event.ignore();
        QApplication::sendEvent(&view, &event);
        return event.isAccepted() ? event.dropAction() : Qt::IgnoreAction;
    }
    [[nodiscard]] QStringList labels() const
    {
        QStringList texts;
        for (auto* const label : view.findChildren<QLabel*>())
            if (label->isVisible() && !label->text().isEmpty()) texts << label->text();
        return texts;
    }
    /// Whether the page has asked for PDFs since the last time.
    bool asked()
    {
        QCoreApplication::processEvents();
        return std::exchange(prompts.opened, std::nullopt).has_value();
    }

    QMimeData mime;
    QWidget window;
    QLineEdit search;
    DocumentDropView view{*model};
    QPushButton* choose{view.findChild<QPushButton*>()};
    QProgressBar* progress{view.findChild<QProgressBar*>()};
};

TEST_F(DocumentDrops, SayWhatThePageIsFor)
{
    EXPECT_EQ(
        labels(),
        QStringList(
            {u"Drop a PDF here"_s,
             u"See every font embedded in it, with the same check as your installed fonts. Made "
             u"for "
             u"printables, ebooks, worksheets and anything else you sell as a PDF. Files are only "
             u"read, never changed."_s,
             u"Tip: PDF writers often strip the license fields from the fonts they embed. Scan the "
             u"folder with the fonts you used first, so each one can be matched."_s,
             qtText(Classifier::disclaimer)}));
    EXPECT_EQ(choose->text(), u"Choose PDF…"_s);
    EXPECT_TRUE(choose->isVisible());
    EXPECT_FALSE(progress->isVisible());
}

TEST_F(DocumentDrops, StandThirtyPointsFromTheEdges)
{
    const auto* const area = view.findChild<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    EXPECT_EQ(area->geometry(), view.rect().adjusted(30, 30, -30, -30));
}

TEST_F(DocumentDrops, NoTextIsCutInALowWindow)
{
    window.resize(700, 300);
    QCoreApplication::processEvents();
    EXPECT_EQ(window.height(), 300);
    for (const auto* const label : view.findChildren<QLabel*>()) {
        if (!label->isVisible() || !label->wordWrap()) continue;
        EXPECT_GE(label->height(), label->heightForWidth(label->width()))
            << qPrintable(label->text());
    }
    // The rest can be scrolled to.
    const auto* const last = view.findChild<DisclaimerBox*>();
    const auto isInSight = [&] { return !last->visibleRegion().isEmpty(); };
    EXPECT_FALSE(isInSight());
    choose->setFocus();
    QTest::keyClick(choose, Qt::Key_PageDown);
    QTest::keyClick(choose, Qt::Key_PageDown);
    EXPECT_TRUE(isInSight());
}

TEST_F(DocumentDrops, TheButtonAsksForPDFs)
{
    choose->click();
    ASSERT_TRUE(prompts.opened);
    EXPECT_EQ(prompts.opened->choice, OpenPanel::Choice::pdfs);
}

TEST_F(DocumentDrops, ReturnAndEnterAreTheButtons)
{
    QTest::keyClick(&window, Qt::Key_Return);
    EXPECT_TRUE(asked());
    QTest::keyClick(&window, Qt::Key_Enter, Qt::KeypadModifier);
    EXPECT_TRUE(asked());
    choose->setFocus();
    QTest::keyClick(choose, Qt::Key_Return);
    EXPECT_TRUE(asked());
}

TEST_F(DocumentDrops, ReturnIsTheButtonsFromAListToo)
{
    QTreeWidget tree;
    window.layout()->addWidget(&tree);
    tree.show();
    tree.setFocus();
    ASSERT_TRUE(tree.hasFocus());
    QTest::keyClick(&tree, Qt::Key_Return);
    EXPECT_TRUE(asked());
    tree.setParent(nullptr);
}

TEST_F(DocumentDrops, ReturnStaysWithATextThatIsTyped)
{
    search.setFocus();
    ASSERT_TRUE(search.hasFocus());
    QTest::keyClick(&search, Qt::Key_Return);
    EXPECT_FALSE(asked());
    QTest::keyClick(&search, Qt::Key_Enter);
    EXPECT_FALSE(asked());
    QPlainTextEdit notes;
    window.layout()->addWidget(&notes);
    notes.show();
    notes.setFocus();
    ASSERT_TRUE(notes.hasFocus());
    QTest::keyClick(&notes, Qt::Key_Return);
    EXPECT_FALSE(asked());
    EXPECT_EQ(notes.toPlainText(), u"\n"_s);
    notes.setParent(nullptr);
    view.setFocus();
    QTest::keyClick(&window, Qt::Key_Return);
    EXPECT_TRUE(asked());
}

TEST_F(DocumentDrops, ReturnDoesNothingWhileThePageIsNotShown)
{
    view.hide();
    QTest::keyClick(&window, Qt::Key_Return);
    EXPECT_FALSE(asked());
}

TEST_F(DocumentDrops, WhileOneIsCheckedItsNameStandsInPlaceOfTheButton)
{
    model->checkDocuments({addDocument("Spring & book.pdf")});
    EXPECT_FALSE(choose->isVisible());
    EXPECT_TRUE(progress->isVisible());
    EXPECT_TRUE(labels().contains(u"Checking Spring & book.pdf…"_s));
    EXPECT_EQ(progress->accessibleName(), u"Checking Spring & book.pdf…"_s);
    QTest::keyClick(&window, Qt::Key_Return);
    EXPECT_FALSE(asked());
    background.runAll();
    EXPECT_TRUE(choose->isVisible());
    EXPECT_FALSE(progress->isVisible());
    QTest::keyClick(&window, Qt::Key_Return);
    EXPECT_TRUE(asked());
}

TEST_F(DocumentDrops, ALongNameDoesNotWidenThePage)
{
    model->checkDocuments({addDocument(std::string(200, 'W') + ".pdf")});
    QCoreApplication::processEvents();
    EXPECT_LT(window.minimumSizeHint().width(), 400);
    EXPECT_TRUE(progress->accessibleName().contains(QString(200, u'W')));
}

TEST_F(DocumentDrops, FilesAreCheckedInTheirOrder)
{
    const auto second = addDocument("b ü.pdf");
    const auto first = addDocument("a.PDF");
    const QByteArray list = QUrl::fromLocalFile(QString::fromStdString(second)).toEncoded() +
                            "\r\n" +
                            QUrl::fromLocalFile(QString::fromStdString(first)).toEncoded() + "\r\n";
    EXPECT_EQ(drop(list), Qt::CopyAction) << "never moved";
    background.runAll();
    EXPECT_THAT(documentPaths(), ElementsAre(second, first));
}

TEST_F(DocumentDrops, AFileWhoseNameIsNotUTF8IsCheckedToo)
{
    const auto path = addDocument("b\xFC.pdf");
    drop("file://" + QByteArray::fromStdString(path.parent_path()) + "/b%FC.pdf");
    background.runAll();
    EXPECT_EQ(model->alert(), std::nullopt);
    ASSERT_EQ(model->documents().size(), 1U);
    EXPECT_EQ(model->documents()[0]->fileName, "b\uFFFD.pdf");
}

TEST_F(DocumentDrops, FilesThatAreNoPDFsAreReported)
{
    drop("file:///tmp/picture.png");
    EXPECT_EQ(model->alert(), "Drop a PDF file. (Other documents: export or print them to PDF "
                              "first, then check the PDF.)");
}

TEST_F(DocumentDrops, MoreFilesAreTakenWhileOneIsChecked)
{
    const auto first = addDocument("a.pdf");
    const auto second = addDocument("b.pdf");
    model->checkDocuments({first});
    drop("file://" + QByteArray::fromStdString(second));
    background.runAll();
    EXPECT_THAT(documentPaths(), ElementsAre(first, second));
}

TEST_F(DocumentDrops, TheAreaIsAccentedWhileFilesAreOverIt)
{
    EXPECT_FALSE(view.targeted());
    EXPECT_TRUE(drag("file:///tmp/a.pdf"));
    EXPECT_TRUE(view.targeted());
    const auto ground = [this] { return view.grab().toImage().pixelColor(view.width() / 2, 45); };
    const QColor tinted = ground();
    QDragLeaveEvent leave;
    QApplication::sendEvent(&view, &leave);
    EXPECT_FALSE(view.targeted());
    EXPECT_NE(ground(), tinted);
    EXPECT_EQ(ground(), view.palette().color(QPalette::Window));
    drop("file:///tmp/a.png");
    EXPECT_FALSE(view.targeted());
}

TEST_F(DocumentDrops, OnlyFilesAreTaken)
{
    for (const QByteArray list :
         {"", "https://example.com/a.pdf", "file://elsewhere/tmp/a.pdf", "trash:///a.pdf"}) {
        EXPECT_FALSE(drag(list)) << list.constData();
        EXPECT_FALSE(view.targeted());
        EXPECT_EQ(drop(list), Qt::IgnoreAction);
    }
    mime.clear();
    mime.setText(u"file:///tmp/a.pdf"_s);
    QDragEnterEvent enter({50, 50}, Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
    EXPECT_THAT(droppedFiles(enter), IsEmpty());
    EXPECT_EQ(background.waiting(), 0U);
}

TEST_F(DocumentDrops, OfFilesAmongOtherAddressesTheFilesAreChecked)
{
    const auto first = addDocument("a.pdf");
    const auto second = addDocument("b.pdf");
    const QByteArray list = "https://example.com/page.pdf\r\nfile://" +
                            QByteArray::fromStdString(first) + "\r\ntrash:///c.pdf\r\nfile://" +
                            QByteArray::fromStdString(second) + "\r\n";
    EXPECT_EQ(drop(list), Qt::CopyAction);
    background.runAll();
    EXPECT_THAT(documentPaths(), ElementsAre(first, second));
    EXPECT_EQ(model->alert(), std::nullopt);
}

TEST_F(DocumentDrops, FilesThatCouldOnlyBeMovedAreNotTaken)
{
    EXPECT_FALSE(drag("file:///tmp/a.pdf", Qt::MoveAction));
    EXPECT_EQ(drop("file:///tmp/a.pdf", Qt::MoveAction), Qt::IgnoreAction);
    EXPECT_EQ(drop("file:///tmp/a.pdf", Qt::LinkAction | Qt::MoveAction), Qt::LinkAction);
}

/// All that is told below this, by role and name.
void collect(QAccessibleInterface* parent, std::vector<std::string>& found)
{
    for (int i = 0; i < parent->childCount(); ++i) {
        QAccessibleInterface* const child = parent->child(i);
        ASSERT_TRUE(child);
        EXPECT_EQ(parent->indexOfChild(child), i);
        found.push_back(child->text(QAccessible::Name).toStdString());
        collect(child, found);
    }
}

TEST_F(DocumentDrops, AreOneThingToAScreenReader)
{
    QAccessibleInterface* const page = QAccessible::queryAccessibleInterface(&view);
    ASSERT_EQ(page->childCount(), 1);
    QAccessibleInterface* const area = page->child(0);
    EXPECT_EQ(area->role(), QAccessible::Grouping);
    EXPECT_EQ(area->text(QAccessible::Name), u"Drop area for PDF files"_s);
    const QString description = area->text(QAccessible::Description);
    for (const QString& text : labels())
        EXPECT_TRUE(description.contains(text)) << qPrintable(text);
}

TEST_F(DocumentDrops, WhatCanBeOperatedIsToldByItself)
{
    QAccessibleInterface* const page = QAccessible::queryAccessibleInterface(&view);
    std::vector<std::string> told;
    collect(page, told);
    EXPECT_THAT(told, ElementsAre("Drop area for PDF files", "Choose PDF…"));
    QAccessibleInterface* const button = page->child(0)->child(0);
    EXPECT_EQ(button->role(), QAccessible::Button);
    button->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_TRUE(QTest::qWaitFor([this] { return prompts.opened.has_value(); }));

    model->checkDocuments({addDocument("a.pdf")});
    told.clear();
    collect(page, told);
    EXPECT_THAT(told, ElementsAre("Drop area for PDF files", "Checking a.pdf…"));
    EXPECT_EQ(page->child(0)->child(0)->role(), QAccessible::ProgressBar);
}

TEST_F(DocumentDrops, CanBeClosedWhileTheButtonHasTheFocus)
{
    auto* const other = new DocumentDropView(*model);
    other->show();
    other->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(other));
    other->findChild<QPushButton*>()->setFocus();
    delete other;
    EXPECT_EQ(prompts.opened, std::nullopt);
}

} // namespace
} // namespace quillmark::test
