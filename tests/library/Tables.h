// Comparing the faces that the readers of font containers give.
#pragma once

#include "fontfile/NameTable.h"
#include "fontfile/OS2Info.h"
#include "library/FontService.h"

#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace quillmark::test {

/// The family among a font's names; empty when it has none, a hyphen without a `name` table.
inline std::string family(const PlatformFont& font)
{
    if (!font.name && !font.settledNames) return "-";
    const NameStrings names =
        font.settledNames ? *font.settledNames : NameTable::strings(*font.name);
    const auto found = names.find(1);
    return found == names.end() ? "" : found->second;
}

/// One line about a face: its place, format number, and what its tables hold. A missing table is a
/// hyphen; the family stands for a `name` table, fsType for `OS/2`, the length for `fvar`.
inline std::string summary(const PlatformFont& font)
{
    std::string text = std::to_string(font.index) + " format ";
    text += font.format ? std::to_string(static_cast<int>(*font.format)) : "-";
    text += " name ";
    text += family(font);
    text += " fsType ";
    const auto os2 = font.os2 ? OS2Info::read(*font.os2) : std::nullopt;
    text += os2 ? std::to_string(os2->fsType) : "-";
    if (font.fvar) text += " fvar " + std::to_string(font.fvar->size());
    return text;
}

inline std::vector<std::string> summaries(const std::vector<PlatformFont>& fonts)
{
    std::vector<std::string> texts;
    texts.reserve(fonts.size());
    for (const PlatformFont& font : fonts)
        texts.push_back(summary(font));
    return texts;
}

} // namespace quillmark::test
