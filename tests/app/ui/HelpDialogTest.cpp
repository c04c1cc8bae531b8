#include "ui/HelpDialog.h"

#include "assessment/HelpText.h"
#include "model/QtText.h"
#include "ui/VerdictBadge.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>

namespace quillmark {
namespace {

using namespace Qt::Literals::StringLiterals;

class HelpDialogs : public testing::Test {
protected:
    HelpDialogs()
    {
        window.show();
        dialog.open();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&dialog));
    }

    QWidget window;
    HelpDialog dialog{&window};
};

TEST_F(HelpDialogs, HaveTheTextsInTheirOrder)
{
    QStringList texts;
    for (auto* const label : dialog.findChildren<QLabel*>())
        texts << label->text();
    EXPECT_EQ(
        texts,
        QStringList(
            {u"How Quillmark decides"_s,
             u"Quillmark reads what each font file says about itself. It can't see the license you "
             u"bought, so every verdict is a starting point for checking the license, not a "
             u"clearance."_s,
             u"The font's own license fields (or a license file next to it) name an open license: "
             u"SIL Open Font License, Apache, Ubuntu Font Licence, MIT, public domain. These allow "
             u"embedding in things you sell; most don't allow selling the font file itself."_s,
             u"Its embedding bits (OS/2 fsType) say Restricted License, or it came with macOS. "
             u"Apple licenses its bundled fonts for use on Apple devices; a product you sell with "
             u"one embedded generally needs a license from the font's owner."_s,
             u"Anything else: a commercial license named in the font, no license text at all, or a "
             u"PDF font whose data was stripped. Find the license you hold and record it in the "
             u"font's notes."_s,
             u"Embedding bits: installable (no restriction set), preview & print (may be embedded "
             u"in PDFs for viewing and printing), editable, restricted. Many fonts set them "
             u"loosely, so they are shown as background, not as a verdict."_s,
             u"PDF writers often strip the license fields from the copy they embed. Quillmark then "
             u"matches the font by name to an installed font or one in a folder you scanned; scan "
             u"the folder with the fonts you used for the best match."_s}));
}

TEST_F(HelpDialogs, TheirBadgesStandInOneColumn)
{
    const auto badges = dialog.findChildren<VerdictBadge*>();
    ASSERT_EQ(badges.size(), 3);
    EXPECT_EQ(badges[0]->verdict(), Verdict::likelyOK);
    EXPECT_EQ(badges[1]->verdict(), Verdict::restricted);
    EXPECT_EQ(badges[2]->verdict(), Verdict::unknown);
    int top = -1;
    for (const VerdictBadge* const badge : badges) {
        EXPECT_EQ(badge->x(), badges[0]->x());
        EXPECT_GT(badge->y(), top);
        EXPECT_EQ(badge->size(), verdictBadgeSize(badge->verdict(), BadgeSize::small));
        top = badge->y();
    }
}

TEST_F(HelpDialogs, AreModalToTheirWindow)
{
    EXPECT_EQ(dialog.windowModality(), Qt::WindowModal);
    EXPECT_EQ(dialog.windowTitle(), u"How Quillmark decides"_s);
}

TEST_F(HelpDialogs, ReturnEscapeAndDoneCloseThem)
{
    auto* const done = dialog.findChild<QPushButton*>();
    EXPECT_EQ(done->text(), u"Done"_s);
    EXPECT_TRUE(done->isDefault());
    EXPECT_TRUE(done->hasFocus());
    const QSignalSpy finished(&dialog, &QDialog::finished);
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Escape}) {
        QTest::keyClick(&dialog, key);
        EXPECT_FALSE(dialog.isVisible());
        dialog.open();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    }
    done->click();
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(finished.count(), 4);
}

TEST_F(HelpDialogs, AllOfTheTextIsInSight)
{
    const auto* const area = dialog.findChild<QScrollArea*>();
    EXPECT_EQ(area->verticalScrollBar()->maximum(), 0);
    for (auto* const label : dialog.findChildren<QLabel*>())
        EXPECT_GE(label->height(), label->heightForWidth(label->width()));
}

TEST_F(HelpDialogs, TheTextScrollsWhereItDoesNotFit)
{
    dialog.resize(420, 200);
    const auto* const area = dialog.findChild<QScrollArea*>();
    ASSERT_TRUE(QTest::qWaitFor([area] { return area->verticalScrollBar()->maximum() > 100; }));
    const auto* const done = dialog.findChild<QPushButton*>();
    EXPECT_TRUE(dialog.rect().contains(done->geometry()));
}

TEST_F(HelpDialogs, KeysScrollWhileTheFocusStaysWhereItIsSeen)
{
    dialog.resize(420, 200);
    auto* const done = dialog.findChild<QPushButton*>();
    const auto* const bar = dialog.findChild<QScrollArea*>()->verticalScrollBar();
    ASSERT_TRUE(QTest::qWaitFor([bar] { return bar->maximum() > 100; }));
    QTest::keyClick(done, Qt::Key_PageDown);
    EXPECT_GT(bar->value(), 0);
    QTest::keyClick(done, Qt::Key_PageUp);
    EXPECT_EQ(bar->value(), 0);
    QTest::keyClick(done, Qt::Key_End);
    EXPECT_EQ(bar->value(), bar->maximum());
    QTest::keyClick(done, Qt::Key_Home);
    EXPECT_EQ(bar->value(), 0);
    QTest::keyClick(&dialog, Qt::Key_Tab);
    EXPECT_TRUE(done->hasFocus());
}

} // namespace
} // namespace quillmark
