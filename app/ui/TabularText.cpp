#include "ui/TabularText.h"

#include <QPainter>
#include <QPointF>

#include <algorithm>

namespace quillmark {

namespace {

/// Not every interface font has digits of one width, and Qt 6.4 cannot ask a font for those that it
/// has beside the others.
int digitWidth(const QFontMetrics& metrics)
{
    int widest = 0;
    for (char16_t digit = u'0'; digit <= u'9'; ++digit)
        widest = std::max(widest, metrics.horizontalAdvance(QChar(digit)));
    return widest;
}

} // namespace

int tabularWidth(const QFontMetrics& metrics, const QString& digits)
{
    return digitWidth(metrics) * static_cast<int>(digits.size());
}

void drawTabular(QPainter& painter, const QPointF& baseline, const QString& digits)
{
    const QFontMetrics metrics = painter.fontMetrics();
    const int width = digitWidth(metrics);
    QPointF at = baseline;
    for (const QChar digit : digits) {
        const qreal inset = (width - metrics.horizontalAdvance(digit)) / 2.0;
        painter.drawText(QPointF(at.x() + inset, at.y()), QString(digit));
        at.rx() += width;
    }
}

} // namespace quillmark
