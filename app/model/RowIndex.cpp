#include "model/RowIndex.h"

#include "listing/RowFilter.h"
#include "model/Ranks.h"

#include <algorithm>
#include <numeric>

namespace quillmark {

RowIndex::RowIndex(std::span<const AuditRow> rows) : defaultOrder(rows.size())
{
    names.reserve(rows.size());
    std::vector<std::string> displayNames;
    displayNames.reserve(rows.size());
    for (const AuditRow& row : rows) {
        names.push_back(searchedNames(row, folding));
        displayNames.push_back(row.facts.displayName());
    }
    // Not by the rules of a language: the order of the character codes, as everywhere in lists.
    nameRanks = ranksOf(displayNames);
    std::iota(defaultOrder.begin(), defaultOrder.end(), 0U);
    std::ranges::stable_sort(defaultOrder, {}, [&](std::uint32_t at) {
        return joinedRanks(static_cast<std::uint32_t>(rows[at].assessment.verdict), nameRanks[at]);
    });
}

} // namespace quillmark
