#include "ui/FontTable.h"

#include "model/QtText.h"
#include "ui/AuditTableModel.h"
#include "ui/CellDelegate.h"
#include "ui/ContextMenuKey.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDataStream>
#include <QHeaderView>
#include <QIODevice>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QScrollBar>
#include <QStyle>
#include <QStyleOptionHeader>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <numeric>
#include <system_error>
#include <vector>

namespace quillmark {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qint32 savedFormat = 1;
constexpr int widest = 4000; // a width that a damaged file may not exceed
constexpr int headerPadding = 5;
constexpr int ringWidth = 2; // around a table without rows that has the keyboard

int clamped(int width, const ColumnWidths& limits)
{
    return std::clamp(width, limits.minimum, limits.maximum == 0 ? widest : limits.maximum);
}

/// What `total` leaves over is given to, or taken from, the widths in proportion to `shares`.
void spread(std::vector<int>& widths, const std::vector<int>& shares, int amount)
{
    int left = std::accumulate(shares.begin(), shares.end(), 0);
    for (std::size_t i = 0; i < widths.size() && left > 0; ++i) {
        const int part = amount * shares[i] / left;
        widths[i] += part;
        amount -= part;
        left -= shares[i];
    }
}

/// Writes its titles where the cells below have their texts, whatever margin the style has.
class AlignedHeader final : public QHeaderView {
public:
    explicit AlignedHeader(QWidget* parent) : QHeaderView(Qt::Horizontal, parent) {}

protected:
    void initStyleOptionForIndex(QStyleOptionHeader* option, int section) const override
    {
        QHeaderView::initStyleOptionForIndex(option, section);
        option->text.clear();
    }
    void paintSection(QPainter* painter, const QRect& rect, int section) const override
    {
        painter->save(); // styles leave a clip behind
        QHeaderView::paintSection(painter, rect, section);
        painter->restore();
        QRect place = rect.adjusted(CellDelegate::margin, 0, -CellDelegate::margin, 0);
        if (isSortIndicatorShown() && sortIndicatorSection() == section)
            place.setRight(place.right() - style()->pixelMetric(QStyle::PM_HeaderMarkSize) -
                           style()->pixelMetric(QStyle::PM_HeaderMargin));
        const QString title = model()->headerData(section, Qt::Horizontal).toString();
        painter->setPen(palette().color(QPalette::ButtonText));
        painter->drawText(place, static_cast<int>(Qt::AlignLeft | Qt::AlignVCenter),
                          fontMetrics().elidedText(title, Qt::ElideRight, place.width()));
    }
};

bool hasFile(const AuditRow& row)
{
    std::error_code ignored;
    return row.facts.filePath && std::filesystem::exists(*row.facts.filePath, ignored);
}

} // namespace

FontTable::FontTable(AuditTableModel& model, QWidget* parent) : QTableView(parent), m_model(model)
{
    for (Widths& widths : m_wanted)
        std::ranges::transform(allCases<AuditColumn>, widths.begin(),
                               [](AuditColumn column) { return columnWidths(column).ideal; });

    setAccessibleName(u"Fonts"_s);
    setFrameShape(QFrame::NoFrame);
    setShowGrid(false);
    setWordWrap(false);
    setSelectionBehavior(SelectRows);
    setSelectionMode(SingleSelection);
    setEditTriggers(NoEditTriggers);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollMode(ScrollPerPixel);
    setTabKeyNavigation(false); // Tab leaves the table
    setCornerButtonEnabled(false);
    setItemDelegate(new CellDelegate(this));
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    auto* const header = new AlignedHeader(this);
    setHorizontalHeader(header);
    header->setSectionsClickable(true);
    header->setHighlightSections(false);
    header->setSectionResizeMode(QHeaderView::Interactive);
    useFont();

    setModel(&m_model);
    followModel();
    setSortingEnabled(true); // by what the indicator shows
    connect(&m_model, &QAbstractItemModel::modelReset, this, &FontTable::followModel);
    connect(header, &QHeaderView::sectionResized, this,
            [this](int section, int, int width) { keepWidth(section, width); });
}

AuditColumn FontTable::columnAt(int section) const
{
    return m_model.columns()[static_cast<std::size_t>(section)];
}

