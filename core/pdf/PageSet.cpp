#include "pdf/PageSet.h"

#include <algorithm>

namespace quillmark {

void PageSet::add(int page)
{
    if (!m_runs.empty()) {
        if (page <= m_runs.back().last) return;
        if (page - 1 == m_runs.back().last) {
            m_runs.back().last = page;
            return;
        }
    }
    m_runs.push_back({page, page});
}

PageSet PageSet::of(std::vector<Run> runs)
{
    // Mostly they come from one place, in order.
    if (!std::ranges::is_sorted(runs, {}, &Run::first)) std::ranges::sort(runs, {}, &Run::first);
    PageSet result;
    for (const auto& run : runs) {
        auto& merged = result.m_runs;
        if (!merged.empty() && run.first - 1 <= merged.back().last)
            merged.back().last = std::max(merged.back().last, run.last);
        else
            merged.push_back(run);
    }
    return result;
}

std::size_t PageSet::size() const
{
    std::size_t count = 0;
    for (const auto& run : m_runs)
        count += static_cast<std::size_t>(run.last - run.first) + 1;
    return count;
}

std::vector<int> PageSet::numbers(std::size_t limit) const
{
    std::vector<int> pages;
    pages.reserve(std::min(limit, size()));
    for (const auto& run : m_runs) {
        for (int page = run.first; page <= run.last; ++page) {
            if (pages.size() == limit) return pages;
            pages.push_back(page);
        }
    }
    return pages;
}

} // namespace quillmark
