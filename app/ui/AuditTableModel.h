// The table of fonts: those of a list that pass the filter, in the order that is wanted.
#pragma once

#include "listing/RowFilter.h"
#include "model/AuditList.h"
#include "ui/AuditColumn.h"
#include "ui/RowOrder.h"

#include <QAbstractTableModel>

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace quillmark {

/// Filters and sorts by itself. A proxy would announce every gap that a filter makes, and the
/// selection and the headers would move for each of thousands; here a change of filter or order is
/// one change of layout.
class AuditTableModel final : public QAbstractTableModel {
    Q_OBJECT
public:
    enum Role {
        /// What stands beside the text in the secondary style.
        secondaryTextRole = Qt::UserRole,
        /// The verdict as a number, in the verdict's column.
        verdictRole,
    };

    explicit AuditTableModel(QObject* parent = nullptr);

    /// Shows the fonts of a list; none when it is absent. Whether `list` is what was shown before,
    /// read again: then indexes stay with their fonts, and otherwise everything is new.
    enum class Change { sameSource, otherSource };
    Change setList(const std::optional<AuditList>& list);
    void setFilter(const RowFilter& filter);
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;
    void setSort(RowSort sort);

    [[nodiscard]] const RowList& rows() const { return m_rows; }
    [[nodiscard]] ListKind kind() const { return m_kind; }
    [[nodiscard]] const RowFilter& filter() const { return m_filter; }
    [[nodiscard]] RowSort rowSort() const { return m_sort; }

    [[nodiscard]] std::span<const AuditColumn> columns() const { return columnsOf(m_kind); }
    /// Where a column stands; absent when this list has none of the sort.
    [[nodiscard]] std::optional<int> sectionOf(AuditColumn column) const;

    /// The place in the whole list of what a row of the table shows, and the other way round; -1
    /// for a font that the filter keeps away.
    [[nodiscard]] std::size_t positionOf(int row) const;
    [[nodiscard]] int rowOf(std::size_t position) const;
    /// Valid until the next `setList`.
    [[nodiscard]] const AuditRow& at(int row) const { return m_rows.span()[positionOf(row)]; }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role) const override;

private:
    /// Shows what is to be shown now, as one change of layout. Indexes follow the rows of the list,
    /// or where those are replaced, the same rows in `rows`.
    void rearrange(const std::optional<RowList>& rows = {});
    void takeRows(const RowList& rows);
    void order();
    void select();

    std::string m_source; // what the list is of
    ListKind m_kind{ListKind::fonts};
    RowList m_rows;
    RowFilter m_filter;
    RowSort m_sort;

    RowOrder m_order{RowList()};
    std::vector<RowOrder::Position> m_sorted; // all rows
    std::vector<RowOrder::Position> m_shown;  // those that pass the filter
    std::vector<int> m_rowOf;                 // by position; -1 where the row is not shown
};

} // namespace quillmark
