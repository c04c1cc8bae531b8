#include "ui/FindingText.h"

#include "ui/Contrast.h"
#include "ui/Symbols.h"
#include "ui/VerdictLook.h"

#include <QEvent>
#include <QFontMetrics>
#include <QPainter>

namespace quillmark {

namespace {

constexpr int symbolGap = 7;

} // namespace

FindingText::FindingText(QWidget* parent) : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
    setAlignment(Qt::AlignLeft | Qt::AlignTop);
    makeRoom();
}

void FindingText::setFinding(Verdict verdict, const QString& symbol, const QString& text)
{
    m_verdict = verdict;
    m_symbol = symbol;
    setText(text);
    update();
}

QColor FindingText::colour() const
{
    return verdictLook(m_verdict).colour;
}

void FindingText::makeRoom()
{
    setContentsMargins(QFontMetrics(font()).height() + symbolGap, 0, 0, 0);
}

void FindingText::changeEvent(QEvent* event)
{
    QLabel::changeEvent(event);
    if (event->type() == QEvent::FontChange) makeRoom();
}

void FindingText::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const int extent = QFontMetrics(font()).height();
    painter.drawPixmap(
        0, 0, symbolPixmap(m_symbol, colour(), extent, painter.device()->devicePixelRatioF()));
    painter.setPen(moreContrastWanted() ? palette().color(QPalette::WindowText) : colour());
    painter.drawText(contentsRect(),
                     static_cast<int>(Qt::AlignLeft | Qt::AlignTop) | Qt::TextWordWrap, text());
}

} // namespace quillmark
