// Which fonts of a list are shown.
#pragma once

#include "pdf/AuditRow.h"
#include "text/CaseFolding.h"
#include "text/RawValue.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace quillmark {

/// Where fonts have come from.
enum class Source { all, added, apple };

template <>
inline constexpr auto rawValues<Source> = std::to_array<std::string_view>({
    "all",
    "added",
    "apple",
});

[[nodiscard]] std::string_view label(Source source);

struct RowFilter {
    std::optional<Verdict> verdict; // absent: all
    Source source{Source::all};
    std::string search; // as typed; finds parts of names, whatever their case

    bool operator==(const RowFilter&) const = default;
};

/// The names that a search looks through, folded: display name, PostScript name and manufacturer,
/// kept apart so that no search matches across two of them.
[[nodiscard]] std::string searchedNames(const AuditRow& row, const CaseFolding& folding);

/// A filter made ready for many rows.
class RowMatcher {
public:
    RowMatcher(const RowFilter& filter, const CaseFolding& folding);

    /// `names` are the row's `searchedNames`, folded in the same way.
    [[nodiscard]] bool matches(const AuditRow& row, std::string_view names) const;

private:
    std::optional<Verdict> m_verdict;
    Source m_source;
    std::string m_search; // folded
};

} // namespace quillmark
