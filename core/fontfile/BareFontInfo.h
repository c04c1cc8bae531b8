// What a font program without an sfnt wrapper says about itself. Read by CFF.h and Type1.h.
#pragma once

#include <optional>
#include <string>

namespace quillmark {

/// Absent means that the program does not say; no field is ever empty. `fontName` is as stored, the
/// others are trimmed of white space.
struct BareFontInfo {
    std::optional<std::string> fontName;
    std::optional<std::string> fullName;
    std::optional<std::string> familyName;
    std::optional<std::string> notice;
    std::optional<std::string> copyright;
    bool operator==(const BareFontInfo&) const = default;
};

} // namespace quillmark