ColumnWidths FontTable::limits(AuditColumn column)
{
    ColumnWidths limits = columnWidths(column);
    if (column == AuditColumn::verdict) {
        // A badge is never cut, however large the font.
        limits.minimum = std::max(limits.minimum, VerdictDelegate::neededWidth());
        limits.maximum = std::max(limits.maximum, limits.minimum);
    }
    return limits;
}

FontTable::Widths& FontTable::wanted()
{
    return m_wanted.at(static_cast<std::size_t>(m_model.kind()));
}

void FontTable::followModel()
{
    for (int section = 0; section < m_model.columnCount(); ++section) {
        const bool isVerdict = columnAt(section) == AuditColumn::verdict;
        if (isVerdict && !qobject_cast<VerdictDelegate*>(itemDelegateForColumn(section)))
            setItemDelegateForColumn(section, new VerdictDelegate(this));
    }
    const RowSort sort = m_model.rowSort();
    horizontalHeader()->setSortIndicator(m_model.sectionOf(sort.column).value_or(0), sort.order);
    layOutColumns();
}

void FontTable::layOutColumns()
{
    const auto columns = m_model.columns();
    std::vector<int> widths;
    std::vector<int> growth;    // shares of what is left over
    std::vector<int> shrinkage; // shares of what is missing
    for (const AuditColumn column : columns) {
        const ColumnWidths limits = FontTable::limits(column);
        const int width = clamped(wanted().at(static_cast<std::size_t>(column)), limits);
        const bool grows = limits.maximum == 0 && column != AuditColumn::pages;
        widths.push_back(width);
        growth.push_back(grows ? limits.ideal : 0);
        shrinkage.push_back(width - limits.minimum);
    }
    const int room = viewport()->width() - std::accumulate(widths.begin(), widths.end(), 0);
    const int slack = std::accumulate(shrinkage.begin(), shrinkage.end(), 0);
    // Below the smallest widths the table scrolls sideways.
    spread(widths, room > 0 ? growth : shrinkage, std::max(room, -slack));

    m_layingOut = true;
    for (std::size_t i = 0; i < widths.size(); ++i)
        horizontalHeader()->resizeSection(static_cast<int>(i), widths[i]);
    m_layingOut = false;
}

/// The user has dragged the edge of a column: it stays as he left it, and the last one takes up the
/// difference.
void FontTable::keepWidth(int section, int width)
{
    if (m_layingOut) return;
    m_layingOut = true;
    QHeaderView* const header = horizontalHeader();
    header->resizeSection(section, clamped(width, limits(columnAt(section))));
    const int last = m_model.columnCount() - 1;
    if (section != last) {
        const int others = header->length() - header->sectionSize(last);
        header->resizeSection(last, clamped(viewport()->width() - others, limits(columnAt(last))));
    }
    for (int each = 0; each <= last; ++each)
        wanted().at(static_cast<std::size_t>(columnAt(each))) = header->sectionSize(each);
    m_layingOut = false;
}

QByteArray FontTable::saveColumns() const
{
    QByteArray saved;
    QDataStream stream(&saved, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_6_4);
    const RowSort sort = m_model.rowSort();
    stream << savedFormat << static_cast<qint32>(sort.column) << static_cast<qint32>(sort.order);
    for (const Widths& widths : m_wanted)
        for (const int width : widths)
            stream << static_cast<qint32>(width);
    return saved;
}

void FontTable::restoreColumns(const QByteArray& saved)
{
    QDataStream stream(saved);
    stream.setVersion(QDataStream::Qt_6_4);
    qint32 format = 0;
    qint32 column = 0;
    qint32 order = 0;
    stream >> format >> column >> order;
    std::array<Widths, 2> restored{};
    for (Widths& widths : restored)
        for (int& width : widths) {
            qint32 value = 0;
            stream >> value;
            width = value;
        }
    const bool isKnown = format == savedFormat && column >= 0 &&
                         column < static_cast<qint32>(rawValues<AuditColumn>.size()) &&
                         (order == Qt::AscendingOrder || order == Qt::DescendingOrder);
    if (stream.status() != QDataStream::Ok || !isKnown) return;
    m_wanted = restored; // whatever they are, the layout keeps to the limits
    m_model.setSort({static_cast<AuditColumn>(column), static_cast<Qt::SortOrder>(order)});
    followModel();
}

