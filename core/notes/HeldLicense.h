// The kinds of licence that a user can record for a font. What the font itself names is
// assessment/LicenseKind.h.
#pragma once

#include "text/RawValue.h"

#include <array>
#include <string_view>

namespace quillmark {

/// Declared in the order in which they are offered.
enum class HeldLicense {
    notSet,
    openLicense,
    desktop,
    desktopCommercial,
    web,
    app,
    ebook,
    extended,
    appleSystem,
    other,
};

template <>
inline constexpr auto rawValues<HeldLicense> = std::to_array<std::string_view>({
    "notSet",
    "openLicense",
    "desktop",
    "desktopCommercial",
    "web",
    "app",
    "ebook",
    "extended",
    "appleSystem",
    "other",
});

/// The kind as shown and exported.
[[nodiscard]] std::string_view label(HeldLicense license);

} // namespace quillmark
