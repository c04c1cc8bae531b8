#include "library/SystemFontService.h"

#include "library/FontFile.h"
#include "library/FontLibrary.h"
#include "library/InstalledFonts.h"
#include "library/Parallel.h"
#include "library/RegularFile.h"

#include <algorithm>
#include <cstddef>
#include <mutex>
#include <unordered_map>
#include <utility>

namespace quillmark {
namespace {

/// Lower is better: of several files with one PostScript name, outlines win, then the newer format.
int formatRank(const PlatformFont& font)
{
    if (font.format == FontFormat::bitmap) return 2;
    return font.format == FontFormat::postScript ? 1 : 0;
}

std::vector<PlatformFont> facesOfFile(const std::string& path, Faces which)
{
    const auto file = RegularFile::open(path);
    if (!file) return {};
    std::vector<PlatformFont> faces = FontFile::faces(*file, which);
    for (PlatformFont& face : faces)
        face.path = path;
    return faces;
}

/// The installed faces of a file, under the names that they are installed by.
std::vector<PlatformFont> installedFaces(const InstalledFile& file)
{
    std::vector<PlatformFont> faces = facesOfFile(file.path, Faces::all);
    std::erase_if(faces, [&file](const PlatformFont& face) {
        return std::ranges::find(file.faces, face.index) == file.faces.end();
    });
    // The tables of thousands of fonts are not worth keeping once they are read.
    std::size_t budget = NameTable::maximumFileBytes;
    for (PlatformFont& face : faces)
        FontLibrary::settleNames(face, budget);
    return faces;
}

} // namespace

struct SystemFontService::Installed {
    std::once_flag once;
    std::vector<PlatformFont> fonts; // one for each name
    std::unordered_map<std::string, std::size_t> positions;

    void read()
    {
        const std::vector<InstalledFile> files = installedFiles();
        std::vector<std::vector<PlatformFont>> faces(files.size());
        forEachIndex(files.size(), [&](std::size_t i) { faces[i] = installedFaces(files[i]); });
        for (auto& ofFile : faces)
            for (PlatformFont& face : ofFile)
                add(std::move(face));
    }

    void add(PlatformFont font)
    {
        if (font.postScriptName.empty()) return; // nobody can ask for it
        const auto [position, isNew] = positions.try_emplace(font.postScriptName, fonts.size());
        if (isNew)
            fonts.push_back(std::move(font));
        else if (formatRank(font) < formatRank(fonts[position->second]))
            fonts[position->second] = std::move(font);
    }

    [[nodiscard]] static const Installed& read(Installed& installed)
    {
        std::call_once(installed.once, [&installed] { installed.read(); });
        return installed;
    }
};

SystemFontService::SystemFontService() : m_installed(std::make_unique<Installed>()) {}

SystemFontService::~SystemFontService() = default;

std::vector<std::string> SystemFontService::installedNames() const
{
    std::vector<std::string> names;
    const auto& fonts = Installed::read(*m_installed).fonts;
    names.reserve(fonts.size());
    for (const PlatformFont& font : fonts)
        names.push_back(font.postScriptName);
    return names;
}

std::optional<PlatformFont> SystemFontService::installedFont(std::string_view postScriptName) const
{
    const Installed& installed = Installed::read(*m_installed);
    const auto found = installed.positions.find(std::string(postScriptName));
    if (found == installed.positions.end()) return std::nullopt;
    return installed.fonts[found->second];
}

std::vector<PlatformFont> SystemFontService::facesOf(const std::string& file, Faces which) const
{
    return facesOfFile(file, which);
}

} // namespace quillmark
