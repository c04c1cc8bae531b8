#include "listing/RowFilter.h"

namespace quillmark {
namespace {

/// No byte of any UTF-8 text, so nothing that is searched for contains it.
constexpr char between = '\xFF';

} // namespace

std::string_view label(Source source)
{
    switch (source) {
    case Source::all:
        return "All fonts";
    case Source::added:
        return "Added by you";
    case Source::apple:
        return "Came with macOS";
    }
    return {};
}

std::string searchedNames(const AuditRow& row, const CaseFolding& folding)
{
    std::string names = folding.folded(row.facts.displayName());
    names += between;
    names += folding.folded(row.facts.postScriptName);
    if (row.facts.manufacturer) {
        names += between;
        names += folding.folded(*row.facts.manufacturer);
    }
    return names;
}

RowMatcher::RowMatcher(const RowFilter& filter, const CaseFolding& folding)
    : m_verdict(filter.verdict), m_source(filter.source), m_search(folding.folded(filter.search))
{
}

bool RowMatcher::matches(const AuditRow& row, std::string_view names) const
{
    if (m_verdict && row.assessment.verdict != *m_verdict) return false;
    if (m_source != Source::all && row.assessment.appleBundled != (m_source == Source::apple))
        return false;
    return m_search.empty() || names.find(m_search) != std::string_view::npos;
}

} // namespace quillmark
