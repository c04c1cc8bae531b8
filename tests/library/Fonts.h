// What the tests of this folder share: service fonts made from names, and short fonts as files.
#pragma once

#include "library/FontService.h"
#include "support/FontBytes.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quillmark::test {

/// A `name` table of Windows English records.
inline Bytes namesTable(const std::vector<std::pair<std::uint16_t, std::u16string_view>>& names)
{
    std::vector<NameRecord> records;
    records.reserve(names.size());
    for (const auto& [id, text] : names)
        records.push_back(windowsEnglish(id, text));
    return nameTable(records).build();
}

/// A face that the service knows by `postScriptName`.
inline PlatformFont
platformFont(std::string postScriptName,
             const std::vector<std::pair<std::uint16_t, std::u16string_view>>& names = {})
{
    PlatformFont font;
    font.postScriptName = std::move(postScriptName);
    if (!names.empty()) font.name = namesTable(names);
    return font;
}

/// A TrueType file with one face of this family and PostScript name.
inline Bytes fontFile(std::u16string_view family, std::u16string_view postScriptName)
{
    return FontBytes()
        .face()
        .name(1, family)
        .name(2, u"Regular")
        .name(6, postScriptName)
        .os2({.fsType = 8})
        .build();
}

} // namespace quillmark::test
