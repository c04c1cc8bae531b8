#include "ui/EmptyState.h"

#include "ui/Symbols.h"
#include "ui/TextLabel.h"

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>
#include <utility>

namespace quillmark {

namespace {

constexpr int symbolExtent = 44;
constexpr int widest = 360; // longer lines are hard to read in the middle of a pane
constexpr int paneMargin = 24;
constexpr int symbolGap = 14;
constexpr int textGap = 6;

QFont titleFont()
{
    QFont font = textFont(TextStyle::title);
    font.setWeight(QFont::DemiBold);
    return font;
}

int heightOf(const QFont& font, const QString& text, int width)
{
    if (text.isEmpty()) return 0;
    return QFontMetrics(font)
        .boundingRect(QRect(0, 0, width, 10'000), Qt::AlignHCenter | Qt::TextWordWrap, text)
        .height();
}

} // namespace

EmptyState::EmptyState(QString symbol, const QString& title, const QString& description,
                       QWidget* parent)
    : QLabel(parent), m_symbol(std::move(symbol))
{
    setTextFormat(Qt::PlainText);
    setTexts(title, description);
}

void EmptyState::setTexts(const QString& title, const QString& description)
{
    m_title = title;
    m_description = description;
    setText(description.isEmpty() ? title : title + QLatin1Char('\n') + description);
    update();
}

QSize EmptyState::sizeHint() const
{
    return {widest + 2 * paneMargin, 240};
}

void EmptyState::paintEvent(QPaintEvent*)
{
    const int width = std::min(widest, this->width() - 2 * paneMargin);
    const QFont titles = titleFont();
    const QFont bodies = textFont(TextStyle::body);
    const int titleHeight = heightOf(titles, m_title, width);
    const int descriptionHeight = heightOf(bodies, m_description, width);
    const int height = symbolExtent + symbolGap + titleHeight +
                       (m_description.isEmpty() ? 0 : textGap + descriptionHeight);

    QPainter painter(this);
    // A little above the middle, where the eye expects it.
    int top = std::max(0, (this->height() - height) * 9 / 20);
    painter.drawPixmap((this->width() - symbolExtent) / 2, top,
                       symbolPixmap(m_symbol, secondaryColour(palette()), symbolExtent,
                                    painter.device()->devicePixelRatioF()));
    top += symbolExtent + symbolGap;
    const int left = (this->width() - width) / 2;
    painter.setFont(titles);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(QRect(left, top, width, titleHeight), Qt::AlignHCenter | Qt::TextWordWrap,
                     m_title);
    top += titleHeight + textGap;
    painter.setFont(bodies);
    painter.setPen(secondaryColour(palette()));
    painter.drawText(QRect(left, top, width, descriptionHeight),
                     Qt::AlignHCenter | Qt::TextWordWrap, m_description);
}

} // namespace quillmark
