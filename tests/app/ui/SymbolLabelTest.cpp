#include "ui/SymbolLabel.h"

#include <gtest/gtest.h>

#include <QFontMetrics>
#include <QImage>
#include <QPalette>

namespace quillmark {
namespace {

using namespace Qt::Literals::StringLiterals;

/// What is drawn, without the ground below it.
QImage drawn(QWidget& widget)
{
    QImage image(widget.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    widget.render(&image, {}, {}, QWidget::RenderFlags());
    return image;
}

bool hasColour(const QImage& image, const QColor& colour)
{
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (image.pixelColor(x, y) == colour) return true;
    return false;
}

TEST(SymbolLabel, IsDrawnInTheSecondaryColourOfThePaletteThatItHasNow)
{
    SymbolLabel label(u"folder"_s, 64);
    const QPalette light(Qt::white);
    const QPalette dark(QColor(40, 40, 40));
    for (const QPalette& palette : {light, dark, light}) {
        label.setPalette(palette);
        EXPECT_TRUE(hasColour(drawn(label), secondaryColour(palette)));
    }
    EXPECT_FALSE(hasColour(drawn(label), secondaryColour(dark)));
}

TEST(SymbolLabel, IsAsHighAsTheTextBesideIt)
{
    const SymbolLabel small(u"folder"_s, TextStyle::caption);
    const SymbolLabel large(u"folder"_s, TextStyle::title);
    EXPECT_EQ(small.height(), QFontMetrics(textFont(TextStyle::caption)).height());
    EXPECT_EQ(large.height(), QFontMetrics(textFont(TextStyle::title)).height());
    EXPECT_EQ(large.width(), large.height());
    EXPECT_EQ(SymbolLabel(u"folder"_s, 52).size(), QSize(52, 52));
}

} // namespace
} // namespace quillmark
