#include "ui/ListHeading.h"

#include "ui/TextLabel.h"

#include <QStyle>
#include <QVBoxLayout>

namespace quillmark {

ListHeading::ListHeading(QWidget* parent)
    : QWidget(parent), m_title(new TextLabel({}, TextStyle::title)),
      m_subtitle(new TextLabel({}, TextStyle::callout, TextTone::secondary))
{
    m_title->setBold(true);
    // A long folder name or path must not widen the window. Of a path both ends tell most.
    m_title->setElided(Qt::ElideRight);
    m_subtitle->setElided(Qt::ElideMiddle);
    for (TextLabel* const label : {m_title, m_subtitle}) {
        label->setTextInteractionFlags(Qt::TextSelectableByMouse);
        // A name of any script begins above the list, where all others do.
        label->setAlignment(QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft) |
                            Qt::AlignAbsolute | Qt::AlignVCenter);
    }
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    layout->addWidget(m_title);
    layout->addWidget(m_subtitle);
}

void ListHeading::setTexts(const QString& title, const QString& subtitle)
{
    m_title->setText(title);
    m_subtitle->setText(subtitle);
}

} // namespace quillmark