int FontTable::topRow() const
{
    return rowAt(0);
}

void FontTable::scrollToTopRow(int row)
{
    executeDelayedItemsLayout();
    verticalScrollBar()->setValue(rowViewportPosition(row) + verticalOffset());
}

void FontTable::keyboardSearch(const QString& search)
{
    // Letters look for names, whichever column is the current one.
    const QModelIndex current = currentIndex();
    if (current.isValid() && current.column() != 0)
        selectionModel()->setCurrentIndex(current.siblingAtColumn(0),
                                          QItemSelectionModel::NoUpdate);
    QTableView::keyboardSearch(search);
}

void FontTable::copy()
{
    const QModelIndexList rows = selectionModel()->selectedRows();
    if (rows.isEmpty()) return;
    QApplication::clipboard()->setText(copiedText(m_model.kind(), m_model.at(rows.front().row())));
}

void FontTable::resizeEvent(QResizeEvent* event)
{
    QTableView::resizeEvent(event);
    layOutColumns();
}

void FontTable::keyPressEvent(QKeyEvent* event)
{
    if (openContextMenu(*this, *event)) return;
    if (event->matches(QKeySequence::Copy)) {
        copy();
        return;
    }
    const bool toEnd = event->key() == Qt::Key_End;
    if ((toEnd || event->key() == Qt::Key_Home) && event->modifiers() == Qt::NoModifier) {
        // The ends of the list, not of the row.
        if (m_model.rowCount() > 0) selectRow(toEnd ? m_model.rowCount() - 1 : 0);
        return;
    }
    QTableView::keyPressEvent(event);
}

void FontTable::contextMenuEvent(QContextMenuEvent* event)
{
    const bool byKey = event->reason() == QContextMenuEvent::Keyboard;
    const QModelIndex index = byKey ? currentIndex() : indexAt(event->pos());
    if (!index.isValid() || !hasFile(m_model.at(index.row()))) return;
    if (byKey) scrollTo(index);
    auto* const menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    connect(
        menu->addAction(u"Show Font File in Finder"_s), &QAction::triggered, this,
        [this, path = *m_model.at(index.row()).facts.filePath] { Q_EMIT revealRequested(path); });
    menu->popup(byKey ? viewport()->mapToGlobal(visualRect(index).center()) : event->globalPos());
}

void FontTable::changeEvent(QEvent* event)
{
    QTableView::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::ApplicationFontChange ||
        event->type() == QEvent::StyleChange) {
        useFont();
        layOutColumns();
    }
}

void FontTable::paintEvent(QPaintEvent* event)
{
    QTableView::paintEvent(event);
    if (m_model.rowCount() > 0 || !hasFocus()) return;
    // There is no row to show it. The style's own mark would fill the whole table with a colour.
    QPainter painter(viewport());
    painter.setPen(QPen(palette().color(QPalette::Highlight), ringWidth));
    constexpr int inset = ringWidth / 2;
    painter.drawRect(viewport()->rect().adjusted(inset, inset, -inset, -inset));
}

void FontTable::currentChanged(const QModelIndex& current, const QModelIndex& previous)
{
    QTableView::currentChanged(current, previous);
    // The whole row shows the focus, and Qt draws only the cell anew.
    for (const QModelIndex& index : {current, previous}) {
        const QRect cell = visualRect(index);
        viewport()->update(0, cell.top(), viewport()->width(), cell.height());
    }
}

int FontTable::sizeHintForRow(int) const
{
    return CellDelegate::rowHeight();
}

void FontTable::useFont()
{
    const int height = CellDelegate::rowHeight();
    verticalHeader()->setMinimumSectionSize(height);
    verticalHeader()->setDefaultSectionSize(height);
    horizontalHeader()->setMinimumSectionSize(columnWidths(AuditColumn::pages).minimum);
    horizontalHeader()->setFixedHeight(fontMetrics().height() + 2 * headerPadding);
}

} // namespace quillmark
