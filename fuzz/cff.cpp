// Bare CFF programs.

#include "Harness.h"

#include "fontfile/CFF.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace quillmark;
    const auto info = CFF::read(fuzz::input(data, size));
    if (!info) return 0;
    for (const auto& text :
         {info->fontName, info->fullName, info->familyName, info->notice, info->copyright})
        fuzz::expectText(text);
    return 0;
}
