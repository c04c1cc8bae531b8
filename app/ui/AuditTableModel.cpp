#include "ui/AuditTableModel.h"

#include "ui/RowIdentity.h"

#include <algorithm>
#include <utility>

namespace quillmark {

namespace {

constexpr int notShown = -1;

/// What tells lists of different fonts apart.
std::string sourceOf(const std::optional<AuditList>& list)
{
    if (!list) return {};
    if (list->document) return "document\n" + list->document->path;
    return "fonts\n" + list->title + '\n' + list->subtitle;
}

} // namespace

AuditTableModel::AuditTableModel(QObject* parent) : QAbstractTableModel(parent) {}

AuditTableModel::Change AuditTableModel::setList(const std::optional<AuditList>& list)
{
    const RowList rows = list ? list->rows : RowList();
    std::string source = sourceOf(list);
    if (source == m_source) {
        rearrange(rows);
        return Change::sameSource;
    }
    beginResetModel();
    m_source = std::move(source);
    m_kind = list && list->document ? ListKind::document : ListKind::fonts;
    if (!sectionOf(m_sort.column)) m_sort = {};
    takeRows(rows);
    endResetModel();
    return Change::otherSource;
}

void AuditTableModel::setFilter(const RowFilter& filter)
{
    if (filter == m_filter) return;
    m_filter = filter;
    rearrange();
}

void AuditTableModel::sort(int column, Qt::SortOrder order)
{
    if (column < 0 || column >= columnCount()) return;
    setSort({columns()[static_cast<std::size_t>(column)], order});
}

void AuditTableModel::setSort(RowSort sort)
{
    if (!sectionOf(sort.column)) sort = {};
    if (sort == m_sort) return;
    m_sort = sort;
    order();
    rearrange();
}

std::optional<int> AuditTableModel::sectionOf(AuditColumn column) const
{
    const auto shown = columns();
    const auto found = std::ranges::find(shown, column);
    if (found == shown.end()) return std::nullopt;
    return static_cast<int>(found - shown.begin());
}

std::size_t AuditTableModel::positionOf(int row) const
{
    return m_shown.at(static_cast<std::size_t>(row));
}

int AuditTableModel::rowOf(std::size_t position) const
{
    return m_rowOf.at(position);
}

void AuditTableModel::rearrange(const std::optional<RowList>& rows)
{
    Q_EMIT layoutAboutToBeChanged({}, VerticalSortHint);
    const QModelIndexList before = persistentIndexList();
    std::vector<std::size_t> positions;
    positions.reserve(static_cast<std::size_t>(before.size()));
    for (const QModelIndex& index : before)
        positions.push_back(positionOf(index.row()));

    std::vector<std::optional<std::size_t>> same(positions.begin(), positions.end());
    if (rows) {
        same = sameRows(m_rows, positions, *rows);
        takeRows(*rows);
    } else {
        select();
    }

    QModelIndexList after;
    after.reserve(before.size());
    for (qsizetype i = 0; i < before.size(); ++i) {
        const auto& position = same[static_cast<std::size_t>(i)];
        const int row = position ? rowOf(*position) : notShown;
        after.append(row == notShown ? QModelIndex() : index(row, before[i].column()));
    }
    changePersistentIndexList(before, after);
    Q_EMIT layoutChanged({}, VerticalSortHint);
}

void AuditTableModel::takeRows(const RowList& rows)
{
    m_rows = rows;
    m_order = RowOrder(rows);
    order();
    select();
}

void AuditTableModel::order()
{
    m_sorted = m_order.sorted(m_sort);
}

void AuditTableModel::select()
{
    const RowIndex& index = m_rows.index();
    const RowMatcher matcher(m_filter, index.folding);
    const auto rows = m_rows.span();
    m_shown.clear();
    m_rowOf.assign(rows.size(), notShown);
    for (const RowOrder::Position position : m_sorted) {
        if (!matcher.matches(rows[position], index.names[position])) continue;
        m_rowOf[position] = static_cast<int>(m_shown.size());
        m_shown.push_back(position);
    }
}

int AuditTableModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_shown.size());
}

int AuditTableModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(columns().size());
}

QVariant AuditTableModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
    const AuditColumn column = columns()[static_cast<std::size_t>(index.column())];
    const AuditRow& row = at(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return columnText(column, row);
    case Qt::AccessibleTextRole:
        return spokenText(column, row);
    case secondaryTextRole:
        return secondaryText(column, row);
    case verdictRole:
        return column == AuditColumn::verdict ? QVariant(static_cast<int>(row.assessment.verdict))
                                              : QVariant();
    default:
        return {};
    }
}

QVariant AuditTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= columnCount()) return {};
    if (role == Qt::DisplayRole)
        return columnTitle(columns()[static_cast<std::size_t>(section)], m_kind);
    return {};
}

} // namespace quillmark
