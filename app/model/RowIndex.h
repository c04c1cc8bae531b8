// What is worked out over the fonts of a list before it can be searched and sorted at once.
#pragma once

#include "pdf/AuditRow.h"
#include "text/CaseFolding.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace quillmark {

/// For ten thousand fonts this takes longer than a window may be without an answer, so those who
/// read many fonts have it made where they read them (RowList::prepare).
struct RowIndex {
    explicit RowIndex(std::span<const AuditRow> rows);

    CaseFolding folding;            // of the names, and to be used for what is searched for
    std::vector<std::string> names; // what a search looks through (searchedNames); by position
    std::vector<std::uint32_t> nameRanks; // of the display names; by position
    /// The positions of all rows by verdict, the worst first, and within one by name.
    std::vector<std::uint32_t> defaultOrder;
};

} // namespace quillmark
