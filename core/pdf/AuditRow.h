// One font of a list with its assessment, and the counts over a list.
#pragma once

#include "assessment/Assessment.h"
#include "fontfile/FontFacts.h"
#include "pdf/PDFFontInfo.h"

#include <optional>
#include <span>
#include <string>

namespace quillmark {

struct AuditRow {
    FontFacts facts;
    Assessment assessment;
    std::optional<PDFFontInfo> pdf; // only for a document's font

    /// File path, PostScript name and program kind, joined with "#". Two rows of one document can
    /// have the same id.
    [[nodiscard]] std::string id() const;

    /// The PDF's first name for a font that the PDF calls otherwise than the font calls itself. It
    /// is shown beside the display name, which may say little, such as "Unnamed font". Absent for
    /// any other row.
    [[nodiscard]] std::optional<std::string> otherName() const;

    bool operator==(const AuditRow&) const = default;
};

/// A row for an installed or scanned font, with the classifier's assessment.
[[nodiscard]] AuditRow auditRow(FontFacts facts);

/// How many fonts have each verdict.
struct AuditSummary {
    int likelyOK{};
    int restricted{};
    int unknown{};

    [[nodiscard]] static AuditSummary of(std::span<const AuditRow> rows);
    /// Counts one more font with this verdict.
    void add(Verdict verdict);
    /// One line, such as "7 fonts: 4 likely OK, 1 restricted, 2 unknown".
    [[nodiscard]] std::string text() const;
    bool operator==(const AuditSummary&) const = default;
};

} // namespace quillmark
