// Fonts that come with macOS, licensed by Apple for use on Apple devices.
#pragma once

#include "fontfile/FontFacts.h"

#include <optional>
#include <string>

namespace quillmark::AppleFonts {

/// On what grounds a font counts as one that comes with macOS.
struct Origin {
    enum class Kind {
        systemFolder, // its file lies in a system font folder
        appleMade,    // its own data name Apple as its maker
        knownName,    // a document font without a file, named like a family that ships with macOS
    };
    Kind kind{};
    std::string path; // the file's path for systemFolder, else empty
    bool operator==(const Origin&) const = default;
};

/// Absent when the font does not come with macOS.
[[nodiscard]] std::optional<Origin> origin(const FontFacts& facts);

} // namespace quillmark::AppleFonts
