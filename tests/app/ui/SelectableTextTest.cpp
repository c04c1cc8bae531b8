#include "ui/SelectableText.h"
#include "ui/ShownText.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QMimeData>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>
#include <QVBoxLayout>

#include <string>
#include <utility>
#include <vector>

namespace quillmark {
namespace {

using namespace Qt::Literals::StringLiterals;

TEST(ShownText, KeepsLinesAndTabs)
{
    EXPECT_EQ(shownText("one\ntwo\r\nthree\rfour\tfive"), u"one\ntwo\nthree\nfour\tfive"_s);
    EXPECT_EQ(shownText(""), QString());
    EXPECT_EQ(shownText("<b>&amp;</b>"), u"<b>&amp;</b>"_s);
}

TEST(ShownText, HasNothingInItThatTurnsTheReadingOrder)
{
    EXPECT_EQ(shownText("a\u202Eb\u2066c\u200Fd"), u"a\uFFFDb\uFFFDc\uFFFDd"_s);
    EXPECT_EQ(shownText(std::string("a\0b\x1b[31m\x7f", 9)), u"a\uFFFDb\uFFFD[31m\uFFFD"_s);
    EXPECT_EQ(shownText("a\u2028b\u2029c\u0085d"), u"a\uFFFDb\uFFFDc\uFFFDd"_s);
}

TEST(ShownText, IsCutWhereAWindowWouldDrownInIt)
{
    EXPECT_EQ(shownText(std::string(20'000, 'x')), QString(20'000, u'x'));
    const QString cut = shownText(std::string(20'001, 'x'));
    EXPECT_EQ(cut.left(20'000), QString(20'000, u'x'));
    EXPECT_EQ(cut.mid(20'000), u"…\n(Cut here after 20,000 characters.)"_s);
}

TEST(ShownText, CountsCharactersNotBytes)
{
    std::string text;
    for (int i = 0; i < 20'000; ++i)
        text += "\U0001F58B";
    EXPECT_EQ(shownText(text).size(), 40'000); // of UTF-16
}

TEST(SelectableText, IsReadUnderItsName)
{
    SelectableText text(u"Copyright"_s);
    text.setContent("Copyright 2020");
    QAccessibleInterface* const spoken = QAccessible::queryAccessibleInterface(&text);
    ASSERT_TRUE(spoken);
    EXPECT_EQ(spoken->text(QAccessible::Name), u"Copyright"_s);
    ASSERT_TRUE(spoken->textInterface());
    EXPECT_EQ(spoken->textInterface()->text(0, 14), u"Copyright 2020"_s);
    EXPECT_TRUE(spoken->state().readOnly);
    EXPECT_FALSE(spoken->state().editable);
}

TEST(SelectableText, IsAsTallAsItNeedsToBe)
{
    SelectableText text(u"License"_s);
    text.setContent("word");
    const int line = text.heightForWidth(200);
    EXPECT_NEAR(line, QFontMetrics(text.font()).lineSpacing(), 2);
    text.setContent("one\ntwo\nthree");
    EXPECT_NEAR(text.heightForWidth(200), 3 * line, 3);
    text.setContent(std::string(3000, 'x'));
    EXPECT_GT(text.heightForWidth(200), 20 * line);
    EXPECT_LT(text.heightForWidth(800), text.heightForWidth(200) / 3);
}

TEST(SelectableText, BreaksAWordThatIsLongerThanItsLine)
{
    for (const std::string& content :
         {"/home/anna/" + std::string(200, 'W') + "/Brook.ttf", std::string(2000, 'W')}) {
        SelectableText text(u"Path"_s);
        text.setContent(content);
        text.resize(200, text.heightForWidth(200));
        text.show();
        EXPECT_LE(text.document()->size().width(), 200);
        EXPECT_LE(text.document()->idealWidth(), 200);
        EXPECT_EQ(text.document()->size().height(), text.height());
    }
}

TEST(SelectableText, IsDrawnForItsOwnWidthWhateverItWasAskedFor)
{
    SelectableText text(u"License"_s);
    text.setContent("some words that need more than a single line");
    text.resize(120, text.heightForWidth(120));
    text.show();
    EXPECT_GT(text.heightForWidth(120), text.heightForWidth(400));
    text.grab();
    EXPECT_EQ(text.document()->textWidth(), 120);
}

TEST(SelectableText, AnAsideFollowsIt)
{
    SelectableText text(u"Font"_s);
    text.setContent("Unnamed font", "ABCDEF+Brook");
    EXPECT_EQ(text.toPlainText(), u"Unnamed font  ABCDEF+Brook"_s);
    text.setContent("Cedar");
    EXPECT_EQ(text.toPlainText(), u"Cedar"_s);
}

/// How far the first line's ink is from the left and the right edge.
std::pair<int, int> marginsOf(SelectableText& text)
{
    const QTextLine line = text.document()->firstBlock().layout()->lineAt(0);
    const int left = qRound(line.naturalTextRect().left());
    return {left, text.width() - left - qRound(line.naturalTextWidth())};
}

TEST(SelectableText, BeginsAtTheSameEdgeInEveryScript)
{
    for (const std::string content :
         {"Brook Serif", "\u05D0\u05D1\u05D2 Serif", "\u062E\u0637 (\u0643\u0648\u0641\u064A)"}) {
        SelectableText text(u"Family"_s);
        text.setContent(content);
        text.resize(400, text.heightForWidth(400));
        text.show();
        const auto [left, right] = marginsOf(text);
        EXPECT_EQ(left, 0) << content;
        EXPECT_GT(right, 200) << content;
    }
}

TEST(SelectableText, EachParagraphGoesItsOwnWay)
{
    SelectableText text(u"License"_s);
    text.setContent("One.\n\u05D0\u05D1\u05D2.\nTwo.");
    std::vector<Qt::LayoutDirection> directions;
    for (QTextBlock block = text.document()->begin(); block.isValid(); block = block.next())
        directions.push_back(block.textDirection());
    EXPECT_EQ(directions, (std::vector{Qt::LeftToRight, Qt::RightToLeft, Qt::LeftToRight}));
}

TEST(SelectableText, APathAndWhatFollowsItGoOneWayInEveryScript)
{
    SelectableText text(u"Matched to"_s);
    text.setOneWay();
    text.setContent("/\u05D0\u05D1/\u05D2 (by family)");
    text.resize(400, text.heightForWidth(400));
    text.show();
    const QTextBlock block = text.document()->firstBlock();
    EXPECT_EQ(block.textDirection(), Qt::LeftToRight);
    const auto line = block.layout()->lineAt(0);
    EXPECT_LT(line.cursorToX(1), line.cursorToX(8)) << "the root stands before the remark";
}

TEST(SelectableText, AnAsideStandsBehindATextThatGoesFromRightToLeft)
{
    SelectableText text(u"Font"_s);
    text.setContent("\u05D0\u05D1\u05D2", "ABCDEF+Brook");
    text.resize(400, text.heightForWidth(400));
    text.show();
    const auto line = text.document()->firstBlock().layout()->lineAt(0);
    EXPECT_LT(line.cursorToX(1), line.cursorToX(5));
    EXPECT_EQ(text.document()->firstBlock().textDirection(), Qt::LeftToRight);
    text.setContent("\u05D0\u05D1\u05D2");
    EXPECT_EQ(text.document()->firstBlock().textDirection(), Qt::RightToLeft);
}

TEST(SelectableText, ItsParagraphsStandApart)
{
    SelectableText text(u"Reasons"_s);
    text.setParagraphGap(8);
    text.setContent("One.\nTwo.");
    EXPECT_EQ(text.document()->firstBlock().blockFormat().topMargin(), 0);
    EXPECT_EQ(text.document()->lastBlock().blockFormat().topMargin(), 8);
}

TEST(SelectableText, IsCopiedAsPlainText)
{
    SelectableText text(u"License"_s);
    text.setContent("one\n<b>two</b>");
    text.show();
    text.setFocus();
    QTest::keyClick(&text, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(&text, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), u"one\n<b>two</b>"_s);
    EXPECT_EQ(QApplication::clipboard()->mimeData()->html(), QString());
}

TEST(SelectableText, CannotBeEdited)
{
    SelectableText text(u"License"_s);
    text.setContent("one");
    text.show();
    QTest::keyClicks(&text, u"xyz"_s);
    QTest::keyClick(&text, Qt::Key_Delete);
    QTest::keyClick(&text, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(text.toPlainText(), u"one"_s);
}

TEST(SelectableText, FollowsThePalette)
{
    const QPalette before = QApplication::palette();
    SelectableText text(u"Font"_s);
    text.setContent("one");
    text.show();
    QPalette palette = before;
    palette.setColor(QPalette::WindowText, Qt::green);
    QApplication::setPalette(palette);
    QCoreApplication::processEvents();
    EXPECT_EQ(text.palette().color(QPalette::Text), QColor(Qt::green));
    QApplication::setPalette(before);
    QCoreApplication::processEvents();
    EXPECT_NE(text.palette().color(QPalette::Text), QColor(Qt::green));
}

/// Three texts, the second one hidden, and a link between two fields, in a scroll area.
class TextChains : public testing::Test {
protected:
    TextChains()
    {
        auto* const page = new QWidget;
        auto* const layout = new QVBoxLayout(page);
        for (QWidget* const widget : {static_cast<QWidget*>(before), static_cast<QWidget*>(first),
                                      static_cast<QWidget*>(hidden), static_cast<QWidget*>(link),
                                      static_cast<QWidget*>(last), static_cast<QWidget*>(after)})
            layout->addWidget(widget);
        first->setContent("one\ntwo");
        link->setContent("https://example.com");
        last->setContent("three");
        hidden->hide();
        area.setWidget(page);
        area.setWidgetResizable(true);
        chain = new TextChain(page);
        for (SelectableText* const text : {first, hidden, static_cast<SelectableText*>(link), last})
            chain->add(text);
        chain->update();
        area.resize(300, 400);
        area.show();
        area.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&area));
        before->setFocus();
    }
    static void press(Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); }

    QScrollArea area;
    QLineEdit* before{new QLineEdit};
    SelectableText* first{new SelectableText(u"First"_s)};
    SelectableText* hidden{new SelectableText(u"Hidden"_s)};
    LinkText* link{new LinkText(u"Link"_s)};
    SelectableText* last{new SelectableText(u"Last"_s)};
    QLineEdit* after{new QLineEdit};
    TextChain* chain{};
};

TEST_F(TextChains, AreOneStopOfTheTabKeyAndTheirLinksOthers)
{
    press(Qt::Key_Tab);
    EXPECT_TRUE(first->hasFocus());
    press(Qt::Key_Tab);
    EXPECT_TRUE(link->hasFocus());
    press(Qt::Key_Tab);
    EXPECT_TRUE(after->hasFocus());
    press(Qt::Key_Backtab);
    press(Qt::Key_Backtab);
    EXPECT_TRUE(first->hasFocus());
    press(Qt::Key_Backtab);
    EXPECT_TRUE(before->hasFocus());
}

TEST_F(TextChains, UpAndDownGoFromTextToText)
{
    first->setFocus();
    press(Qt::Key_Down);
    EXPECT_TRUE(first->hasFocus()) << "its second line";
    press(Qt::Key_Down);
    EXPECT_TRUE(link->hasFocus());
    press(Qt::Key_Down);
    EXPECT_TRUE(last->hasFocus());
    press(Qt::Key_Down);
    EXPECT_TRUE(last->hasFocus()) << "there is nothing below";
    press(Qt::Key_Up);
    press(Qt::Key_Up);
    EXPECT_TRUE(first->hasFocus());
    EXPECT_EQ(first->textCursor().blockNumber(), 1) << "from below, its last line";
}

TEST_F(TextChains, TheTextThatWasUsedLastIsTheStop)
{
    last->setFocus();
    after->setFocus();
    press(Qt::Key_Backtab);
    EXPECT_TRUE(last->hasFocus());
    press(Qt::Key_Backtab);
    EXPECT_TRUE(link->hasFocus());
    press(Qt::Key_Backtab);
    EXPECT_TRUE(before->hasFocus());
}

TEST_F(TextChains, AStopThatIsHiddenIsReplaced)
{
    last->setFocus();
    before->setFocus();
    last->hide();
    chain->update();
    press(Qt::Key_Tab);
    EXPECT_TRUE(first->hasFocus());
}

TEST_F(TextChains, AStopStaysUntilTheChainStartsAgain)
{
    last->setFocus();
    before->setFocus();
    chain->update();
    EXPECT_EQ(first->focusPolicy(), Qt::ClickFocus);
    chain->restart();
    EXPECT_EQ(first->focusPolicy(), Qt::StrongFocus);
    EXPECT_EQ(last->focusPolicy(), Qt::ClickFocus);
}

TEST_F(TextChains, ALinkIsOpenedByKeyAndClick)
{
    const QSignalSpy activated(link, &LinkText::activated);
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space})
        QTest::keyClick(link, key);
    EXPECT_EQ(activated.count(), 3);
    QTest::mouseClick(link->viewport(), Qt::LeftButton, {}, {5, 5});
    EXPECT_EQ(activated.count(), 4);
    link->selectAll();
    QTest::mouseClick(link->viewport(), Qt::RightButton, {}, {5, 5});
    EXPECT_EQ(activated.count(), 4);
}

TEST_F(TextChains, DraggingOverALinkSelectsIt)
{
    const QSignalSpy activated(link, &LinkText::activated);
    QTest::mousePress(link->viewport(), Qt::LeftButton, {}, {2, 5});
    QTest::mouseMove(link->viewport(), {60, 5});
    QTest::mouseRelease(link->viewport(), Qt::LeftButton, {}, {60, 5});
    EXPECT_TRUE(link->textCursor().hasSelection());
    EXPECT_EQ(activated.count(), 0);
}

TEST_F(TextChains, ALinkIsTold)
{
    QAccessibleInterface* const spoken = QAccessible::queryAccessibleInterface(link);
    ASSERT_TRUE(spoken);
    EXPECT_EQ(spoken->role(), QAccessible::Link);
    EXPECT_EQ(spoken->text(QAccessible::Name), u"https://example.com"_s);
    EXPECT_EQ(spoken->text(QAccessible::Description), u"Link"_s);
    EXPECT_EQ(spoken->childCount(), 0);
    const QSignalSpy activated(link, &LinkText::activated);
    ASSERT_TRUE(spoken->actionInterface());
    spoken->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(activated.count(), 1);
}

TEST_F(TextChains, TheScrollAreaFollowsTheCaret)
{
    std::string lines;
    for (int i = 0; i < 200; ++i)
        lines += "line\n";
    first->setContent(lines);
    ASSERT_TRUE(QTest::qWaitFor([this] { return area.verticalScrollBar()->maximum() > 500; }));
    first->setFocus();
    QTest::keyClick(first, Qt::Key_End, Qt::ControlModifier);
    EXPECT_GT(area.verticalScrollBar()->value(), 500);
    QTest::keyClick(first, Qt::Key_Home, Qt::ControlModifier);
    EXPECT_LT(area.verticalScrollBar()->value(), 100);
    QTest::keyClick(first, Qt::Key_PageDown);
    EXPECT_GT(area.verticalScrollBar()->value(), 100);
}

} // namespace
} // namespace quillmark
