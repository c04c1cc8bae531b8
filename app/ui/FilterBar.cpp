#include "ui/FilterBar.h"

#include "model/QtText.h"
#include "ui/FilterChip.h"
#include "ui/TextLabel.h"
#include "ui/VerdictLook.h"

#include <QBoxLayout>
#include <QButtonGroup>
#include <QComboBox>
#include <QEvent>

#include <algorithm>

namespace quillmark {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int sideMargin = 9; // the chips bring room for their focus ring
constexpr int topMargin = 5;
constexpr int between = 2;   // chips, beside that room
constexpr int groupGap = 12; // chips and picker
constexpr int ringRoom = 3;  // what the chips have around them

} // namespace

FilterBar::FilterBar(QWidget* parent)
    : QWidget(parent), m_layout(new QBoxLayout(QBoxLayout::LeftToRight, this)),
      m_chips(new QWidget), m_group(new QButtonGroup(this)),
      m_all(new FilterChip(u"All"_s, {}, {})), m_picker(new QWidget), m_sources(new QComboBox)
{
    auto* const chips = new QHBoxLayout(m_chips);
    chips->setContentsMargins(0, 0, 0, 0);
    chips->setSpacing(between);
    chips->addWidget(m_all);
    m_group->addButton(m_all);
    for (const Verdict verdict : allCases<Verdict>) {
        const VerdictLook& look = verdictLook(verdict);
        auto* const made = new FilterChip(look.smallLabel, look.symbol, look.colour);
        m_ofVerdict.at(static_cast<std::size_t>(verdict)) = made;
        m_group->addButton(made);
        chips->addWidget(made);
    }
    chips->addStretch();
    m_all->setChecked(true);
    connect(m_group, &QButtonGroup::buttonToggled, this, [this](QAbstractButton*, bool chosen) {
        if (chosen) Q_EMIT changed();
    });

    auto* const picker = new QHBoxLayout(m_picker);
    auto* const label = new TextLabel(u"Show"_s, TextStyle::callout, TextTone::secondary);
    label->setBuddy(m_sources);
    for (const Source source : allCases<Source>)
        m_sources->addItem(qtText(quillmark::label(source)));
    picker->setContentsMargins(0, 0, 0, 0);
    picker->addWidget(label);
    picker->addWidget(m_sources);
    picker->addStretch();
    connect(m_sources, &QComboBox::currentIndexChanged, this, &FilterBar::changed);

    m_layout->setContentsMargins(sideMargin, topMargin, sideMargin, topMargin);
    m_layout->setSpacing(0);
    m_layout->addWidget(m_chips);
    m_layout->addWidget(m_picker);
    m_layout->addStretch();
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

FilterChip* FilterBar::chip(std::optional<Verdict> verdict) const
{
    return verdict ? m_ofVerdict.at(static_cast<std::size_t>(*verdict)) : m_all;
}

void FilterBar::setKind(ListKind kind)
{
    m_picker->setVisible(kind == ListKind::fonts);
    arrange();
}

void FilterBar::setCounts(const AuditSummary& summary)
{
    m_all->setCount(summary.restricted + summary.unknown + summary.likelyOK);
    chip(Verdict::restricted)->setCount(summary.restricted);
    chip(Verdict::unknown)->setCount(summary.unknown);
    chip(Verdict::likelyOK)->setCount(summary.likelyOK);
    arrange();
}

std::optional<Verdict> FilterBar::verdict() const
{
    for (const Verdict verdict : allCases<Verdict>)
        if (chip(verdict)->isChecked()) return verdict;
    return std::nullopt;
}

void FilterBar::setVerdict(std::optional<Verdict> verdict)
{
    chip(verdict)->setChecked(true);
}

Source FilterBar::source() const
{
    return static_cast<Source>(m_sources->currentIndex());
}

void FilterBar::setSource(Source source)
{
    m_sources->setCurrentIndex(static_cast<int>(source));
}

QSize FilterBar::minimumSizeHint() const
{
    // The picker goes below the chips where there is no room beside them.
    return {std::max(m_chips->sizeHint().width(), m_picker->sizeHint().width()) + 2 * sideMargin,
            QWidget::minimumSizeHint().height()};
}

void FilterBar::arrange()
{
    const int beside =
        m_chips->sizeHint().width() + groupGap + m_picker->layout()->minimumSize().width();
    const bool fits = m_picker->isHidden() || beside + 2 * sideMargin <= width();
    m_layout->setDirection(fits ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
    m_picker->setContentsMargins(fits ? groupGap : ringRoom, 0, 0, 0);
}

void FilterBar::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    arrange();
}

bool FilterBar::event(QEvent* event)
{
    const bool handled = QWidget::event(event);
    if (event->type() == QEvent::LayoutRequest) arrange();
    return handled;
}

} // namespace quillmark
