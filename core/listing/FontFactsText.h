// What is said about one font where it is shown in full, as labels and values.
#pragma once

#include "fontfile/FontFacts.h"
#include "pdf/AuditRow.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillmark {

struct Fact {
    std::string_view label;
    std::string value;                 // not empty
    std::optional<std::string> link{}; // the address that the value opens
    bool operator==(const Fact&) const = default;
};

/// The labels of all facts of a font, in the order in which they are shown.
inline constexpr std::array<std::string_view, 11> fontFactLabels{
    "Family",       "Copyright",   "Trademark",      "Maker",     "Designer", "License",
    "License file", "License URL", "Embedding bits", "Vendor ID", "Format",
};

/// The one whose value can be a link.
inline constexpr std::string_view linkedFactLabel = fontFactLabels[7];

/// The labels of all facts of a font in a PDF, in their order.
inline constexpr std::array<std::string_view, 5> pdfFactLabels{
    "Name in PDF", "Font type", "Embedded", "Pages", "Matched to",
};

/// The one whose value is a path, which goes from left to right in every script.
inline constexpr std::string_view pathFactLabel = pdfFactLabels[4];

/// What the font says about itself; what it does not say is left out.
[[nodiscard]] std::vector<Fact> factsOfFont(const FontFacts& facts);

/// How the PDF uses it.
[[nodiscard]] std::vector<Fact> factsOfUse(const PDFFontInfo& pdf);

} // namespace quillmark
