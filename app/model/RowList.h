// The fonts of one list, shared instead of copied.
#pragma once

#include "model/RowIndex.h"
#include "pdf/AuditRow.h"

#include <cstddef>
#include <memory>
#include <span>
#include <vector>

namespace quillmark {

/// Rows that never change. Copies share them, so a list of 20,000 fonts can be shown, exported and
/// matched against on another thread while the model already has a newer one.
class RowList {
public:
    RowList() = default;
    explicit RowList(std::vector<AuditRow> rows);
    /// The rows of something that is shared itself, such as a document's audit.
    explicit RowList(std::shared_ptr<const std::vector<AuditRow>> rows);

    /// Valid as long as any copy of this list is.
    [[nodiscard]] std::span<const AuditRow> span() const;
    [[nodiscard]] std::size_t size() const { return span().size(); }
    [[nodiscard]] bool empty() const { return span().empty(); }

    /// What the list is searched and sorted by. Made once for all copies, when it is first asked
    /// for; valid as long as any copy is. Callable from any thread.
    [[nodiscard]] const RowIndex& index() const;
    /// Makes that now, where nobody waits for it.
    void prepare() const;
    [[nodiscard]] bool isPrepared() const;

    /// Whether the rows are equal; free when they are the same.
    bool operator==(const RowList& other) const;

private:
    struct Shared;
    std::shared_ptr<const Shared> m_shared;
};

} // namespace quillmark
