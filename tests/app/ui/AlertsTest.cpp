#include "ui/Alerts.h"

#include "app/model/ModelFixture.h"

#include <QApplication>
#include <QMessageBox>
#include <QTest>
#include <QWidget>

namespace quillmark::test {
namespace {

using namespace Qt::Literals::StringLiterals;

class AlertsTest : public ModelFixture {
protected:
    AlertsTest()
    {
        window.show();
        (void)QTest::qWaitForWindowActive(&window);
    }

    [[nodiscard]] static QList<QMessageBox*> boxes()
    {
        QList<QMessageBox*> found;
        for (QWidget* const widget : QApplication::topLevelWidgets())
            if (auto* const box = qobject_cast<QMessageBox*>(widget); box && box->isVisible())
                found.push_back(box);
        return found;
    }

    QWidget window;
    Alerts* alerts{new Alerts(*model, &window)};
};

TEST_F(AlertsTest, ABoxNamedAfterTheProductShowsTheTextWithOneButton)
{
    model->setAlert("No font files were found in <b>x</b>.");
    ASSERT_EQ(boxes().size(), 1);
    EXPECT_EQ(boxes()[0]->windowTitle(), u"Quillmark"_s);
    EXPECT_EQ(boxes()[0]->text(), u"No font files were found in <b>x</b>."_s);
    EXPECT_EQ(boxes()[0]->textFormat(), Qt::PlainText);
    EXPECT_EQ(boxes()[0]->buttons().size(), 1);
    EXPECT_EQ(boxes()[0]->windowModality(), Qt::WindowModal);
}

TEST_F(AlertsTest, WhatANameHoldsNeitherBreaksTheTextNorTurnsIt)
{
    model->setAlert("a\n\u202Efdp.exe couldn't be opened as a PDF.");
    ASSERT_EQ(boxes().size(), 1);
    EXPECT_EQ(boxes()[0]->text(), u"a\uFFFD\uFFFDfdp.exe couldn't be opened as a PDF."_s);
}

TEST_F(AlertsTest, DismissingItClearsTheAlert)
{
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape}) {
        model->setAlert("Something went wrong.");
        ASSERT_EQ(boxes().size(), 1);
        QTest::keyClick(boxes()[0], key);
        EXPECT_EQ(model->alert(), std::nullopt);
        EXPECT_TRUE(boxes().isEmpty());
    }
}

TEST_F(AlertsTest, ANewerTextTakesThePlaceOfOneThatIsStillShown)
{
    model->setAlert("First.");
    model->setAlert("Second.");
    ASSERT_EQ(boxes().size(), 1);
    EXPECT_EQ(boxes()[0]->text(), u"Second."_s);
    QTest::keyClick(boxes()[0], Qt::Key_Return);
    EXPECT_EQ(model->alert(), std::nullopt);
}

TEST_F(AlertsTest, AnAlertThatIsWithdrawnIsNoLongerShown)
{
    model->setAlert("Something went wrong.");
    model->setAlert(std::nullopt);
    EXPECT_TRUE(boxes().isEmpty());
}

TEST_F(AlertsTest, AnAlertFromBeforeTheWindowIsShown)
{
    delete alerts;
    model->setAlert("The settings could not be read.");
    alerts = new Alerts(*model, &window);
    EXPECT_EQ(boxes().size(), 1);
}

} // namespace
} // namespace quillmark::test
