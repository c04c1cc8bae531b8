#include "ui/CellDelegate.h"

#include "ui/AuditTableModel.h"
#include "ui/TextLabel.h"
#include "ui/ToolTip.h"
#include "ui/VerdictBadge.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QFontMetrics>
#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

#include <algorithm>
#include <array>

namespace quillmark {

namespace {

constexpr int rowPadding = 6;   // above and below the text
constexpr int badgePadding = 3; // above and below the badge
constexpr int gap = 6;          // between the text and the one beside it

QPalette::ColorGroup groupOf(const QStyleOptionViewItem& option)
{
    if (!option.state.testFlag(QStyle::State_Enabled)) return QPalette::Disabled;
    return option.state.testFlag(QStyle::State_Active) ? QPalette::Active : QPalette::Inactive;
}

bool isSelected(const QStyleOptionViewItem& option)
{
    return option.state.testFlag(QStyle::State_Selected);
}

QRect contentOf(const QStyleOptionViewItem& option)
{
    return option.rect.adjusted(CellDelegate::margin, 0, -CellDelegate::margin, 0);
}

void drawLine(QPainter& painter, const QRect& place, const QString& text)
{
    const QString line = painter.fontMetrics().elidedText(text, Qt::ElideRight, place.width());
    painter.drawText(place,
                     static_cast<int>(Qt::AlignLeft | Qt::AlignVCenter) | Qt::TextSingleLine |
                         Qt::TextDontClip,
                     line);
}

} // namespace

int CellDelegate::rowHeight()
{
    const int badge = verdictBadgeSize(Verdict::unknown, BadgeSize::small).height();
    return std::max(QFontMetrics(QApplication::font()).height() + 2 * rowPadding,
                    badge + 2 * badgePadding);
}

void CellDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                         const QModelIndex& index) const
{
    QStyleOptionViewItem cell = option;
    initStyleOption(&cell, index);
    // The whole row is what is selected, and what has the focus.
    cell.state.setFlag(QStyle::State_HasFocus, false);
    const QStyle* const style = cell.widget ? cell.widget->style() : QApplication::style();
    style->drawPrimitive(QStyle::PE_PanelItemViewItem, &cell, painter, cell.widget);
    painter->save();
    painter->setClipRect(cell.rect, Qt::IntersectClip);
    paintContent(*painter, cell, index);
    painter->restore();

    const auto* const view = qobject_cast<const QAbstractItemView*>(cell.widget);
    if (!view || !view->hasFocus() || view->currentIndex().row() != index.row()) return;
    QStyleOptionFocusRect focus;
    focus.QStyleOption::operator=(cell);
    focus.rect.setLeft(0);
    focus.rect.setRight(view->viewport()->width() - 1);
    painter->save();
    painter->setClipRect(cell.rect, Qt::IntersectClip);
    if (isSelected(cell)) {
        // The style's own would vanish in the colour of the selection.
        QColor ring = cell.palette.color(groupOf(cell), QPalette::HighlightedText);
        ring.setAlphaF(0.7F);
        painter->setPen(ring);
        painter->setBrush(Qt::NoBrush);
        painter->drawRect(focus.rect.adjusted(1, 1, -2, -2));
    } else {
        focus.state |= QStyle::State_KeyboardFocusChange;
        focus.backgroundColor = cell.palette.color(QPalette::Base);
        style->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, painter, cell.widget);
    }
    painter->restore();
}

void CellDelegate::paintContent(QPainter& painter, const QStyleOptionViewItem& option,
                                const QModelIndex& index) const
{
    painter.setFont(option.font);
    painter.setPen(option.palette.color(
        groupOf(option), isSelected(option) ? QPalette::HighlightedText : QPalette::Text));
    QRect place = contentOf(option);
    drawLine(painter, place, option.text);
    const QString beside = index.data(AuditTableModel::secondaryTextRole).toString();
    if (beside.isEmpty()) return;
    place.setLeft(place.left() + option.fontMetrics.horizontalAdvance(option.text) + gap);
    if (place.width() <= 0) return;
    if (!isSelected(option)) painter.setPen(secondaryColour(option.palette));
    drawLine(painter, place, beside);
}

bool CellDelegate::isCut(const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    int needed = option.fontMetrics.horizontalAdvance(option.text);
    const QString beside = index.data(AuditTableModel::secondaryTextRole).toString();
    if (!beside.isEmpty()) needed += gap + option.fontMetrics.horizontalAdvance(beside);
    return needed > contentOf(option).width();
}

bool CellDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* view,
                             const QStyleOptionViewItem& option, const QModelIndex& index)
{
    if (event->type() != QEvent::ToolTip) return false;
    QStyleOptionViewItem cell = option;
    initStyleOption(&cell, index);
    const QString text = index.isValid() && isCut(cell, index)
                             ? plainToolTip(index.data(Qt::AccessibleTextRole).toString())
                             : QString();
    QToolTip::showText(event->globalPos(), text, view, option.rect);
    return true;
}

int VerdictDelegate::neededWidth()
{
    int widest = 0;
    for (const Verdict verdict : allCases<Verdict>)
        widest = std::max(widest, verdictBadgeSize(verdict, BadgeSize::small).width());
    return widest + 2 * margin;
}

void VerdictDelegate::paintContent(QPainter& painter, const QStyleOptionViewItem& option,
                                   const QModelIndex& index) const
{
    const QVariant verdict = index.data(AuditTableModel::verdictRole);
    if (!verdict.isValid()) return;
    const auto shown = static_cast<Verdict>(verdict.toInt());
    const QRect place = contentOf(option);
    const QSize size = verdictBadgeSize(shown, BadgeSize::small);
    // On the ground of a selected row the translucent capsule would have no contrast left.
    const auto plate =
        isSelected(option) ? std::optional(option.palette.color(QPalette::Base)) : std::nullopt;
    paintVerdictBadge(painter,
                      QPoint(place.left(), place.top() + (place.height() - size.height()) / 2),
                      shown, BadgeSize::small, plate);
}

bool VerdictDelegate::isCut(const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    const QVariant verdict = index.data(AuditTableModel::verdictRole);
    return verdict.isValid() &&
           verdictBadgeSize(static_cast<Verdict>(verdict.toInt()), BadgeSize::small).width() >
               contentOf(option).width();
}

} // namespace quillmark
