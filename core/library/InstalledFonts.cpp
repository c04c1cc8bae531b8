#include "library/InstalledFonts.h"

#include <algorithm>
#include <memory>
#include <string_view>
#include <unordered_map>

#include <fontconfig/fontconfig.h>

namespace quillmark {
namespace {

struct DestroyConfig {
    void operator()(FcConfig* config) const { ::FcConfigDestroy(config); }
};

std::string_view text(const FcChar8* characters)
{
    return reinterpret_cast<const char*>(characters);
}

} // namespace

std::vector<InstalledFile> installedFiles()
{
    std::vector<InstalledFile> files;
    // A configuration of our own shows what is installed now, and leaves the process's alone.
    const std::unique_ptr<FcConfig, DestroyConfig> config(::FcInitLoadConfigAndFonts());
    const FcFontSet* fonts = config ? ::FcConfigGetFonts(config.get(), FcSetSystem) : nullptr;
    if (fonts == nullptr) return files;
    // fontconfig names the files as they are seen inside its system root.
    const FcChar8* root = ::FcConfigGetSysRoot(config.get());

    std::unordered_map<std::string_view, std::size_t> positions;
    for (int i = 0; i < fonts->nfont; ++i) {
        FcChar8* path = nullptr;
        int index = 0;
        if (::FcPatternGetString(fonts->fonts[i], FC_FILE, 0, &path) != FcResultMatch ||
            ::FcPatternGetInteger(fonts->fonts[i], FC_INDEX, 0, &index) != FcResultMatch)
            continue;
        const auto [position, isNew] = positions.try_emplace(text(path), files.size());
        if (isNew) {
            std::string full(root == nullptr ? std::string_view{} : text(root));
            files.push_back({full.append(text(path)), {}});
        }
        // The upper half tells a variable font's instances, which are no faces of their own.
        const auto face = static_cast<std::uint32_t>(index) & 0xFFFFU;
        auto& faces = files[position->second].faces;
        if (std::ranges::find(faces, face) == faces.end()) faces.push_back(face);
    }
    return files;
}

} // namespace quillmark
