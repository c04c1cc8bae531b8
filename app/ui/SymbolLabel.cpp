#include "ui/SymbolLabel.h"

#include "ui/Symbols.h"

#include <QEvent>
#include <QFontMetrics>
#include <QPainter>

#include <utility>

namespace quillmark {

SymbolLabel::SymbolLabel(QString symbol, TextStyle besideText, QWidget* parent)
    : QLabel(parent), m_symbol(std::move(symbol)), m_style(besideText)
{
    fit();
}

SymbolLabel::SymbolLabel(QString symbol, int extent, QWidget* parent)
    : QLabel(parent), m_symbol(std::move(symbol))
{
    setFixedSize(extent, extent);
}

void SymbolLabel::fit()
{
    if (!m_style) return;
    const int extent = QFontMetrics(textFont(*m_style)).height();
    setFixedSize(extent, extent);
}

void SymbolLabel::changeEvent(QEvent* event)
{
    QLabel::changeEvent(event);
    if (event->type() == QEvent::ApplicationFontChange || event->type() == QEvent::FontChange)
        fit();
}

void SymbolLabel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.drawPixmap(0, 0,
                       symbolPixmap(m_symbol, secondaryColour(palette()), width(),
                                    painter.device()->devicePixelRatioF()));
}

} // namespace quillmark
