#include "ui/FactList.h"

#include "model/QtText.h"
#include "ui/SelectableText.h"
#include "ui/TextLabel.h"

#include <QEvent>
#include <QFontMetrics>

#include <algorithm>

namespace quillmark {

namespace {

constexpr int rowGap = 10;        // between two facts
constexpr int denseRowGap = 7;    // the same where a fact is mostly one line
constexpr int labelGap = 1;       // between a label and the value below it
constexpr int columnGap = 12;     // between a label and the value beside it
constexpr int leastValueEms = 24; // narrower values are hard to read beside their labels

} // namespace

FactList::FactList(std::span<const std::string_view> labels, std::string_view linked,
                   TextChain& chain, QWidget* parent)
    : QWidget(parent)
{
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    for (const std::string_view name : labels) {
        const QString label = qtText(name);
        Row row{.label = new TextLabel(label, TextStyle::callout, TextTone::secondary, this),
                .text = new SelectableText(label, TextStyle::body, TextTone::primary, this),
                .link = name == linked ? new LinkText(label, this) : nullptr};
        if (name == pathFactLabel) row.text->setOneWay();
        row.label->hide();
        row.text->hide();
        chain.add(row.text);
        if (row.link != nullptr) {
            row.link->hide();
            chain.add(row.link);
            connect(row.link, &LinkText::activated, this,
                    [this, index = m_rows.size()] { Q_EMIT linkActivated(m_rows[index].address); });
        }
        m_rows.push_back(std::move(row));
    }
}

void FactList::setFacts(const std::vector<Fact>& facts)
{
    auto fact = facts.begin();
    for (Row& row : m_rows) {
        const bool isThere = fact != facts.end() && qtText(fact->label) == row.label->text();
        row.shown = nullptr;
        if (isThere) {
            const bool isLink = row.link != nullptr && fact->link;
            row.shown = isLink ? row.link : row.text;
            row.shown->setContent(fact->value);
            row.address = fact->link.value_or(std::string());
            row.label->setBuddy(row.shown);
            ++fact;
        }
        row.label->setVisible(row.shown != nullptr);
        // NOLINTNEXTLINE(clang-analyzer-core.CallAndMessage): there is always a text
        row.text->setVisible(row.shown == row.text);
        if (row.link != nullptr) row.link->setVisible(row.shown == row.link);
    }
    updateGeometry();
    arrange();
}

int FactList::labelColumn(int width) const
{
    int column = 0;
    for (const Row& row : m_rows)
        column = std::max(column, row.label->sizeHint().width());
    const int value = width - column - columnGap;
    return value >= leastValueEms * QFontMetrics(font()).averageCharWidth() * 2 ? column : 0;
}

/// Goes through the rows and tells `put` where label and value stand; returns the height of all.
template <typename Place>
int FactList::place(int width, Place put) const
{
    const int column = labelColumn(width);
    int top = 0;
    for (const Row& row : m_rows) {
        if (row.shown == nullptr) continue;
        if (top > 0) top += column > 0 ? denseRowGap : rowGap;
        const int labelHeight = row.label->sizeHint().height();
        if (column > 0) {
            const int left = column + columnGap;
            const int height = row.shown->heightForWidth(width - left);
            // The smaller type of the label stands on the value's first line.
            const int drop =
                QFontMetrics(row.shown->font()).ascent() - QFontMetrics(row.label->font()).ascent();
            put(row, QRect(0, top + drop, column, labelHeight),
                QRect(left, top, width - left, height));
            top += std::max(height, labelHeight + drop);
        } else {
            const int height = row.shown->heightForWidth(width);
            put(row, QRect(0, top, width, labelHeight),
                QRect(0, top + labelHeight + labelGap, width, height));
            top += labelHeight + labelGap + height;
        }
    }
    return top;
}

int FactList::heightForWidth(int width) const
{
    return place(width, [](const Row&, const QRect&, const QRect&) {});
}

QSize FactList::sizeHint() const
{
    return {200, 40};
}

QSize FactList::minimumSizeHint() const
{
    return {120, 0};
}

void FactList::arrange()
{
    const bool isBeside = labelColumn(width()) > 0;
    place(width(), [&](const Row& row, const QRect& label, const QRect& value) {
        row.label->setAlignment((isBeside ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignTop);
        row.label->setGeometry(label);
        row.shown->setGeometry(value);
    });
}

void FactList::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    arrange();
}

bool FactList::event(QEvent* event)
{
    // A value has changed its height, as when the fonts of the desktop change.
    if (event->type() == QEvent::LayoutRequest) {
        updateGeometry();
        arrange();
    }
    return QWidget::event(event);
}

} // namespace quillmark
