#include "support/FakeFontService.h"

#include <algorithm>

namespace quillmark::test {

std::vector<std::string> FakeFontService::installedNames() const
{
    std::vector<std::string> names;
    names.reserve(installed.size());
    for (const auto& [name, font] : installed)
        names.push_back(name);
    return names;
}

std::optional<PlatformFont> FakeFontService::installedFont(std::string_view postScriptName) const
{
    const auto found =
        std::ranges::find(installed, postScriptName, &decltype(installed)::value_type::first);
    return found == installed.end() ? std::nullopt : found->second;
}

std::vector<PlatformFont> FakeFontService::facesOf(const std::string& file, Faces which) const
{
    const auto found = files.find(file);
    if (found == files.end()) return {};
    auto faces = found->second;
    if (which == Faces::variable)
        std::erase_if(faces, [](const PlatformFont& face) { return !face.fvar; });
    else
        for (auto& face : faces)
            face.fvar.reset();
    return faces;
}

} // namespace quillmark::test
