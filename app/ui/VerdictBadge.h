// The capsule that shows a verdict: symbol and word in the verdict's colour on a light tint of it.
#pragma once

#include "assessment/Assessment.h"

#include <QColor>
#include <QSize>
#include <QWidget>

#include <optional>

class QPainter;
class QPointF;

namespace quillmark {

/// Large beside a font's name, small in table cells and help.
enum class BadgeSize { small, large };

/// In device-independent pixels.
[[nodiscard]] QSize verdictBadgeSize(Verdict verdict, BadgeSize size);

/// Draws a badge with its top left corner there, for item delegates. A `plate` is an opaque ground
/// for the translucent capsule, where what lies under it would swallow the colour.
void paintVerdictBadge(QPainter& painter, const QPointF& topLeft, Verdict verdict, BadgeSize size,
                       const std::optional<QColor>& plate = {});

class VerdictBadge final : public QWidget {
    Q_OBJECT
public:
    VerdictBadge(Verdict verdict, BadgeSize size, QWidget* parent = nullptr);

    [[nodiscard]] Verdict verdict() const { return m_verdict; }
    void setVerdict(Verdict verdict);
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    Verdict m_verdict;
    BadgeSize m_size;
};

} // namespace quillmark
