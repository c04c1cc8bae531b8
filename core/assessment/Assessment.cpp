#include "assessment/Assessment.h"

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

constexpr bool inDeclarationOrder()
{
    for (std::size_t i = 0; i < verdictLabels.size(); ++i)
        if (verdictLabels[i].verdict != static_cast<Verdict>(i)) return false;
    return verdictLabels.size() == rawValues<Verdict>.size();
}
static_assert(inDeclarationOrder());
static_assert(allVerdicts.size() == rawValues<Verdict>.size());

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
