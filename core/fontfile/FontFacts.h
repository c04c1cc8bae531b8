// The record that everything else passes around: what one font face says about itself.
#pragma once

#include "fontfile/FormatLabel.h"
#include "fontfile/NameTable.h"
#include "fontfile/OS2Info.h"
#include "text/RawValue.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quillmark {

/// Where a font was found.
enum class FontOrigin { installed, folder, document };

template <>
inline constexpr auto rawValues<FontOrigin> = std::to_array<std::string_view>({
    "installed",
    "folder",
    "document",
});

/// One font face. Absent means that the font does not say; texts are trimmed and never empty when
/// they come from a font. `postScriptName` names the font in notes and look-ups.
struct FontFacts {
    std::string postScriptName;
    std::string family;
    std::string style; // may be empty
    std::optional<std::string> fullName;
    std::optional<std::string> copyright;
    std::optional<std::string> trademark;
    std::optional<std::string> manufacturer;
    std::optional<std::string> designer;
    std::optional<std::string> vendorURL;
    std::optional<std::string> licenseDescription; // name 13, or the text of a licence file
    std::optional<std::string> licenseURL;
    std::optional<std::string> licenseFile; // path of the licence file beside the font
    std::optional<OS2Info> os2;
    std::optional<std::string> filePath;
    std::optional<std::string> format; // a FormatLabel
    FontOrigin origin{};

    /// The names that facts are made from.
    static constexpr std::array nameIDs{
        NameID::copyright,
        NameID::family,
        NameID::subfamily,
        NameID::fullName,
        NameID::postScriptName,
        NameID::trademark,
        NameID::manufacturer,
        NameID::designer,
        NameID::vendorURL,
        NameID::licenseDescription,
        NameID::licenseURL,
        NameID::typographicFamily,
        NameID::typographicSubfamily,
    };

    /// Facts from name strings. `fallbackName` stands in where the names give no family or no
    /// PostScript name.
    [[nodiscard]] static FontFacts fromNames(NameStrings names, std::optional<OS2Info> os2,
                                             std::string_view fallbackName,
                                             std::optional<std::string> filePath,
                                             std::optional<std::string> format, FontOrigin origin);

    /// The PostScript name as these names give it, be it the full name without its spaces; absent
    /// when they give none.
    [[nodiscard]] static std::optional<std::string> postScriptNameAmong(const NameStrings& names);

    /// One record per face of a font file's bytes, in face order; empty when there is none. A face
    /// whose names come after NameTable::maximumFileBytes is spent keeps its place, without names.
    [[nodiscard]] static std::vector<FontFacts> read(std::span<const std::byte> data,
                                                     const std::optional<std::string>& filePath,
                                                     FontOrigin origin);

    /// This record, a matched font, with what it lacks taken from `other`, the document's own copy.
    /// A licence file is taken over only together with the licence text that was read from it.
    [[nodiscard]] FontFacts filled(const FontFacts& other) const;

    /// The full name, else the family and the style, else the family.
    [[nodiscard]] std::string displayName() const;

    /// The embedding permission bits; absent without an `OS/2` table.
    [[nodiscard]] std::optional<std::uint16_t> fsType() const;

    bool operator==(const FontFacts&) const = default;
};

} // namespace quillmark
