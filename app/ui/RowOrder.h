// The orders in which the fonts of a list can be shown.
#pragma once

#include "model/RowList.h"
#include "ui/AuditColumn.h"

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

namespace quillmark {

/// By default the worst verdict comes first, and names within one.
struct RowSort {
    AuditColumn column{AuditColumn::verdict};
    Qt::SortOrder order{Qt::AscendingOrder};
    bool operator==(const RowSort&) const = default;
};

/// Sorts a list of rows. What is compared is worked out once for each column, when it is first
/// asked for, so that a click on a header sorts plain numbers.
class RowOrder {
public:
    /// A position in the list.
    using Position = std::uint32_t;

    explicit RowOrder(RowList rows);

    /// The positions of all rows in that order. Rows that a column does not tell apart stand in the
    /// default order, whichever way the column is sorted; rows with the same verdict and name stand
    /// as in the list.
    [[nodiscard]] std::vector<Position> sorted(RowSort sort);

private:
    using Ranks = std::vector<std::uint32_t>; // by position; equal for what is equal

    [[nodiscard]] Ranks ranks(AuditColumn column) const;

    RowList m_rows;
    std::array<std::optional<Ranks>, rawValues<AuditColumn>.size()> m_ranks;
};

} // namespace quillmark
