#include "ui/UpdateWindows.h"
#include "ui/UpdateDialog.h"

#include "app/model/FakePrompts.h"
#include "model/QtText.h"
#include "text/DateText.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QImage>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTextBrowser>

#include <optional>

namespace quillmark::test {
namespace {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

class UpdateWindowsTest : public testing::Test {
protected:
    UpdateWindowsTest()
    {
        window.show();
        (void)QTest::qWaitForWindowActive(&window);
    }

    template <typename Window>
    [[nodiscard]] static QList<Window*> shown()
    {
        QList<Window*> found;
        for (QWidget* const widget : QApplication::topLevelWidgets())
            if (auto* const wanted = qobject_cast<Window*>(widget); wanted && wanted->isVisible())
                found.push_back(wanted);
        return found;
    }

    /// The only one.
    template <typename Window>
    [[nodiscard]] static Window* only()
    {
        const QList<Window*> found = shown<Window>();
        EXPECT_EQ(found.size(), 1);
        return found.value(0);
    }

    void offer(const UpdateOffer& update)
    {
        windows.showUpdate(update,
                           {
                               .skip = [this] { ++skips; },
                               .checkAutomatically = [this](bool wanted) { automatic = wanted; },
                           });
    }

    [[nodiscard]] static QPushButton* button(const QWidget& parent, const QString& text)
    {
        for (auto* const candidate : parent.findChildren<QPushButton*>())
            if (candidate->text() == text) return candidate;
        return nullptr;
    }

    [[nodiscard]] static QString texts(const QWidget& parent)
    {
        QString all;
        for (const auto* const label : parent.findChildren<QLabel*>())
            all += label->text() + u'\n';
        return all;
    }

    const UpdateOffer news{
        .appName = "Quillmark",
        .version = "1.3",
        .installedVersion = "1.2",
        .published = std::nullopt,
        .notes = "<ul><li>Faster</li></ul><p><a href=\"https://example.org/more\">More</a></p>",
        .notesPage = "https://example.org/notes",
        .page = "https://example.org/1.3",
    };

    QWidget window;
    FakePrompts prompts;
    UpdateWindows windows{window, prompts};
    int skips{};
    std::optional<bool> automatic;
};

TEST_F(UpdateWindowsTest, AnAlertHasItsTextsAndOneButton)
{
    windows.showAlert({"You’re up to date", "Quillmark <b>1.2</b> is the newest version."});
    auto* const box = only<QMessageBox>();
    ASSERT_TRUE(box);
    EXPECT_EQ(box->windowTitle(), u"Quillmark"_s);
    EXPECT_EQ(box->text(), u"You’re up to date"_s);
    EXPECT_EQ(box->informativeText(), u"Quillmark <b>1.2</b> is the newest version."_s);
    EXPECT_EQ(box->icon(), QMessageBox::Information);
    EXPECT_EQ(box->windowModality(), Qt::WindowModal);
    ASSERT_EQ(box->buttons().size(), 1);
    EXPECT_EQ(box->buttons()[0]->text().remove(u'&'), u"OK"_s);
}

TEST_F(UpdateWindowsTest, AnAlertBringsTheWindowToTheFront)
{
    window.showMinimized();
    windows.showAlert({"Title", "Text."});
    EXPECT_FALSE(window.isMinimized());
}

TEST_F(UpdateWindowsTest, AnAlertIsDismissedByReturnAndByEscape)
{
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape}) {
        windows.showAlert({"Title", "Text."});
        QTest::keyClick(only<QMessageBox>(), key);
        EXPECT_TRUE(shown<QMessageBox>().isEmpty());
    }
}

TEST_F(UpdateWindowsTest, ANewerAlertTakesThePlaceOfOneThatIsStillShown)
{
    windows.showAlert({"First", "One."});
    windows.showAlert({"Second", "Two."});
    EXPECT_EQ(only<QMessageBox>()->text(), u"Second"_s);
    EXPECT_EQ(only<QMessageBox>()->informativeText(), u"Two."_s);
}

