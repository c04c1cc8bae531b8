// Fonts and readers for the tests of this folder.
#pragma once

#include "library/FontFiles.h"
#include "library/FontLibrary.h"
#include "library/SystemFontService.h"
#include "reader/FontReaders.h"
#include "support/FontBytes.h"
#include "support/TemporaryFolder.h"

#include <chrono>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace quillmark::test {

/// The settings for the reader that is shipped.
inline reader::Settings ordinaryReader()
{
    return reader::besideThisProgram(reader::Settings::Afterwards::kept);
}

/// The settings for the reader whose readers fail over some files.
inline reader::Settings faultyReader()
{
    return {.program = FAULTY_READER};
}

inline std::shared_ptr<const FontFiles> fontReaders(reader::Settings settings)
{
    return std::make_shared<reader::FontReaders>(
        std::make_shared<reader::Readers>(std::move(settings)));
}

/// Writes a font of that name.
inline std::filesystem::path writeFont(const TemporaryFolder& folder, const std::string& name)
{
    const std::u16string wide(name.begin(), name.end());
    return folder.write(name + ".ttf", FontBytes()
                                           .face()
                                           .name(0, u"Copyright the foundry of " + wide)
                                           .name(1, wide)
                                           .name(2, u"Regular")
                                           .name(6, wide)
                                           .name(13, u"All rights reserved")
                                           .os2({.fsType = 8})
                                           .build());
}

inline std::vector<FontFacts> scan(const TemporaryFolder& folder,
                                   const std::shared_ptr<const FontFiles>& files)
{
    return FontLibrary::scanFolder(SystemFontService(files), Collator("en"), folder.path());
}

inline std::vector<std::string> families(const std::vector<FontFacts>& fonts)
{
    std::vector<std::string> names;
    names.reserve(fonts.size());
    for (const FontFacts& font : fonts)
        names.push_back(font.family);
    return names;
}

} // namespace quillmark::test
