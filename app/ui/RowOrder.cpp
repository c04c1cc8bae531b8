#include "ui/RowOrder.h"

#include "model/QtText.h"
#include "model/Ranks.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace quillmark {

namespace {

template <typename Function>
auto forEach(const RowList& rows, Function function)
{
    std::vector<decltype(function(rows.span().front()))> results;
    results.reserve(rows.size());
    for (const AuditRow& row : rows.span())
        results.push_back(function(row));
    return results;
}

} // namespace

RowOrder::RowOrder(RowList rows) : m_rows(std::move(rows)) {}

RowOrder::Ranks RowOrder::ranks(AuditColumn column) const
{
    switch (column) {
    case AuditColumn::font:
        return m_rows.index().nameRanks;
    case AuditColumn::verdict:
        return forEach(m_rows, [](const AuditRow& row) {
            return static_cast<std::uint32_t>(row.assessment.verdict);
        });
    case AuditColumn::pages: {
        // As numbers: page 2 comes before page 10.
        using Pages = const std::vector<int>*;
        static const std::vector<int> none;
        return ranksOf(
            forEach(m_rows,
                    [](const AuditRow& row) -> Pages { return row.pdf ? &row.pdf->pages : &none; }),
            [](Pages left, Pages right) { return *left < *right; });
    }
    case AuditColumn::license:
    case AuditColumn::embedding:
    case AuditColumn::source:
        return ranksOf(forEach(m_rows, [column](const AuditRow& row) {
            return stdText(columnText(column, row).toCaseFolded());
        }));
    }
    return {};
}

std::vector<RowOrder::Position> RowOrder::sorted(RowSort sort)
{
    auto& found = m_ranks.at(static_cast<std::size_t>(sort.column));
    if (!found) found = ranks(sort.column);
    const std::vector<Position>& byDefault = m_rows.index().defaultOrder;
    std::vector<std::uint64_t> keys(byDefault.size());
    for (std::uint32_t i = 0; i < keys.size(); ++i) {
        const std::uint32_t rank = (*found)[byDefault[i]];
        keys[i] = joinedRanks(sort.order == Qt::AscendingOrder ? rank : ~rank, i);
    }
    std::ranges::sort(keys);
    std::vector<Position> positions(keys.size());
    std::ranges::transform(keys, positions.begin(), [&](std::uint64_t key) {
        return byDefault[static_cast<std::uint32_t>(key)];
    });
    return positions;
}

} // namespace quillmark
