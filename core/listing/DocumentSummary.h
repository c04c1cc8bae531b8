// What a check of one PDF found, in words for people.
#pragma once

#include "assessment/Assessment.h"
#include "pdf/AuditRow.h"
#include "pdf/PDFFontScanner.h"

#include <optional>
#include <string>
#include <string_view>

namespace quillmark {

/// The pages, the fonts, and the time of the check in the user's locale and time zone.
[[nodiscard]] std::string documentLine(const DocumentAudit& audit);

struct DocumentFinding {
    Verdict verdict{}; // restricted or likely OK
    std::string text;
    bool operator==(const DocumentFinding&) const = default;
};

/// One sentence on all fonts of a document. Absent where there is none to say: some fonts are
/// unknown and none is restricted, or there are no fonts.
[[nodiscard]] std::optional<DocumentFinding> documentFinding(const AuditSummary& summary);

/// Whether some font is embedded without anything that could be read of it, and was not matched to
/// a font file either.
[[nodiscard]] bool hasStrippedFields(const DocumentAudit& audit);

/// What to do then.
inline constexpr std::string_view strippedFieldsNote =
    "Some fonts' license fields were stripped when the PDF was made. Scan the folder with the "
    "fonts you used (File \u203A Scan a Font Folder\u2026), then Check Again.";

} // namespace quillmark
