#include "ui/NoteEditor.h"

#include "app/model/ModelFixture.h"
#include "ui/SelectableText.h"
#include "ui/TextLabel.h"

#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QPalette>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <QToolButton>
#include <QWheelEvent>

#include <cstdlib>

namespace quillmark::test {
namespace {

using namespace Qt::Literals::StringLiterals;
using testing::ElementsAre;

class NoteEditors : public ModelFixture {
protected:
    NoteEditors()
    {
        editor.resize(300, 500);
        editor.show();
        editor.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&editor));
        editor.setKey("Brook");
    }

    template <typename Widget>
    [[nodiscard]] Widget* named(const QString& name) const
    {
        for (auto* const widget : editor.findChildren<Widget*>())
            if (widget->accessibleName() == name) return widget;
        return nullptr;
    }
    [[nodiscard]] QPushButton* button(const QString& words) const
    {
        for (auto* const button : editor.findChildren<QPushButton*>())
            if (button->text() == words) return button;
        return nullptr;
    }
    /// The label in sight that begins with `start`; its text, or "(none)".
    [[nodiscard]] QString label(const QString& start) const
    {
        for (auto* const label : editor.findChildren<QLabel*>())
            if (label->isVisible() && label->text().startsWith(start)) return label->text();
        return u"(none)"_s;
    }
    void attach(const std::string& key, const std::string& name)
    {
        model->attachFile(key);
        prompts.answerOpen({folder.write(name, "paid")});
        background.runAll();
    }
    [[nodiscard]] LicenseNote note(const std::string& key = "Brook") const
    {
        return model->note(key);
    }

    NoteEditor editor{*model};
    QComboBox* license{named<QComboBox>(u"License type"_s)};
    QLineEdit* boughtFrom{named<QLineEdit>(u"Bought from"_s)};
    QPlainTextEdit* text{named<QPlainTextEdit>(u"Notes"_s)};
    QLineEdit* link{named<QLineEdit>(u"Link"_s)};
    QToolButton* openLink{editor.findChild<QToolButton*>()};
};

TEST_F(NoteEditors, HaveTheirFieldsWithNamesAndPrompts)
{
    ASSERT_TRUE(license && boughtFrom && text && link && openLink);
    EXPECT_EQ(boughtFrom->placeholderText(), u"Shop, foundry or website"_s);
    EXPECT_EQ(link->placeholderText(), u"License or receipt URL"_s);
    EXPECT_EQ(openLink->text(), u"Open the link"_s);
    EXPECT_EQ(openLink->toolTip(), u"Open the link"_s);
    EXPECT_LT(license->y(), boughtFrom->y());
    EXPECT_LT(boughtFrom->y(), text->y());
    EXPECT_LT(text->y(), link->y());
    EXPECT_LT(link->y(), button(u"Attach File…"_s)->y());
    for (QWidget* const field : {static_cast<QWidget*>(license), static_cast<QWidget*>(boughtFrom),
                                 static_cast<QWidget*>(text), static_cast<QWidget*>(link)}) {
        QAccessibleInterface* const spoken = QAccessible::queryAccessibleInterface(field);
        EXPECT_EQ(spoken->relations(QAccessible::Label).size(), 1)
            << qPrintable(field->accessibleName());
    }
}

TEST_F(NoteEditors, OfferTheKindsOfLicensesInTheirOrder)
{
    std::vector<std::string> labels;
    for (int i = 0; i < license->count(); ++i)
        labels.push_back(license->itemText(i).toStdString());
    EXPECT_THAT(labels,
                ElementsAre("Not set", "Open license (OFL, Apache, \u2026)", "Desktop",
                            "Desktop + commercial products / POD", "Web font", "App embedding",
                            "Ebook / ePub", "Extended / enterprise", "Came with macOS", "Other"));
    license->setCurrentIndex(3);
    EXPECT_EQ(note().license, HeldLicense::desktopCommercial);
}

