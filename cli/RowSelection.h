// Which fonts of a list are reported, and in which order.
#pragma once

#include "cli/Options.h"
#include "listing/RowFilter.h"
#include "pdf/AuditRow.h"
#include "text/CaseFolding.h"
#include "text/Collation.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace quillmark::cli {

/// What the filtering options ask for. Immutable once made; may be asked by several threads.
class RowSelection {
public:
    /// `locale` as that of the environment.
    RowSelection(const Options& options, const std::string& locale);

    [[nodiscard]] bool admits(const AuditRow& row) const;

    /// Whether rows are sorted by their keys; otherwise they keep the order in which they come.
    [[nodiscard]] bool sorts() const { return m_sort.has_value(); }
    /// What a row is sorted by, as bytes; empty when rows are not sorted.
    [[nodiscard]] std::string key(const AuditRow& row) const;

private:
    CaseFolding m_folding;
    std::vector<RowMatcher> m_matchers; // one of them is enough
    bool m_searches;
    std::optional<SortKey> m_sort;
    std::unique_ptr<Collator> m_order; // only to sort by family
};

} // namespace quillmark::cli
