#include "ui/ProgressPanel.h"

#include "ui/TextLabel.h"

#include <QProgressBar>
#include <QVBoxLayout>

namespace quillmark {

ProgressPanel::ProgressPanel(const QString& text, QWidget* parent)
    : QWidget(parent), m_bar(new QProgressBar),
      m_text(new TextLabel({}, TextStyle::body, TextTone::secondary))
{
    m_bar->setRange(0, 0);
    m_bar->setTextVisible(false);
    m_bar->setFixedWidth(220);
    m_text->setAlignment(Qt::AlignHCenter);
    m_text->setWordWrap(true);

    auto* const layout = new QVBoxLayout(this);
    layout->setSpacing(10);
    layout->addStretch(9);
    layout->addWidget(m_bar, 0, Qt::AlignHCenter);
    layout->addWidget(m_text);
    layout->addStretch(11);
    setText(text);
}

void ProgressPanel::setText(const QString& text)
{
    m_text->setText(text);
    m_bar->setAccessibleName(text);
}

} // namespace quillmark
