// The report's text, as paragraphs of styled runs. Where they stand on pages is PDFReport.h's.
#pragma once

#include "notes/LicenseNote.h"
#include "pdf/AuditRow.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quillmark {

enum class Weight { regular, bold };

enum class Ink { black, grey, restricted, unknown, likelyOK };

[[nodiscard]] Ink ink(Verdict verdict);

struct TextRun {
    std::string text; // printable UTF-8
    Weight weight{Weight::regular};
    Ink ink{Ink::black};
};

/// A stretch of a paragraph's text that opens an address.
struct TextLink {
    std::size_t start{}; // in bytes of the runs' joined text
    std::size_t end{};
    std::string address;
};

/// Text between two line ends.
struct Paragraph {
    std::vector<TextRun> runs;
    double size{};        // of the type, in points
    double leading{};     // from this line's baseline to the next one's, in points
    std::size_t indent{}; // room of so many blanks before the first line
    std::size_t hang{};   // the same before every other line
    std::optional<TextLink> link{};
    double spaceBefore{}; // above the first line, in points

    [[nodiscard]] std::string text() const;
};

namespace ReportText {

// In points. Those of emphasised lines and of the title are set in the bold face and nothing else
// is.
inline constexpr double bodySize = 9;
inline constexpr double emphasisSize = 9.5;
inline constexpr double titleSize = 16;
inline constexpr double footerSize = 7.5;

/// What stands before the fonts. `date` is text already.
[[nodiscard]] std::vector<Paragraph> heading(std::string_view title, std::string_view subtitle,
                                             std::string_view date, const AuditSummary& summary);

/// One font; `note` may be null. The first paragraph names the font, the second is the headline.
[[nodiscard]] std::vector<Paragraph> block(const AuditRow& row, const LicenseNote* note);

[[nodiscard]] std::string footer(std::size_t pageNumber);

} // namespace ReportText
} // namespace quillmark
