// The licence that a font's own fields name.
#pragma once

#include "fontfile/FontFacts.h"
#include "text/RawValue.h"

#include <array>
#include <string_view>

namespace quillmark {

enum class LicenseKind {
    ofl,
    apache,
    ufl,
    mit,
    publicDomain,
    bitstreamVera,
    gpl,
    named, // licence text that is none of the above
    none,
};

template <>
inline constexpr auto rawValues<LicenseKind> = std::to_array<std::string_view>({
    "ofl",
    "apache",
    "ufl",
    "mit",
    "publicDomain",
    "bitstreamVera",
    "gpl",
    "named",
    "none",
});

/// The licence named by the font's licence fields, or, for the OFL, Apache and Ubuntu licences, by
/// its copyright or trademark line.
[[nodiscard]] LicenseKind detectLicense(const FontFacts& facts);

/// The licence's name as shown and exported.
[[nodiscard]] std::string_view label(LicenseKind kind);

/// Whether the licence lets anyone embed the font. The GPL does not without its font exception.
[[nodiscard]] bool isOpen(LicenseKind kind);

} // namespace quillmark