TEST_F(NoteEditors, ShowTheNoteThatThereIs)
{
    model->saveNote({.boughtFrom = "A shop",
                     .license = HeldLicense::web,
                     .url = "https://example.com",
                     .text = "One\nTwo"},
                    "Cedar");
    editor.setKey("Cedar");
    EXPECT_EQ(license->currentText(), u"Web font"_s);
    EXPECT_EQ(boughtFrom->text(), u"A shop"_s);
    EXPECT_EQ(text->toPlainText(), u"One\nTwo"_s);
    EXPECT_EQ(link->text(), u"https://example.com"_s);
    editor.setKey("Brook");
    EXPECT_EQ(license->currentText(), u"Not set"_s);
    EXPECT_EQ(boughtFrom->text(), QString());
    EXPECT_EQ(text->toPlainText(), QString());
    EXPECT_EQ(link->text(), QString());
}

TEST_F(NoteEditors, ShowingANoteSavesNothing)
{
    model->saveNote({.boughtFrom = "A shop", .text = "a\u00A0b\r\nc"}, "Cedar");
    const auto saved = note("Cedar");
    now += std::chrono::hours(1);
    const auto changed = count(&AppModel::notesChanged);
    editor.setKey("Cedar");
    editor.setKey("Brook");
    EXPECT_EQ(*changed, 0);
    EXPECT_EQ(note("Cedar"), saved);
}

TEST_F(NoteEditors, EveryEditIsSavedAtOnce)
{
    QTest::keyClicks(boughtFrom, u"Shop"_s);
    EXPECT_EQ(note().boughtFrom, "Shop");
    QTest::keyClicks(text, u"Paid"_s);
    QTest::keyClick(text, Qt::Key_Return);
    QTest::keyClicks(text, u"twice"_s);
    EXPECT_EQ(note().text, "Paid\ntwice");
    QTest::keyClicks(link, u"https://x.org"_s);
    EXPECT_EQ(note().url, "https://x.org");
    EXPECT_EQ(note().boughtFrom, "Shop");
    EXPECT_EQ(note().updated, std::chrono::floor<std::chrono::seconds>(now));
}

TEST_F(NoteEditors, AnEditChangesOnlyItsOwnField)
{
    model->saveNote({.boughtFrom = "A\nshop", .text = "a\u00A0b\r\nc"}, "Cedar");
    editor.setKey("Cedar");
    license->setCurrentIndex(2);
    EXPECT_EQ(note("Cedar").text, "a\u00A0b\r\nc");
    EXPECT_EQ(note("Cedar").boughtFrom, "A\nshop");
    text->moveCursor(QTextCursor::End);
    QTest::keyClicks(text, u"!"_s);
    EXPECT_EQ(note("Cedar").text, "a\u00A0b\nc!") << "no-break spaces stay what they are";
}

TEST_F(NoteEditors, TheCaretStaysWhereOneTypes)
{
    QTest::keyClicks(boughtFrom, u"Shop"_s);
    boughtFrom->setCursorPosition(1);
    QTest::keyClicks(boughtFrom, u"xy"_s);
    EXPECT_EQ(boughtFrom->text(), u"Sxyhop"_s);
    QTest::keyClicks(text, u"Paid"_s);
    text->moveCursor(QTextCursor::Start);
    QTest::keyClicks(text, u"xy"_s);
    EXPECT_EQ(note().text, "xyPaid");
}

TEST_F(NoteEditors, SelectingAnotherFontKeepsTheNotesApart)
{
    QTest::keyClicks(boughtFrom, u"First"_s);
    QTest::keyClicks(text, u"First"_s);
    editor.setKey("Cedar");
    EXPECT_EQ(boughtFrom->text(), QString());
    QTest::keyClicks(text, u"Second"_s);
    EXPECT_EQ(note("Brook").boughtFrom, "First");
    EXPECT_EQ(note("Brook").text, "First");
    EXPECT_EQ(note("Cedar").boughtFrom, "");
    EXPECT_EQ(note("Cedar").text, "Second");
    editor.setKey("Brook");
    EXPECT_EQ(text->toPlainText(), u"First"_s);
}