TEST_F(UpdateWindowsTest, TheQuestionWaitsForNobody)
{
    std::optional<bool> answer;
    windows.askForConsent({"Check?", "Text."}, [&](bool given) { answer = given; });
    auto* const box = only<QMessageBox>();
    EXPECT_EQ(box->windowModality(), Qt::NonModal);
    EXPECT_EQ(box->text(), u"Check?"_s);
    EXPECT_EQ(answer, std::nullopt);
    QTest::mouseClick(button(*box, u"Check Automatically"_s), Qt::LeftButton);
    EXPECT_EQ(answer, true);
}

TEST_F(UpdateWindowsTest, NeitherReturnNorEscapeIsConsent)
{
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape}) {
        std::optional<bool> answer;
        windows.askForConsent({"Check?", "Text."}, [&](bool given) { answer = given; });
        QTest::keyClick(only<QMessageBox>(), key);
        EXPECT_EQ(answer, false);
    }
}

TEST_F(UpdateWindowsTest, AQuestionThatGoesAwayWithTheWindowIsNotAnswered)
{
    std::optional<bool> answer;
    windows.askForConsent({"Check?", "Text."}, [&](bool given) { answer = given; });
    window.close();
    EXPECT_TRUE(shown<QMessageBox>().isEmpty());
    EXPECT_EQ(answer, std::nullopt);
}

TEST_F(UpdateWindowsTest, ANewVersionIsShownWithBothVersionsAndItsNotes)
{
    offer(news);
    auto* const dialog = only<UpdateDialog>();
    ASSERT_TRUE(dialog);
    EXPECT_EQ(dialog->windowModality(), Qt::NonModal);
    const QString all = texts(*dialog);
    EXPECT_TRUE(all.contains(u"A new version of Quillmark is available!\n"_s)) << qPrintable(all);
    EXPECT_TRUE(all.contains(u"Quillmark 1.3 is available; you have 1.2.\n"_s)) << qPrintable(all);
    EXPECT_EQ(dialog->findChild<QTextBrowser*>()->toPlainText(), u"Faster\nMore"_s);
    for (const auto* const label : dialog->findChildren<QLabel*>())
        EXPECT_TRUE(label->text().isEmpty() || label->textFormat() == Qt::PlainText);
    EXPECT_TRUE(dialog->accessibleDescription().contains(u"A new version of Quillmark"_s));
    EXPECT_EQ(dialog->findChild<QTextBrowser*>()->accessibleName(), u"Release notes"_s);
}

TEST_F(UpdateWindowsTest, TheDayOfPublicationIsTold)
{
    UpdateOffer dated = news;
    dated.published = std::chrono::sys_days(std::chrono::year(2026) / 3 / 14) + 12h;
    offer(dated);
    const QString expected = u" Published %1."_s.arg(qtText(dayText(*dated.published)));
    EXPECT_TRUE(texts(*only<UpdateDialog>()).contains(expected));
}

TEST_F(UpdateWindowsTest, ItHasAPicture)
{
    offer(news);
    bool has = false;
    for (const auto* const label : only<UpdateDialog>()->findChildren<QLabel*>())
        has = has || !label->pixmap().isNull();
    EXPECT_TRUE(has);
}

TEST_F(UpdateWindowsTest, WhatCannotBeShownOfAVersionIsReplaced)
{
    UpdateOffer odd = news;
    odd.version = "<b>1\u202E3</b>";
    offer(odd);
    EXPECT_TRUE(texts(*only<UpdateDialog>()).contains(u"Quillmark <b>1\uFFFD3</b> is available"_s));
}

TEST_F(UpdateWindowsTest, ReturnOpensTheDownloadPage)
{
    offer(news);
    QTest::keyClick(only<UpdateDialog>(), Qt::Key_Return);
    EXPECT_EQ(prompts.openedURLs, std::vector<std::string>{"https://example.org/1.3"});
    EXPECT_TRUE(shown<UpdateDialog>().isEmpty());
    EXPECT_EQ(skips, 0);
}

