// Numbers whose digits all have the same width, so that a count does not jitter when it changes.
#pragma once

#include <QFontMetrics>
#include <QString>

class QPainter;
class QPointF;

namespace quillmark {

/// In device-independent pixels.
[[nodiscard]] int tabularWidth(const QFontMetrics& metrics, const QString& digits);

/// Draws digits with the painter's font and pen, from `baseline` on to the right.
void drawTabular(QPainter& painter, const QPointF& baseline, const QString& digits);

} // namespace quillmark
