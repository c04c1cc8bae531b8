#include "model/RowList.h"

#include <algorithm>
#include <mutex>
#include <optional>
#include <utility>

namespace quillmark {

struct RowList::Shared {
    explicit Shared(std::shared_ptr<const std::vector<AuditRow>> those) : rows(std::move(those)) {}

    std::shared_ptr<const std::vector<AuditRow>> rows;
    mutable std::mutex mutex; // over the index
    mutable std::optional<RowIndex> index;
};

RowList::RowList(std::vector<AuditRow> rows)
    : RowList(std::make_shared<const std::vector<AuditRow>>(std::move(rows)))
{
}

RowList::RowList(std::shared_ptr<const std::vector<AuditRow>> rows)
    : m_shared(std::make_shared<const Shared>(std::move(rows)))
{
}

std::span<const AuditRow> RowList::span() const
{
    if (!m_shared || !m_shared->rows) return {};
    return *m_shared->rows;
}

const RowIndex& RowList::index() const
{
    if (!m_shared) {
        static const RowIndex ofNone(std::span<const AuditRow>{});
        return ofNone;
    }
    const std::lock_guard lock(m_shared->mutex);
    if (!m_shared->index) m_shared->index.emplace(span());
    return *m_shared->index;
}

void RowList::prepare() const
{
    static_cast<void>(index());
}

bool RowList::isPrepared() const
{
    if (!m_shared) return true;
    const std::lock_guard lock(m_shared->mutex);
    return m_shared->index.has_value();
}

bool RowList::operator==(const RowList& other) const
{
    return span().data() == other.span().data() || std::ranges::equal(span(), other.span());
}

} // namespace quillmark
