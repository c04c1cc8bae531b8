#include "model/RowList.h"

#include <algorithm>
#include <utility>

namespace quillmark {

RowList::RowList(std::vector<AuditRow> rows)
    : m_rows(std::make_shared<const std::vector<AuditRow>>(std::move(rows)))
{
}

RowList::RowList(std::shared_ptr<const std::vector<AuditRow>> rows) : m_rows(std::move(rows)) {}

std::span<const AuditRow> RowList::span() const
{
    if (!m_rows) return {};
    return *m_rows;
}

bool RowList::operator==(const RowList& other) const
{
    return m_rows == other.m_rows || std::ranges::equal(span(), other.span());
}

} // namespace quillmark
