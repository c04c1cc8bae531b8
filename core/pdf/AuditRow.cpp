#include "pdf/AuditRow.h"

#include "assessment/Classifier.h"
#include "pdf/SubsetPrefix.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace quillmark {

std::string AuditRow::id() const
{
    const std::string_view path = facts.filePath ? std::string_view(*facts.filePath) : "";
    const std::string_view program = pdf ? rawValue(pdf->program) : "";
    std::string id;
    id.reserve(path.size() + facts.postScriptName.size() + program.size() + 2);
    id += path;
    id += '#';
    id += facts.postScriptName;
    id += '#';
    id += program;
    return id;
}

std::optional<std::string> AuditRow::otherName() const
{
    if (!pdf || pdf->pdfNames.empty()) return std::nullopt;
    const auto isOwnName = [&](const std::string& pdfName) {
        return splitSubsetPrefix(pdfName).cleanName == facts.postScriptName;
    };
    if (std::ranges::any_of(pdf->pdfNames, isOwnName)) return std::nullopt;
    return pdf->pdfNames.front();
}

AuditRow auditRow(FontFacts facts)
{
    Assessment assessment = Classifier::assess(facts);
    return {std::move(facts), std::move(assessment), std::nullopt};
}

AuditSummary AuditSummary::of(std::span<const AuditRow> rows)
{
    AuditSummary summary;
    for (const auto& row : rows)
        summary.add(row.assessment.verdict);
    return summary;
}

void AuditSummary::add(Verdict verdict)
{
    switch (verdict) {
    case Verdict::restricted:
        ++restricted;
        break;
    case Verdict::unknown:
        ++unknown;
        break;
    case Verdict::likelyOK:
        ++likelyOK;
        break;
    }
}

std::string AuditSummary::text() const
{
    return std::to_string(likelyOK + restricted + unknown) + " fonts: " + std::to_string(likelyOK) +
           " likely OK, " + std::to_string(restricted) + " restricted, " + std::to_string(unknown) +
           " unknown";
}

} // namespace quillmark
