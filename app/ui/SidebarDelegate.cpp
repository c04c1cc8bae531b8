#include "ui/SidebarDelegate.h"

#include "ui/SidebarModel.h"
#include "ui/Symbols.h"
#include "ui/TabularText.h"
#include "ui/TextLabel.h"
#include "ui/VerdictLook.h"

#include <QApplication>
#include <QFontMetrics>
#include <QPainter>

#include <algorithm>

namespace quillmark {

namespace {

constexpr int sideMargin = 6;  // between the sidebar's edge and the ground of a selected row
constexpr int sidePadding = 8; // within that ground
constexpr int rowPadding = 6;  // above and below a label
constexpr int sectionGap = 10; // above a section's title
constexpr int gap = 7;
constexpr int badgePadding = 7; // left and right of the number
constexpr int badgeMargin = 2;  // above and below the badge's text
constexpr qreal cornerRadius = 6;
constexpr float badgeTint = 0.09F;
constexpr float selectedBadgeTint = 0.22F;

QFont sectionFont()
{
    QFont font = textFont(TextStyle::caption);
    font.setWeight(QFont::DemiBold);
    return font;
}

int rowHeight(const QFontMetrics& label)
{
    const int badge = QFontMetrics(textFont(TextStyle::caption)).height() + 2 * badgeMargin;
    return std::max(label.height() + 2 * rowPadding, badge + 4);
}

QColor translucent(QColor colour, float share)
{
    colour.setAlphaF(share);
    return colour;
}

/// Draws the count at the right end of `place`; how wide its badge is.
int drawBadge(QPainter& painter, const QRect& place, int count, const QColor& ground,
              const QColor& words)
{
    const QString digits = QString::number(count);
    painter.setFont(textFont(TextStyle::caption));
    const QFontMetrics metrics = painter.fontMetrics();
    const int height = metrics.height() + 2 * badgeMargin;
    const int number = tabularWidth(metrics, digits);
    const int width = std::max(number + 2 * badgePadding, height);
    const QRectF badge(place.right() + 1 - width, place.top() + (place.height() - height) / 2,
                       width, height);
    painter.setPen(Qt::NoPen);
    painter.setBrush(ground);
    painter.drawRoundedRect(badge, height / 2.0, height / 2.0);
    painter.setPen(words);
    drawTabular(
        painter,
        {badge.left() + (width - number) / 2.0, badge.top() + badgeMargin + metrics.ascent()},
        digits);
    return width;
}

void drawLabel(QPainter& painter, const QRect& place, const QString& label)
{
    painter.drawText(place,
                     static_cast<int>(Qt::AlignLeft | Qt::AlignVCenter) | Qt::TextSingleLine |
                         Qt::TextDontClip,
                     painter.fontMetrics().elidedText(label, Qt::ElideMiddle, place.width()));
}

} // namespace

void SidebarDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                            const QModelIndex& index) const
{
    QStyleOptionViewItem row = option;
    initStyleOption(&row, index);
    const QPalette& palette = row.palette;
    const QPalette::ColorGroup group =
        row.state.testFlag(QStyle::State_Active) ? QPalette::Active : QPalette::Inactive;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);

    QRect place = row.rect.adjusted(sideMargin + sidePadding, 0, -sideMargin - sidePadding, 0);
    if (index.data(SidebarModel::isSectionRole).toBool()) {
        painter->setFont(sectionFont());
        painter->setPen(secondaryColour(palette));
        const int height = painter->fontMetrics().height() + 4;
        drawLabel(*painter, {place.left(), place.bottom() + 1 - height, place.width(), height},
                  row.text);
        painter->restore();
        return;
    }

    const bool selected = row.state.testFlag(QStyle::State_Selected);
    const QRectF ground = QRectF(row.rect).adjusted(sideMargin, 0.5, -sideMargin, -0.5);
    if (selected || row.state.testFlag(QStyle::State_MouseOver)) {
        painter->setPen(Qt::NoPen);
        painter->setBrush(
            selected ? palette.color(group, QPalette::Highlight)
                     : translucent(palette.color(group, QPalette::WindowText), badgeTint / 2));
        if (selected || index.flags().testFlag(Qt::ItemIsSelectable))
            painter->drawRoundedRect(ground, cornerRadius, cornerRadius);
    }
    if (row.state.testFlag(QStyle::State_HasFocus)) {
        // Inside the selection, whose own colour it would vanish in otherwise.
        const QColor ring = selected ? palette.color(group, QPalette::HighlightedText)
                                     : palette.color(group, QPalette::Highlight);
        painter->setPen(QPen(translucent(ring, 0.7F), 1));
        painter->setBrush(Qt::NoBrush);
        painter->drawRoundedRect(ground.adjusted(1.5, 1.5, -1.5, -1.5), cornerRadius - 1.5,
                                 cornerRadius - 1.5);
    }

    const bool canBeChosen = index.flags().testFlag(Qt::ItemIsEnabled);
    const QColor words = selected      ? palette.color(group, QPalette::HighlightedText)
                         : canBeChosen ? palette.color(group, QPalette::WindowText)
                                       : secondaryColour(palette);
    const int extent = QFontMetrics(row.font).height();
    const QString symbol = index.data(SidebarModel::symbolRole).toString();
    if (!symbol.isEmpty()) {
        QColor colour = words;
        if (!selected)
            colour = index.data(SidebarModel::restrictedRole).toBool()
                         ? verdictLook(Verdict::restricted).colour
                         : secondaryColour(palette);
        painter->drawPixmap(
            QPointF(place.left(), place.top() + (place.height() - extent) / 2.0),
            symbolPixmap(symbol, colour, extent, painter->device()->devicePixelRatioF()));
    }
    place.setLeft(place.left() + extent + gap);

    const QVariant count = index.data(SidebarModel::countRole);
    if (count.isValid())
        place.setRight(place.right() - gap -
                       drawBadge(*painter, place, count.toInt(),
                                 translucent(words, selected ? selectedBadgeTint : badgeTint),
                                 selected ? words : secondaryColour(palette)));
    painter->setFont(row.font);
    painter->setPen(words);
    drawLabel(*painter, place, row.text);
    painter->restore();
}

QSize SidebarDelegate::sizeHint(const QStyleOptionViewItem&, const QModelIndex& index) const
{
    const int height = rowHeight(QFontMetrics(QApplication::font()));
    if (!index.data(SidebarModel::isSectionRole).toBool()) return {0, height};
    const bool isFirst = index.row() == 0;
    return {0,
            QFontMetrics(sectionFont()).height() + 4 + (isFirst ? sectionGap / 2 : sectionGap) + 2};
}

} // namespace quillmark
