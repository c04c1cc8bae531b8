#include "ui/TextLabel.h"

#include "ui/ToolTip.h"

#include <QApplication>
#include <QEvent>
#include <QFontDatabase>
#include <QFontMetrics>
#include <QHelpEvent>
#include <QStyle>
#include <QStylePainter>
#include <QToolTip>

namespace quillmark {

namespace {

QFont scaled(qreal factor, QFont::Weight weight = QFont::Normal)
{
    QFont font = QApplication::font();
    if (font.pointSizeF() > 0)
        font.setPointSizeF(font.pointSizeF() * factor);
    else
        font.setPixelSize(qRound(font.pixelSize() * factor));
    if (weight != QFont::Normal) font.setWeight(weight);
    return font;
}

QColor mixed(const QColor& colour, const QColor& ground, qreal share)
{
    const auto channel = [&](int above, int below) {
        return qRound(above * share + below * (1 - share));
    };
    return {channel(colour.red(), ground.red()), channel(colour.green(), ground.green()),
            channel(colour.blue(), ground.blue())};
}

} // namespace

QFont textFont(TextStyle style)
{
    switch (style) {
    case TextStyle::body:
        return scaled(1);
    case TextStyle::title:
        return scaled(1.5);
    case TextStyle::headline:
        return scaled(1.1, QFont::DemiBold);
    case TextStyle::callout:
        return scaled(0.95);
    case TextStyle::caption:
        return scaled(0.88);
    case TextStyle::monospaced: {
        QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
        const QFont body = scaled(0.95);
        if (body.pointSizeF() > 0)
            font.setPointSizeF(body.pointSizeF());
        else
            font.setPixelSize(body.pixelSize());
        return font;
    }
    }
    return {};
}

QColor secondaryColour(const QPalette& palette)
{
    return mixed(palette.color(QPalette::Active, QPalette::WindowText),
                 palette.color(QPalette::Active, QPalette::Window), 0.68);
}

TextLabel::TextLabel(const QString& text, TextStyle style, TextTone tone, QWidget* parent)
    : QLabel(parent), m_style(style), m_tone(tone)
{
    setTextFormat(Qt::PlainText);
    setText(text);
    applyStyle();
}

void TextLabel::setBold(bool bold)
{
    m_bold = bold;
    applyStyle();
}

void TextLabel::setElided(Qt::TextElideMode mode)
{
    m_elided = mode;
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    update();
}

QString TextLabel::shownText() const
{
    // Whoever selects in it sees the text itself.
    if (!m_elided || hasSelectedText()) return text();
    return QFontMetrics(font()).elidedText(text(), *m_elided, contentsRect().width());
}

bool TextLabel::event(QEvent* event)
{
    if (event->type() != QEvent::ToolTip || !m_elided) return QLabel::event(event);
    const bool isCut = shownText() != text();
    QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(),
                       isCut ? plainToolTip(text()) : QString(), this);
    return true;
}

void TextLabel::paintEvent(QPaintEvent* event)
{
    const QString shown = shownText();
    if (shown == text()) return QLabel::paintEvent(event);
    QStylePainter painter(this);
    const bool fromLeft = layoutDirection() == Qt::LeftToRight; // as QLabel has it for plain text
    const int flags = static_cast<int>(QStyle::visualAlignment(layoutDirection(), alignment())) |
                      Qt::TextSingleLine |
                      (fromLeft ? Qt::TextForceLeftToRight : Qt::TextForceRightToLeft);
    painter.drawItemText(contentsRect(), flags, palette(), isEnabled(), shown, foregroundRole());
}

void TextLabel::changeEvent(QEvent* event)
{
    QLabel::changeEvent(event);
    if (event->type() == QEvent::ApplicationFontChange ||
        event->type() == QEvent::ApplicationPaletteChange || event->type() == QEvent::PaletteChange)
        applyStyle();
}

void TextLabel::applyStyle()
{
    // Setting a palette is a change of the palette.
    if (m_applying) return;
    m_applying = true;
    QFont font = textFont(m_style);
    if (m_bold) font.setBold(true);
    setFont(font);
    if (m_tone == TextTone::secondary) {
        QPalette own;
        own.setColor(QPalette::WindowText, secondaryColour(QApplication::palette()));
        setPalette(own);
    }
    m_applying = false;
}

} // namespace quillmark
