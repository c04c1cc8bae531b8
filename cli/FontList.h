// What a command hands to a report: lists of judged fonts, and what could not be read.
#pragma once

#include "pdf/AuditRow.h"

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace quillmark::cli {

/// What a list is of.
struct ListSource {
    enum class Kind {
        installed,
        folder,
        file,  // one font file given by name
        named, // installed fonts asked for by one name
        document,
    };
    /// What is known of a document besides its fonts.
    struct Document {
        std::string fileName;
        int pageCount{};
        std::chrono::system_clock::time_point checkedAt;
        bool operator==(const Document&) const = default;
    };

    Kind kind{};
    std::string title;
    std::string subtitle;
    std::optional<std::string> path; // absolute; absent for the installed fonts
    std::optional<Document> document;
};

[[nodiscard]] inline Verdict verdict(const AuditRow& row)
{
    return row.assessment.verdict;
}

/// A row in the form in which a report writes it. It is made where the font is judged, by several
/// threads at once, and takes much less memory than all that is known of the font.
struct TextRow {
    Verdict verdict{};
    std::string text;
};

[[nodiscard]] inline Verdict verdict(const TextRow& row)
{
    return row.verdict;
}

/// A list whose rows are what a report needs of them: AuditRow or TextRow.
template <typename Row>
struct FontList {
    ListSource source;
    std::vector<Row> rows; // the library's order, for a document the audit's, or as was asked for
    std::size_t hidden{};  // further fonts, which were not asked for

    [[nodiscard]] AuditSummary summary() const
    {
        AuditSummary summary;
        for (const Row& row : rows)
            summary.add(verdict(row));
        return summary;
    }
};

/// Something that was asked for and could not be read.
struct InputError {
    std::string path; // absolute, or the name that a font was asked for by
    std::string message;
    bool operator==(const InputError&) const = default;
};

} // namespace quillmark::cli
