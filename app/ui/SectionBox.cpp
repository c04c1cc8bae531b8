#include "ui/SectionBox.h"

#include "ui/AccessibleRole.h"
#include "ui/TextLabel.h"

#include <QPainter>
#include <QVBoxLayout>

namespace quillmark {

namespace {

constexpr int padding = 12;
constexpr int headingGap = 6;
constexpr qreal radius = 8;

} // namespace

SectionBox::SectionBox(const QString& title, QWidget* parent)
    : QWidget(parent), m_layout(new QVBoxLayout(this))
{
    setAccessibleName(title);
    setAccessibleRole(this, QAccessible::Grouping);
    auto* const heading = new TextLabel(title, TextStyle::callout, TextTone::secondary);
    heading->setBold(true);
    m_heading = heading;
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_layout->setSpacing(headingGap);
    m_layout->addWidget(heading);
}

void SectionBox::setContent(QWidget* content)
{
    auto* const inside = new QVBoxLayout;
    inside->setContentsMargins(padding, padding, padding, padding);
    inside->addWidget(content);
    m_layout->addLayout(inside);
}

void SectionBox::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF box = QRectF(rect()).adjusted(
        0.5, m_heading->geometry().bottom() + 1 + headingGap + 0.5, -0.5, -0.5);
    QColor ground = palette().color(QPalette::WindowText);
    QColor edge = ground;
    ground.setAlphaF(0.035F);
    edge.setAlphaF(0.10F);
    painter.setBrush(ground);
    painter.setPen(QPen(edge, 1));
    painter.drawRoundedRect(box, radius, radius);
}

} // namespace quillmark
