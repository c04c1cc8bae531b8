#include "ui/VerdictBadge.h"

#include "ui/AccessibleRole.h"
#include "ui/Contrast.h"
#include "ui/Symbols.h"
#include "ui/TextLabel.h"
#include "ui/VerdictLook.h"

#include <QApplication>
#include <QEvent>
#include <QFontMetrics>
#include <QPainter>
#include <QPalette>

namespace quillmark {

namespace {

constexpr qreal tint = 0.13;

struct BadgeMetrics {
    QFont font;
    int horizontalPadding{};
    int verticalPadding{};
    int symbol{}; // its width and height
    int gap{};    // between symbol and word
};

BadgeMetrics metricsOf(BadgeSize size)
{
    BadgeMetrics metrics;
    switch (size) {
    case BadgeSize::large:
        metrics.font = textFont(TextStyle::headline);
        metrics.horizontalPadding = 10;
        metrics.verticalPadding = 5;
        break;
    case BadgeSize::small:
        metrics.font = textFont(TextStyle::caption);
        metrics.font.setWeight(QFont::DemiBold);
        metrics.horizontalPadding = 7;
        metrics.verticalPadding = 2;
        break;
    }
    const int ascent = QFontMetrics(metrics.font).ascent();
    metrics.symbol = ascent;
    metrics.gap = ascent / 3;
    return metrics;
}

const QString& wordOf(Verdict verdict, BadgeSize size)
{
    const VerdictLook& look = verdictLook(verdict);
    return size == BadgeSize::large ? look.largeLabel : look.smallLabel;
}

QSize sizeOf(const BadgeMetrics& metrics, const QString& word)
{
    const QFontMetrics text(metrics.font);
    return {2 * metrics.horizontalPadding + metrics.symbol + metrics.gap +
                text.horizontalAdvance(word),
            2 * metrics.verticalPadding + text.height()};
}

} // namespace

QSize verdictBadgeSize(Verdict verdict, BadgeSize size)
{
    return sizeOf(metricsOf(size), wordOf(verdict, size));
}

void paintVerdictBadge(QPainter& painter, const QPointF& topLeft, Verdict verdict, BadgeSize size,
                       const std::optional<QColor>& plate)
{
    const VerdictLook& look = verdictLook(verdict);
    const BadgeMetrics metrics = metricsOf(size);
    const QString& word = wordOf(verdict, size);
    const QRectF capsule(topLeft, sizeOf(metrics, word));
    const qreal radius = capsule.height() / 2;

    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    if (plate) {
        painter.setBrush(*plate);
        painter.drawRoundedRect(capsule, radius, radius);
    }
    QColor ground = look.colour;
    ground.setAlphaF(static_cast<float>(tint));
    painter.setBrush(ground);
    painter.drawRoundedRect(capsule, radius, radius);

    const QPointF symbolAt(capsule.x() + metrics.horizontalPadding,
                           capsule.y() + (capsule.height() - metrics.symbol) / 2);
    painter.drawPixmap(symbolAt, symbolPixmap(look.symbol, look.colour, metrics.symbol,
                                              painter.device()->devicePixelRatioF()));

    painter.setFont(metrics.font);
    painter.setPen(moreContrastWanted() ? QApplication::palette().color(QPalette::Text)
                                        : look.colour);
    const qreal wordAt = symbolAt.x() + metrics.symbol + metrics.gap;
    painter.drawText(QRectF(wordAt, capsule.y(), capsule.right() - wordAt, capsule.height()),
                     static_cast<int>(Qt::AlignLeft | Qt::AlignVCenter) | Qt::TextDontClip |
                         Qt::TextSingleLine,
                     word);
    painter.restore();
}

VerdictBadge::VerdictBadge(Verdict verdict, BadgeSize size, QWidget* parent)
    : QWidget(parent), m_verdict(verdict), m_size(size)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAccessibleRole(this, QAccessible::StaticText);
    setAccessibleName(verdictLook(verdict).accessibleLabel);
}

void VerdictBadge::setVerdict(Verdict verdict)
{
    if (verdict == m_verdict) return;
    m_verdict = verdict;
    setAccessibleName(verdictLook(verdict).accessibleLabel);
    updateGeometry();
    update();
}

QSize VerdictBadge::sizeHint() const
{
    return verdictBadgeSize(m_verdict, m_size);
}

void VerdictBadge::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    paintVerdictBadge(painter, {0, 0}, m_verdict, m_size);
}

void VerdictBadge::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::ApplicationFontChange)
        updateGeometry();
}

} // namespace quillmark
