#include "fontfile/TextSize.h"

#include <initializer_list>

namespace quillmark {
namespace {

std::size_t sizeOf(std::initializer_list<const std::optional<std::string>*> texts)
{
    std::size_t size = 0;
    for (const auto* text : texts)
        if (*text) size += (*text)->size();
    return size;
}

} // namespace

std::size_t textSize(const FontFacts& facts)
{
    return facts.postScriptName.size() + facts.family.size() + facts.style.size() +
           sizeOf({
               &facts.fullName,
               &facts.copyright,
               &facts.trademark,
               &facts.manufacturer,
               &facts.designer,
               &facts.vendorURL,
               &facts.licenseDescription,
               &facts.licenseURL,
               &facts.licenseFile,
               &facts.filePath,
               &facts.format,
           });
}

std::size_t textSize(const BareFontInfo& info)
{
    return sizeOf(
        {&info.fontName, &info.fullName, &info.familyName, &info.notice, &info.copyright});
}

} // namespace quillmark
