#include "ui/FilterChip.h"

#include "ui/Symbols.h"
#include "ui/TabularText.h"
#include "ui/TextLabel.h"

#include <QEvent>
#include <QPainter>

#include <utility>

namespace quillmark {

namespace {

constexpr int sidePadding = 11;
constexpr int padding = 5;     // above and below
constexpr qreal ringWidth = 2; // of the focus
constexpr int ringRoom = 3;    // around the pill, for the ring and the gap before it
constexpr int gap = 6;         // between symbol, word and number
constexpr float hoverTint = 0.07F;
constexpr float pressedTint = 0.12F;
constexpr float chosenTint = 0.18F;
constexpr float edgeTint = 0.25F;

QColor translucent(QColor colour, float share)
{
    colour.setAlphaF(share);
    return colour;
}

} // namespace

struct FilterChip::Measures {
    QFont font;
    QFontMetrics text;
    int symbol{};
    int word{};
    int count{};
};

FilterChip::FilterChip(QString word, QString symbol, const QColor& colour, QWidget* parent)
    : QAbstractButton(parent), m_word(std::move(word)), m_symbol(std::move(symbol)),
      m_colour(colour)
{
    setCheckable(true);
    // Told to screen readers: one of several.
    setAutoExclusive(true);
    // A click does not take the focus from the field that is being typed in.
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setCount(0);
}

void FilterChip::setCount(int count)
{
    const QString digits = QString::number(count);
    if (digits == m_count) return;
    m_count = digits;
    setText(m_word + QLatin1Char(' ') + m_count);
    updateGeometry();
    update();
}

QColor FilterChip::colour() const
{
    return m_colour.isValid() ? m_colour : palette().color(QPalette::Active, QPalette::Highlight);
}

FilterChip::Measures FilterChip::measures() const
{
    QFont font = textFont(TextStyle::callout);
    // Always wide enough for the chosen state, so that nothing moves when it is chosen.
    font.setWeight(QFont::DemiBold);
    const QFontMetrics text(font);
    return {font, text, m_symbol.isEmpty() ? 0 : text.ascent() + 1, text.horizontalAdvance(m_word),
            tabularWidth(text, m_count)};
}

QSize FilterChip::sizeHint() const
{
    const Measures all = measures();
    const int symbol = all.symbol == 0 ? 0 : all.symbol + gap;
    return {2 * (sidePadding + ringRoom) + symbol + all.word + gap + all.count,
            2 * (padding + ringRoom) + all.text.height()};
}

void FilterChip::paintEvent(QPaintEvent*)
{
    const Measures all = measures();
    const QColor words = palette().color(QPalette::Active, QPalette::WindowText);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);

    const QRectF pill = QRectF(rect()).adjusted(ringRoom, ringRoom, -ringRoom, -ringRoom);
    const QRectF edge = pill.adjusted(0.5, 0.5, -0.5, -0.5);
    const qreal radius = edge.height() / 2;
    QColor ground = translucent(words, isDown() ? pressedTint : underMouse() ? hoverTint : 0.0F);
    if (isChecked()) ground = translucent(colour(), chosenTint);
    painter.setBrush(ground);
    painter.setPen(isChecked() ? QPen(colour(), 1.5) : QPen(translucent(words, edgeTint), 1));
    painter.drawRoundedRect(edge, radius, radius);
    if (hasFocus()) {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(palette().color(QPalette::Active, QPalette::Highlight), ringWidth));
        const QRectF ring = QRectF(rect()).adjusted(1, 1, -1, -1);
        painter.drawRoundedRect(ring, ring.height() / 2, ring.height() / 2);
    }

    QFont font = all.font;
    if (!isChecked()) font.setWeight(QFont::Normal);
    painter.setFont(font);
    const int word = painter.fontMetrics().horizontalAdvance(m_word);
    // In the middle of the room for the wider words of the chosen state.
    const int beside = (all.word - word) / 2;
    qreal x = pill.left() + sidePadding + beside;
    const qreal baseline = pill.top() + (pill.height() - all.text.height()) / 2 + all.text.ascent();
    if (all.symbol != 0) {
        // On whole pixels, where it is sharp.
        painter.drawPixmap(QPoint(qRound(x), (height() - all.symbol) / 2),
                           symbolPixmap(m_symbol, colour(), all.symbol, devicePixelRatioF()));
        x += all.symbol + gap;
    }
    painter.setPen(words);
    painter.drawText(QPointF(x, baseline), m_word);
    x += word + gap;
    if (!isChecked()) painter.setPen(secondaryColour(palette()));
    drawTabular(painter, {x, baseline}, m_count);
}

void FilterChip::changeEvent(QEvent* event)
{
    QAbstractButton::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::ApplicationFontChange)
        updateGeometry();
}

} // namespace quillmark