TEST_F(NoteEditors, WhatWasTypedForOneFontIsNotUndoneIntoAnother)
{
    QTest::keyClicks(boughtFrom, u"First"_s);
    QTest::keyClicks(link, u"http://first"_s);
    QTest::keyClicks(text, u"First"_s);
    boughtFrom->clear();
    text->selectAll();
    QTest::keyClick(text, Qt::Key_Delete);
    editor.setKey("Cedar");
    for (QWidget* const field : {static_cast<QWidget*>(boughtFrom), static_cast<QWidget*>(text),
                                 static_cast<QWidget*>(link)}) {
        QTest::keyClick(field, Qt::Key_Z, Qt::ControlModifier);
        QTest::keyClick(field, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    }
    EXPECT_FALSE(boughtFrom->isUndoAvailable());
    EXPECT_FALSE(text->document()->isUndoAvailable());
    EXPECT_TRUE(note("Cedar").isEmpty());
    EXPECT_EQ(boughtFrom->text() + text->toPlainText() + link->text(), QString());
}

TEST_F(NoteEditors, TypingCanBeUndoneForTheSameFont)
{
    QTest::keyClicks(text, u"First"_s);
    ASSERT_TRUE(text->document()->isUndoAvailable());
    text->undo();
    EXPECT_EQ(note().text, "");
}

TEST_F(NoteEditors, ANoteThatWasNeverEditedShowsNoTimeOfSaving)
{
    EXPECT_EQ(label(u"Saved"_s), u"(none)"_s);
    QTest::keyClicks(boughtFrom, u"S"_s);
    const QString saved = label(u"Saved"_s);
    EXPECT_TRUE(saved.startsWith(u"Saved Mar 14, 2026"_s)) << qPrintable(saved);
    now += std::chrono::hours(24);
    QTest::keyClicks(boughtFrom, u"h"_s);
    EXPECT_TRUE(label(u"Saved"_s).startsWith(u"Saved Mar 15, 2026"_s));
    boughtFrom->clear();
    EXPECT_EQ(label(u"Saved"_s), u"(none)"_s) << "a note that says nothing is none";
    editor.setKey("Cedar");
    EXPECT_EQ(label(u"Saved"_s), u"(none)"_s);
}

TEST_F(NoteEditors, ALinkCanBeOpenedWhenItIsOne)
{
    for (const QString& typed :
         {u"example.com"_s, u"www.example.com"_s, u"ftp://example.com"_s, u"HTTP://example.com"_s,
          u" http://example.com"_s, u"http"_s, u"http://"_s, u"file:///etc/passwd"_s, u""_s}) {
        link->setText(typed);
        EXPECT_FALSE(openLink->isVisible()) << qPrintable(typed);
    }
    link->setText(u"https://example.com/receipt"_s);
    EXPECT_TRUE(openLink->isVisible());
    openLink->click();
    EXPECT_THAT(prompts.openedURLs, ElementsAre("https://example.com/receipt"));
    EXPECT_EQ(QAccessible::queryAccessibleInterface(openLink)->text(QAccessible::Name),
              u"Open the link"_s);
    editor.setKey("Cedar");
    EXPECT_FALSE(openLink->isVisible());
}

TEST_F(NoteEditors, WithoutAnAttachmentSaySo)
{
    EXPECT_EQ(label(u"No file"_s), u"No file attached"_s);
    EXPECT_FALSE(button(u"Open"_s)->isVisible());
    EXPECT_FALSE(button(u"Remove"_s)->isVisible());
    EXPECT_TRUE(button(u"Attach File…"_s)->isVisible());
}

TEST_F(NoteEditors, ThePaperclipFollowsTheColoursOfTheDesktop)
{
    attach("Brook", "Receipt.pdf");
    auto* const paperclip = named<QLabel>(u"Attached"_s);
    ASSERT_TRUE(paperclip && paperclip->isVisible());
    const auto colour = [&] {
        QImage image(paperclip->size(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        paperclip->render(&image, {}, {}, QWidget::RenderFlags());
        QColor strongest(Qt::transparent);
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                if (image.pixelColor(x, y).alpha() > strongest.alpha())
                    strongest = image.pixelColor(x, y);
        return strongest;
    };
    const auto isNear = [](const QColor& one, const QColor& other) {
        constexpr int rounding = 4; // of thin lines
        return std::abs(one.red() - other.red()) <= rounding &&
               std::abs(one.green() - other.green()) <= rounding &&
               std::abs(one.blue() - other.blue()) <= rounding;
    };
    const QPalette light = editor.palette();
    const QPalette dark(QColor(40, 40, 40));
    EXPECT_TRUE(isNear(colour(), secondaryColour(light))) << qPrintable(colour().name());
    editor.setPalette(dark);
    EXPECT_TRUE(isNear(colour(), secondaryColour(dark))) << qPrintable(colour().name());
    EXPECT_FALSE(isNear(secondaryColour(light), secondaryColour(dark)));
}

TEST_F(NoteEditors, AFileIsAttachedOpenedAndRemoved)
{
    QTest::keyClicks(boughtFrom, u"Shop"_s);
    button(u"Attach File…"_s)->click();
    prompts.answerOpen({folder.write("Receipt 1.pdf", "paid")});
    background.runAll();
    const auto* const name = named<SelectableText>(u"Attachment"_s);
    ASSERT_TRUE(name->isVisible());
    EXPECT_EQ(name->toPlainText(), u"Receipt 1.pdf"_s);
    EXPECT_EQ(label(u"No file"_s), u"(none)"_s);
    EXPECT_EQ(boughtFrom->text(), u"Shop"_s);

    button(u"Open"_s)->click();
    EXPECT_EQ(prompts.openedURLs.size(), 1U);

    QTest::keyClicks(boughtFrom, u"!"_s);
    EXPECT_EQ(note().attachmentName, "Receipt 1.pdf");

    button(u"Remove"_s)->click();
    EXPECT_FALSE(name->isVisible());
    EXPECT_EQ(label(u"No file"_s), u"No file attached"_s);
    EXPECT_EQ(note().attachment, std::nullopt);
    EXPECT_EQ(note().boughtFrom, "Shop!");
}

TEST_F(NoteEditors, AFileThatIsReadyLateGoesToTheFontItWasChosenFor)
{
    button(u"Attach File…"_s)->click();
    prompts.answerOpen({folder.write("receipt.pdf", "paid")});
    editor.setKey("Cedar");
    background.runAll();
    EXPECT_EQ(label(u"No file"_s), u"No file attached"_s);
    EXPECT_EQ(note("Cedar"), LicenseNote());
    editor.setKey("Brook");
    EXPECT_EQ(named<SelectableText>(u"Attachment"_s)->toPlainText(), u"receipt.pdf"_s);
}

TEST_F(NoteEditors, AFileThatIsReadyWhileOneTypesDisturbsNothing)
{
    model->attachFile("Brook");
    prompts.answerOpen({folder.write("receipt.pdf", "paid")});
    QTest::keyClicks(text, u"Paid"_s);
    text->moveCursor(QTextCursor::Start);
    background.runAll();
    QTest::keyClicks(text, u"x"_s);
    EXPECT_EQ(note().text, "xPaid");
    EXPECT_TRUE(note().attachment);
    EXPECT_TRUE(text->document()->isUndoAvailable());
}

TEST_F(NoteEditors, TheTabKeyLeavesTheNotes)
{
    text->setFocus();
    QTest::keyClick(text, Qt::Key_Tab);
    EXPECT_TRUE(link->hasFocus());
    QTest::keyClick(link, Qt::Key_Backtab);
    EXPECT_TRUE(text->hasFocus());
    EXPECT_EQ(note().text, "");
}

TEST_F(NoteEditors, TheWheelScrollsPastThePicker)
{
    license->setFocus();
    QWheelEvent down({5, 5}, license->mapToGlobal(QPointF(5, 5)), {}, {0, -120}, Qt::NoButton,
                     Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(license, &down);
    EXPECT_FALSE(down.isAccepted());
    EXPECT_EQ(license->currentIndex(), 0);
    EXPECT_TRUE(note().isEmpty());
}

TEST_F(NoteEditors, TakeLongTextsWhole)
{
    const std::string url = "https://example.com/" + std::string(60'000, 'a');
    model->saveNote({.url = url}, "Cedar");
    editor.setKey("Cedar");
    EXPECT_EQ(link->text().size(), static_cast<qsizetype>(url.size()));
}

TEST_F(NoteEditors, WithoutAFontSaveNothing)
{
    NoteEditor idle(*model);
    for (auto* const field : idle.findChildren<QLineEdit*>())
        QTest::keyClicks(field, u"x"_s);
    EXPECT_EQ(model->notes(), NotesBook());
}

} // namespace
} // namespace quillmark::test
