#include "ui/VerdictLook.h"
#include "ui/Contrast.h"
#include "ui/Symbols.h"
#include "ui/VerdictBadge.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QDir>
#include <QFontMetrics>
#include <QPainter>

#include <array>

namespace quillmark {
namespace {

struct Expected {
    Verdict verdict;
    const char* symbol;
    const char* large;
    const char* small;
    const char* spoken;
    QColor colour;
};

const std::array expectations{
    Expected{Verdict::restricted, "xmark.octagon.fill", "Restricted", "Restricted", "Restricted",
             QColor(204, 46, 38)},
    Expected{Verdict::unknown, "questionmark.circle.fill", "Unknown", "Unknown", "Unknown",
             QColor(199, 128, 0)},
    Expected{Verdict::likelyOK, "checkmark.circle.fill", "Likely OK to embed", "Likely OK",
             "Likely OK to embed", QColor(33, 140, 77)},
};

TEST(VerdictLook, everyVerdictHasItsSymbolWordsAndColour)
{
    for (const Expected& expected : expectations) {
        const VerdictLook& look = verdictLook(expected.verdict);
        EXPECT_EQ(look.symbol, QLatin1String(expected.symbol));
        EXPECT_EQ(look.largeLabel, QLatin1String(expected.large));
        EXPECT_EQ(look.smallLabel, QLatin1String(expected.small));
        EXPECT_EQ(look.accessibleLabel, QLatin1String(expected.spoken));
        EXPECT_EQ(look.colour.rgb(), expected.colour.rgb()) << expected.symbol;
    }
}

TEST(VerdictBadge, isAnnouncedInFullWhateverItsSize)
{
    for (const BadgeSize size : {BadgeSize::small, BadgeSize::large})
        for (const Expected& expected : expectations) {
            VerdictBadge badge(expected.verdict, size);
            QAccessibleInterface* const spoken = QAccessible::queryAccessibleInterface(&badge);
            ASSERT_TRUE(spoken);
            EXPECT_EQ(spoken->text(QAccessible::Name), QLatin1String(expected.spoken));
        }
}

TEST(VerdictBadge, theSmallOneOfALikelyOKFontIsShorterThanTheLargeOne)
{
    EXPECT_LT(verdictBadgeSize(Verdict::likelyOK, BadgeSize::small).width(),
              verdictBadgeSize(Verdict::likelyOK, BadgeSize::large).width());
}

TEST(VerdictBadge, laysItsColourThinlyOverTheGround)
{
    QImage image(verdictBadgeSize(Verdict::restricted, BadgeSize::large),
                 QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    QPainter painter(&image);
    paintVerdictBadge(painter, {0, 0}, Verdict::restricted, BadgeSize::large);
    painter.end();
    // Between symbol and edge: 13 % of (204, 46, 38) on white.
    const QColor ground = image.pixelColor(8, image.height() / 2);
    EXPECT_NEAR(ground.red(), 248, 1);
    EXPECT_NEAR(ground.green(), 228, 1);
    EXPECT_NEAR(ground.blue(), 227, 1);
}

TEST(VerdictBadge, aPlateKeepsTheGroundOfASelectedRowAway)
{
    QImage image(verdictBadgeSize(Verdict::unknown, BadgeSize::small),
                 QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::blue);
    QPainter painter(&image);
    paintVerdictBadge(painter, {0, 0}, Verdict::unknown, BadgeSize::small, QColor(Qt::white));
    painter.end();
    EXPECT_GT(image.pixelColor(5, image.height() / 2).red(), 240);
}

TEST(VerdictBadge, itsWordTakesTheTextColourWhenMoreContrastIsWanted)
{
    const auto darkest = [] {
        VerdictBadge badge(Verdict::unknown, BadgeSize::large);
        badge.resize(badge.sizeHint());
        const QImage image = badge.grab().toImage();
        int least = 255;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                least = std::min(least, image.pixelColor(x, y).red());
        return least;
    };
    EXPECT_GT(darkest(), 150);
    setMoreContrastWanted(true);
    EXPECT_LT(darkest(), 80);
    setMoreContrastWanted(false);
    EXPECT_GT(darkest(), 150);
}

TEST(Symbols, everyDrawingFillsItsSquareWithoutTouchingTheEdge)
{
    const QIcon icon = symbolIcon(QStringLiteral("folder")); // registers the drawings
    ASSERT_FALSE(icon.pixmap(16).isNull());
    const QStringList drawings = QDir(QStringLiteral(":/Symbols")).entryList();
    ASSERT_GE(drawings.size(), 19);
    for (const QString& drawing : drawings) {
        const QString name = drawing.chopped(4);
        const QImage image = symbolPixmap(name, Qt::red, 48, 1).toImage();
        int inked = 0;
        for (int y = 0; y < 48; ++y)
            for (int x = 0; x < 48; ++x) {
                if (qAlpha(image.pixel(x, y)) == 0) continue;
                ++inked;
                EXPECT_EQ(QColor(image.pixel(x, y)).green(), 0) << qPrintable(name);
                EXPECT_TRUE(x > 0 && y > 0 && x < 47 && y < 47) << qPrintable(name);
            }
        EXPECT_GT(inked, 200) << qPrintable(name);
    }
}

TEST(Symbols, aDrawingFollowsThePalette)
{
    const QIcon icon = symbolIcon(QStringLiteral("folder"));
    const auto darkness = [&](QIcon::Mode mode) {
        const QImage image = icon.pixmap(QSize(32, 32), mode).toImage();
        for (int x = 0; x < 32; ++x)
            if (image.pixelColor(x, 16).alpha() == 255) return image.pixelColor(x, 16);
        return QColor();
    };
    const QPalette before = QApplication::palette();
    QPalette palette = before;
    palette.setColor(QPalette::Active, QPalette::WindowText, Qt::green);
    palette.setColor(QPalette::Active, QPalette::HighlightedText, Qt::yellow);
    QApplication::setPalette(palette);
    EXPECT_EQ(darkness(QIcon::Normal), QColor(Qt::green));
    EXPECT_EQ(darkness(QIcon::Selected), QColor(Qt::yellow));
    QApplication::setPalette(before);
    EXPECT_NE(darkness(QIcon::Normal), QColor(Qt::green));
}

TEST(Symbols, aDrawingIsSharpOnADisplayWithTwiceThePixels)
{
    const QPixmap picture = symbolPixmap(QStringLiteral("folder"), Qt::black, 16, 2);
    EXPECT_EQ(picture.width(), 32);
    EXPECT_EQ(picture.deviceIndependentSize(), QSizeF(16, 16));
}

} // namespace
} // namespace quillmark
