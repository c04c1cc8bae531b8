#include "listing/DocumentSummary.h"

#include "text/DateText.h"

#include <algorithm>

namespace quillmark {

std::string documentLine(const DocumentAudit& audit)
{
    return std::to_string(audit.pageCount) + " pages \u00B7 " + std::to_string(audit.rows.size()) +
           " embedded fonts \u00B7 checked " + timeText(audit.checkedAt);
}

std::optional<DocumentFinding> documentFinding(const AuditSummary& summary)
{
    if (summary.restricted == 1)
        return DocumentFinding{Verdict::restricted,
                               "1 font here looks restricted for a product you sell. Check its "
                               "license, or rebuild the file with an open-licensed font."};
    if (summary.restricted > 1)
        return DocumentFinding{Verdict::restricted,
                               std::to_string(summary.restricted) +
                                   " fonts here look restricted for a product you sell. Check "
                                   "their licenses, or rebuild the file with open-licensed "
                                   "fonts."};
    if (summary.unknown == 0 && summary.likelyOK > 0)
        return DocumentFinding{Verdict::likelyOK, "Every font in this PDF names an open license or "
                                                  "isn't embedded."};
    return std::nullopt;
}

bool hasStrippedFields(const DocumentAudit& audit)
{
    return std::ranges::any_of(audit.rows, [](const AuditRow& row) {
        return row.pdf && row.pdf->program != EmbeddedProgram::notEmbedded &&
               !row.pdf->matchedPath && !row.pdf->readEmbeddedData;
    });
}

} // namespace quillmark
