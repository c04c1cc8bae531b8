#include "assessment/Assessment.h"

#include <algorithm>
#include <cstddef>

namespace quillmark {
namespace {

struct Labels {
    Verdict verdict;
    std::string_view label;
    std::string_view shortLabel;
};

constexpr auto verdictLabels = std::to_array<Labels>({
    {Verdict::restricted, "Restricted", "Restricted"},
    {Verdict::unknown, "Unknown", "Unknown"},
    {Verdict::likelyOK, "Likely OK to embed", "Likely OK"},
});

static_assert(std::ranges::equal(verdictLabels, allCases<Verdict>, {}, &Labels::verdict));

constexpr const Labels& labels(Verdict verdict)
{
    return verdictLabels[static_cast<std::size_t>(verdict)];
}

} // namespace

std::string_view label(Verdict verdict)
{
    return labels(verdict).label;
}

std::string_view shortLabel(Verdict verdict)
{
    return labels(verdict).shortLabel;
}

} // namespace quillmark