TEST_F(UpdateWindowsTest, ItsButtonsHaveTheirWords)
{
    offer(news);
    const auto* const dialog = only<UpdateDialog>();
    EXPECT_TRUE(button(*dialog, u"Skip This Version"_s));
    EXPECT_TRUE(button(*dialog, u"Remind Me Later"_s));
    ASSERT_TRUE(button(*dialog, u"Download…"_s));
    EXPECT_TRUE(button(*dialog, u"Download…"_s)->isDefault());
    EXPECT_EQ(dialog->focusWidget(), button(*dialog, u"Download…"_s));
}

TEST_F(UpdateWindowsTest, SkippingIsPassedOn)
{
    offer(news);
    QTest::mouseClick(button(*only<UpdateDialog>(), u"Skip This Version"_s), Qt::LeftButton);
    EXPECT_EQ(skips, 1);
    EXPECT_TRUE(shown<UpdateDialog>().isEmpty());
    EXPECT_TRUE(prompts.openedURLs.empty());
}

TEST_F(UpdateWindowsTest, EscapeAndRemindMeLaterOnlyCloseIt)
{
    offer(news);
    QTest::keyClick(only<UpdateDialog>(), Qt::Key_Escape);
    EXPECT_TRUE(shown<UpdateDialog>().isEmpty());
    offer(news);
    QTest::mouseClick(button(*only<UpdateDialog>(), u"Remind Me Later"_s), Qt::LeftButton);
    EXPECT_TRUE(shown<UpdateDialog>().isEmpty());
    EXPECT_EQ(skips, 0);
    EXPECT_EQ(automatic, std::nullopt);
    EXPECT_TRUE(prompts.openedURLs.empty());
}

TEST_F(UpdateWindowsTest, ACriticalUpdateCannotBeSkipped)
{
    UpdateOffer critical = news;
    critical.critical = true;
    offer(critical);
    EXPECT_FALSE(button(*only<UpdateDialog>(), u"Skip This Version"_s));
    EXPECT_TRUE(texts(*only<UpdateDialog>()).contains(u"This is an important update."_s));
}

TEST_F(UpdateWindowsTest, WithoutAPageThereIsNothingToDownload)
{
    UpdateOffer bare = news;
    bare.page.reset();
    bare.notesPage.reset();
    bare.notes.clear();
    offer(bare);
    const auto* const dialog = only<UpdateDialog>();
    EXPECT_FALSE(button(*dialog, u"Download…"_s));
    EXPECT_FALSE(button(*dialog, u"Release Notes on the Web…"_s));
    EXPECT_FALSE(dialog->findChild<QTextBrowser*>()->isVisible());
    EXPECT_TRUE(button(*dialog, u"Remind Me Later"_s)->isDefault());
}

TEST_F(UpdateWindowsTest, TheCheckBoxIsPassedOn)
{
    UpdateOffer checking = news;
    checking.checksAutomatically = true;
    offer(checking);
    auto* const box = only<UpdateDialog>()->findChild<QCheckBox*>();
    EXPECT_EQ(box->text(), u"Check for updates automatically"_s);
    EXPECT_TRUE(box->isChecked());
    QTest::keyClick(box, Qt::Key_Space);
    EXPECT_EQ(automatic, false);
    QTest::keyClick(box, Qt::Key_Space);
    EXPECT_EQ(automatic, true);
}

