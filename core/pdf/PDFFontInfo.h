// What a PDF says about one of its fonts.
#pragma once

#include "pdf/EmbeddedProgram.h"

#include <optional>
#include <string>
#include <vector>

namespace quillmark {

struct PDFFontInfo {
    std::vector<std::string> pdfNames; // subset prefixes kept; ascending, each once
    std::string subtype;               // such as "TrueType" or "Type0 / CIDFontType2"
    EmbeddedProgram program{EmbeddedProgram::notEmbedded};
    bool subset{};                          // at least one of the names carries a subset prefix
    std::vector<int> pages;                 // 1-based; ascending, each once
    std::optional<std::string> matchedPath; // the font file it was matched to
    bool matchedByFamily{};                 // matched by family, not by the font's own name
    bool readEmbeddedData{};                // facts were read from the program in the PDF
    bool operator==(const PDFFontInfo&) const = default;
};

/// What the PDF embeds, such as "Embedded (TrueType), subset".
[[nodiscard]] std::string embeddedText(const PDFFontInfo& info);

/// The page numbers, joined with ", ".
[[nodiscard]] std::string pageList(const PDFFontInfo& info);

/// The same, shorter: with runs of pages joined, such as "1-3, 7".
[[nodiscard]] std::string pageRanges(const PDFFontInfo& info);

} // namespace quillmark
