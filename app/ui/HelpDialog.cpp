#include "ui/HelpDialog.h"

#include "assessment/HelpText.h"
#include "model/QtText.h"
#include "ui/TextLabel.h"
#include "ui/VerdictBadge.h"

#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

#include <algorithm>

namespace quillmark {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int margin = 24;
constexpr int gap = 14;
constexpr int columnGap = 14;
constexpr int pageWidth = 560; // lines of some 80 characters

TextLabel* paragraph(const QString& text, TextStyle style = TextStyle::body,
                     TextTone tone = TextTone::primary)
{
    auto* const label = new TextLabel(text, style, tone);
    label->setWordWrap(true);
    return label;
}

QLayout* verdictRows()
{
    auto* const rows = new QGridLayout;
    rows->setHorizontalSpacing(columnGap);
    rows->setVerticalSpacing(gap);
    rows->setColumnStretch(1, 1);
    int badgeColumn = 0;
    for (const HelpText::VerdictHelp& help : HelpText::verdicts) {
        const int row = rows->rowCount();
        rows->addWidget(new VerdictBadge(help.verdict, BadgeSize::small), row, 0,
                        Qt::AlignLeft | Qt::AlignTop);
        rows->addWidget(paragraph(qtText(help.text)), row, 1);
        badgeColumn =
            std::max(badgeColumn, verdictBadgeSize(help.verdict, BadgeSize::small).width());
    }
    rows->setColumnMinimumWidth(0, badgeColumn);
    return rows;
}

} // namespace

HelpDialog::HelpDialog(QWidget* parent) : QDialog(parent), m_texts(new QScrollArea)
{
    const QString title = qtText(HelpText::title());
    setWindowTitle(title);
    setWindowModality(Qt::WindowModal);

    auto* const page = new QWidget;
    auto* const texts = new QVBoxLayout(page);
    texts->setContentsMargins(margin, margin, margin, gap);
    texts->setSpacing(gap);
    TextLabel* const heading = paragraph(title, TextStyle::title);
    heading->setBold(true);
    texts->addWidget(heading);
    texts->addWidget(paragraph(qtText(HelpText::introduction())));
    texts->addLayout(verdictRows());
    texts->addWidget(
        paragraph(qtText(HelpText::embeddingBits), TextStyle::callout, TextTone::secondary));
    texts->addWidget(
        paragraph(qtText(HelpText::matching()), TextStyle::callout, TextTone::secondary));
    texts->addStretch();

    m_texts->setFrameShape(QFrame::NoFrame);
    m_texts->setWidgetResizable(true);
    m_texts->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_texts->setWidget(page);
    m_texts->setAccessibleName(title);
    // Its keys work from the button too, and nobody could see that it has the focus.
    m_texts->setFocusPolicy(Qt::NoFocus);

    auto* const done = new QPushButton(u"Done"_s);
    done->setDefault(true);
    connect(done, &QPushButton::clicked, this, &QDialog::accept);
    auto* const buttons = new QHBoxLayout;
    buttons->setContentsMargins(margin, 0, margin, margin - columnGap / 2);
    buttons->addStretch();
    buttons->addWidget(done);

    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_texts);
    layout->addLayout(buttons);
    done->setFocus();

    // As tall as the texts, unless the screen is smaller.
    const int wanted =
        page->heightForWidth(pageWidth) + layout->spacing() + buttons->sizeHint().height();
    const int room = screen()->availableGeometry().height() * 9 / 10;
    resize(pageWidth, std::min(wanted, room));
}

void HelpDialog::keyPressEvent(QKeyEvent* event)
{
    QScrollBar* const bar = m_texts->verticalScrollBar();
    switch (event->key()) {
    case Qt::Key_PageUp:
        bar->triggerAction(QScrollBar::SliderPageStepSub);
        return;
    case Qt::Key_PageDown:
        bar->triggerAction(QScrollBar::SliderPageStepAdd);
        return;
    case Qt::Key_Home:
        bar->triggerAction(QScrollBar::SliderToMinimum);
        return;
    case Qt::Key_End:
        bar->triggerAction(QScrollBar::SliderToMaximum);
        return;
    }
    QDialog::keyPressEvent(event);
}

} // namespace quillmark
