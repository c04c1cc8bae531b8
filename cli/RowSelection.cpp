#include "cli/RowSelection.h"

#include <algorithm>

namespace quillmark::cli {
namespace {

std::vector<RowMatcher> matchers(const Options& options, const CaseFolding& folding)
{
    RowFilter filter{.verdict = {}, .source = options.source, .search = options.search};
    std::vector<RowMatcher> made;
    for (const Verdict verdict : options.verdicts) {
        filter.verdict = verdict;
        made.emplace_back(filter, folding);
    }
    if (made.empty()) made.emplace_back(filter, folding);
    return made;
}

} // namespace

RowSelection::RowSelection(const Options& options, const std::string& locale)
    : m_folding(locale), m_matchers(matchers(options, m_folding)),
      m_searches(!options.search.empty()), m_sort(options.sort)
{
    if (m_sort == SortKey::family) m_order = std::make_unique<Collator>(locale);
}

bool RowSelection::admits(const AuditRow& row) const
{
    // Names are worth folding only for a search.
    const std::string names = m_searches ? searchedNames(row, m_folding) : std::string();
    return std::ranges::any_of(
        m_matchers, [&](const RowMatcher& matcher) { return matcher.matches(row, names); });
}

std::string RowSelection::key(const AuditRow& row) const
{
    if (!m_sort) return {};
    switch (*m_sort) {
    case SortKey::verdict:
        return std::to_string(static_cast<int>(row.assessment.verdict)) + row.facts.displayName();
    case SortKey::name:
        return row.facts.displayName();
    case SortKey::family:
        return m_order->sortKey(row.facts.family) + m_order->sortKey(row.facts.style);
    case SortKey::file:
        // What has no file comes last: no path begins with this byte.
        return row.facts.filePath.value_or("\xFF");
    }
    return {};
}

} // namespace quillmark::cli
