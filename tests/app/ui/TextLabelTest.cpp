#include "ui/TextLabel.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QHelpEvent>
#include <QImage>
#include <QTest>
#include <QToolTip>

namespace quillmark {
namespace {

using namespace Qt::Literals::StringLiterals;

class ElidedLabel : public testing::Test {
protected:
    ElidedLabel()
    {
        label.setElided(Qt::ElideMiddle);
        label.setText(whole);
        label.resize(200, 24);
        label.show();
    }
    [[nodiscard]] QString toolTip()
    {
        QHelpEvent event(QEvent::ToolTip, {5, 5}, label.mapToGlobal(QPoint(5, 5)));
        QApplication::sendEvent(&label, &event);
        return QToolTip::text();
    }

    const QString whole{u"/fonts/<b>R&D</b>/"_s + QString(200, u'W') + u"/end"_s};
    TextLabel label;
};

TEST_F(ElidedLabel, ShowsBeginningAndEndWhereThereIsNoRoomForAll)
{
    EXPECT_TRUE(label.shownText().startsWith(u"/fonts/<b>R"_s));
    EXPECT_TRUE(label.shownText().contains(u'…'));
    EXPECT_TRUE(label.shownText().endsWith(u"end"_s));
    EXPECT_LE(label.fontMetrics().horizontalAdvance(label.shownText()), 200);
    label.resize(8'000, 24);
    EXPECT_EQ(label.shownText(), whole);
}

TEST_F(ElidedLabel, IsDrawnAsItSays)
{
    const QImage cut = label.grab().toImage();
    TextLabel other(label.shownText());
    other.resize(label.size());
    EXPECT_EQ(cut, other.grab().toImage());
}

TEST_F(ElidedLabel, TellsTheWholeInAToolTipAsText)
{
    EXPECT_TRUE(toolTip().contains(u"/fonts/&lt;b&gt;R&amp;D&lt;/b&gt;/"_s));
    EXPECT_TRUE(toolTip().contains(QString(200, u'W')));
    label.resize(8'000, 24);
    EXPECT_TRUE(QTest::qWaitFor([&] { return toolTip().isEmpty(); }));
}

TEST_F(ElidedLabel, IsSpokenWhole)
{
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&label)->text(QAccessible::Name), whole);
}

TEST_F(ElidedLabel, WhatIsSelectedIsTheTextItself)
{
    label.setTextInteractionFlags(Qt::TextSelectableByMouse);
    label.setSelection(0, static_cast<int>(whole.size()));
    EXPECT_EQ(label.selectedText(), whole);
    EXPECT_EQ(label.shownText(), whole);
}

TEST(TextLabel, IsNotElidedUnlessThatIsWanted)
{
    TextLabel label(QString(200, u'W'));
    label.resize(50, 24);
    EXPECT_EQ(label.shownText(), label.text());
}

} // namespace
} // namespace quillmark