TEST_F(UpdateWindowsTest, LinksOfTheNotesOpenInTheBrowser)
{
    offer(news);
    auto* const dialog = only<UpdateDialog>();
    auto* const notes = dialog->findChild<QTextBrowser*>();
    notes->setFocus();
    QTest::keyClick(notes, Qt::Key_Tab); // to the only link
    QTest::keyClick(notes, Qt::Key_Return);
    EXPECT_EQ(prompts.openedURLs, std::vector<std::string>{"https://example.org/more"});
    QTest::mouseClick(button(*dialog, u"Release Notes on the Web…"_s), Qt::LeftButton);
    EXPECT_EQ(prompts.openedURLs.back(), "https://example.org/notes");
    EXPECT_TRUE(dialog->isVisible());
}

TEST_F(UpdateWindowsTest, OtherLinksThanForABrowserDoNotOpen)
{
    UpdateOffer odd = news;
    odd.notes = "<p><a href=\"file:///etc/passwd\">More</a></p>";
    offer(odd);
    auto* const notes = only<UpdateDialog>()->findChild<QTextBrowser*>();
    notes->setFocus();
    QTest::keyClick(notes, Qt::Key_Tab);
    QTest::keyClick(notes, Qt::Key_Return);
    EXPECT_TRUE(prompts.openedURLs.empty());
}

TEST_F(UpdateWindowsTest, PicturesInTheNotesAreNotLoaded)
{
    UpdateOffer odd = news;
    odd.notes = "<p><img src=\":/Symbols/folder.svg\">Text</p>";
    offer(odd);
    auto* const notes = only<UpdateDialog>()->findChild<QTextBrowser*>();
    (void)notes->grab();
    const QVariant picture =
        notes->document()->resource(QTextDocument::ImageResource, QUrl(u":/Symbols/folder.svg"_s));
    EXPECT_EQ(picture.value<QImage>().size(), QSize(1, 1));
}

TEST_F(UpdateWindowsTest, APageThatDoesNotOpenIsSaidSo)
{
    prompts.opensURLs = false;
    offer(news);
    QTest::keyClick(only<UpdateDialog>(), Qt::Key_Return);
    ASSERT_EQ(shown<QMessageBox>().size(), 1);
    EXPECT_EQ(only<QMessageBox>()->text(), u"Couldn’t open the page"_s);
    EXPECT_EQ(only<QMessageBox>()->informativeText(),
              u"No browser was found for https://example.org/1.3."_s);
}

TEST_F(UpdateWindowsTest, ANewerOfferTakesThePlaceOfOneThatIsStillShown)
{
    offer(news);
    UpdateOffer newer = news;
    newer.version = "1.4";
    newer.cause = UpdateOffer::Cause::schedule;
    offer(newer);
    EXPECT_EQ(only<UpdateDialog>()->offer().version, "1.4");
}

TEST_F(UpdateWindowsTest, AScheduledCheckLeavesAnOfferOfTheSameVersionAlone)
{
    offer(news);
    const auto* const before = only<UpdateDialog>();
    UpdateOffer again = news;
    again.cause = UpdateOffer::Cause::schedule;
    offer(again);
    EXPECT_EQ(only<UpdateDialog>(), before);
}

TEST_F(UpdateWindowsTest, OnlyWhatTheUserAskedForTakesTheFocus)
{
    UpdateOffer scheduled = news;
    scheduled.cause = UpdateOffer::Cause::schedule;
    offer(scheduled);
    EXPECT_TRUE(only<UpdateDialog>()->testAttribute(Qt::WA_ShowWithoutActivating));
    offer(news);
    EXPECT_FALSE(only<UpdateDialog>()->testAttribute(Qt::WA_ShowWithoutActivating));
    EXPECT_TRUE(QTest::qWaitForWindowActive(only<UpdateDialog>()));
}

TEST_F(UpdateWindowsTest, EverythingGoesAwayWithTheWindow)
{
    offer(news);
    windows.showAlert({"Title", "Text."});
    window.close();
    EXPECT_TRUE(shown<UpdateDialog>().isEmpty());
    EXPECT_TRUE(shown<QMessageBox>().isEmpty());
    EXPECT_EQ(skips, 0);
}

} // namespace
} // namespace quillmark::test
