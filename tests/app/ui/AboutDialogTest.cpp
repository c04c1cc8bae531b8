#include "ui/AboutDialog.h"

#include "ui/ApplicationIcon.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QDialogButtonBox>
#include <QFile>
#include <QImage>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QTest>

namespace quillmark::test {
namespace {

using namespace Qt::Literals::StringLiterals;

class AboutDialogTest : public testing::Test {
protected:
    AboutDialogTest()
    {
        window.show();
        (void)QTest::qWaitForWindowActive(&window);
        dialog->open();
        (void)QTest::qWaitForWindowActive(dialog);
    }
    ~AboutDialogTest() override { delete dialog; }

    [[nodiscard]] QString labels() const
    {
        QStringList texts;
        for (const QLabel* const label : dialog->findChildren<QLabel*>())
            texts += label->text();
        return texts.join(u'\n');
    }
    [[nodiscard]] QPlainTextEdit* notices() const { return dialog->findChild<QPlainTextEdit*>(); }

    QWidget window;
    QPointer<AboutDialog> dialog{new AboutDialog(&window)};
};

TEST_F(AboutDialogTest, ItNamesTheProgramItsVersionAndWhatItDoes)
{
    EXPECT_EQ(dialog->windowTitle(), u"About Quillmark"_s);
    EXPECT_TRUE(labels().contains(u"Quillmark"_s));
    EXPECT_TRUE(labels().contains(u"Version " QUILLMARK_VERSION ""_s));
    EXPECT_TRUE(labels().contains(u"keeps everything on this computer"_s));
}

TEST_F(AboutDialogTest, ItBelongsToTheWindowAndBlocksNothingElse)
{
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_EQ(dialog->windowModality(), Qt::WindowModal);
    EXPECT_EQ(dialog->parentWidget(), &window);
}

TEST_F(AboutDialogTest, ReturnAndEscapeCloseItFromEveryWidget)
{
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape}) {
        for (const bool fromNotices : {false, true}) {
            const QPointer<AboutDialog> another = new AboutDialog(&window);
            another->open();
            auto* const field = another->findChild<QPlainTextEdit*>();
            auto* const close = another->findChild<QPushButton*>();
            ASSERT_TRUE(QTest::qWaitFor([&] { return close->isVisible(); }));
            if (fromNotices) field->setFocus();
            QTest::keyClick(fromNotices ? static_cast<QWidget*>(field) : close, key);
            EXPECT_TRUE(QTest::qWaitFor([&] { return another.isNull(); }))
                << QKeySequence(key).toString().toStdString() << fromNotices;
        }
    }
}

TEST_F(AboutDialogTest, CloseIsTheDefaultButton)
{
    const auto buttons = dialog->findChildren<QPushButton*>();
    ASSERT_EQ(buttons.size(), 1);
    EXPECT_TRUE(buttons[0]->isDefault());
    buttons[0]->click();
    EXPECT_TRUE(QTest::qWaitFor([&] { return dialog.isNull(); }));
}

TEST_F(AboutDialogTest, TheNoticesCanBeReadAndCopiedButNotChanged)
{
    const QString before = notices()->toPlainText();
    QTest::keyClicks(notices(), u"x"_s);
    EXPECT_EQ(notices()->toPlainText(), before);
    EXPECT_TRUE(notices()->isReadOnly());
    EXPECT_TRUE(notices()->textInteractionFlags().testFlag(Qt::TextSelectableByKeyboard));
    notices()->setFocus();
    QTest::keyClick(notices(), Qt::Key_Tab);
    EXPECT_FALSE(notices()->hasFocus());
}

TEST_F(AboutDialogTest, TheNoticesAreThoseOfThePackages)
{
    const QString text = thirdPartyNotices();
    for (const auto& words :
         {u"Courier Prime"_s, u"SIL OPEN FONT LICENSE"_s, u"library/qt/"_s, u"library/qpdf/"_s,
          u"The FreeType Project"_s, u"the work of the Independent JPEG Group"_s})
        EXPECT_TRUE(text.contains(words)) << words.toStdString();
    EXPECT_EQ(notices()->toPlainText(), text);
}

TEST_F(AboutDialogTest, EmptyLinesOfTheNoticesAreEmpty)
{
    const QStringList lines = thirdPartyNotices().split(u'\n');
    EXPECT_GT(lines.size(), 500);
    EXPECT_FALSE(lines.contains(u" ."_s));
    EXPECT_FALSE(lines.contains(u"."_s));
    EXPECT_TRUE(
        lines.contains(u"Permission is hereby granted, free of charge, to any person obtaining"_s));
}

TEST_F(AboutDialogTest, AScreenReaderIsToldWhatTheFieldIs)
{
    QAccessibleInterface* const field = QAccessible::queryAccessibleInterface(notices());
    ASSERT_NE(field, nullptr);
    EXPECT_EQ(field->text(QAccessible::Name), u"Third-party notices"_s);
    EXPECT_TRUE(field->state().readOnly);
}

TEST_F(AboutDialogTest, TheIconIsDrawnAtEverySize)
{
    for (const int extent : {16, 22, 24, 32, 48, 64, 128, 256}) {
        const QImage image = applicationIcon().pixmap(extent, extent).toImage();
        EXPECT_EQ(image.size(), QSize(extent, extent));
        EXPECT_EQ(image.pixelColor(0, 0).alpha(), 0) << extent;
        EXPECT_EQ(image.pixelColor(extent / 2, extent / 8).alpha(), 255) << extent;
    }
}

} // namespace
} // namespace quillmark::test
