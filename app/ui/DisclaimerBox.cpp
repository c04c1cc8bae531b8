#include "ui/DisclaimerBox.h"

#include "assessment/Classifier.h"
#include "model/QtText.h"
#include "ui/AccessibleRole.h"
#include "ui/SymbolLabel.h"
#include "ui/TextLabel.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QPalette>

namespace quillmark {

DisclaimerBox::DisclaimerBox(QWidget* parent) : QWidget(parent)
{
    auto* const text = new TextLabel(qtText(Classifier::disclaimer), TextStyle::callout);
    text->setWordWrap(true);
    text->setTextInteractionFlags(Qt::TextSelectableByMouse);

    auto* const layout = new QHBoxLayout(this);
    layout->setContentsMargins(10, 10, 10, 10);
    layout->setSpacing(8);
    layout->addWidget(new SymbolLabel(QStringLiteral("info.circle"), TextStyle::callout), 0,
                      Qt::AlignTop);
    layout->addWidget(text, 1);
    setAccessibleName(qtText(Classifier::disclaimer));
    setAccessibleWhole(this, QAccessible::StaticText);
}

void DisclaimerBox::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor ground = palette().color(QPalette::Highlight);
    ground.setAlphaF(0.08F);
    painter.setPen(Qt::NoPen);
    painter.setBrush(ground);
    painter.drawRoundedRect(rect(), 6, 6);
}

} // namespace quillmark
