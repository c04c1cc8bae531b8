#include "library/SystemFontService.h"

#include "library/FontLibrary.h"
#include "library/InstalledFonts.h"

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

/// Leaves the installed ones of a file's faces, under the names that they are installed by.
void keepInstalled(std::vector<PlatformFont>& faces, const InstalledFile& file)
{
    std::erase_if(faces, [&file](const PlatformFont& face) {
        return std::ranges::find(file.faces, face.index) == file.faces.end();
    });
    // The tables of thousands of fonts are not worth keeping once they are read.
    std::size_t budget = NameTable::maximumFileBytes;
    for (PlatformFont& face : faces)
        FontLibrary::settleNames(face, budget);
}

} // namespace

struct SystemFontService::Installed {
    // Not std::call_once: the system's part of it, which is C, hands on no exception of a program
    // that has its own copy of the C++ library, but ends it.
    std::mutex mutex;
    bool isRead{};
    std::vector<PlatformFont> fonts; // one for each name
    std::unordered_map<std::string, std::size_t> positions;

    void read(const FontFiles& files)
    {
        const std::vector<InstalledFile> installed = files.installed();
        std::vector<std::string> paths;
        paths.reserve(installed.size());
        for (const InstalledFile& file : installed)
            paths.push_back(file.path);
        std::vector<std::vector<PlatformFont>> faces(installed.size());
        files.facesOfEach(paths, Faces::all, [&](std::size_t i, std::vector<PlatformFont>&& read) {
            faces[i] = std::move(read);
            keepInstalled(faces[i], installed[i]);
        });
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

    [[nodiscard]] static const Installed& read(Installed& installed, const FontFiles& files)
    {
        const std::lock_guard lock(installed.mutex);
        if (!installed.isRead) installed.read(files);
        installed.isRead = true;
        return installed;
    }
};

SystemFontService::SystemFontService(std::shared_ptr<const FontFiles> files)
    : m_files(std::move(files)), m_installed(std::make_unique<Installed>())
{
}

SystemFontService::~SystemFontService() = default;

std::vector<std::string> SystemFontService::installedNames() const
{
    std::vector<std::string> names;
    const auto& fonts = Installed::read(*m_installed, *m_files).fonts;
    names.reserve(fonts.size());
    for (const PlatformFont& font : fonts)
        names.push_back(font.postScriptName);
    return names;
}

std::optional<PlatformFont> SystemFontService::installedFont(std::string_view postScriptName) const
{
    const Installed& installed = Installed::read(*m_installed, *m_files);
    const auto found = installed.positions.find(std::string(postScriptName));
    if (found == installed.positions.end()) return std::nullopt;
    return installed.fonts[found->second];
}

std::vector<PlatformFont> SystemFontService::facesOf(const std::string& file, Faces which) const
{
    std::vector<PlatformFont> faces;
    facesOfEach(
        std::span(&file, 1), which,
        [&faces](std::size_t, std::vector<PlatformFont>&& read) { faces = std::move(read); });
    return faces;
}

void SystemFontService::facesOfEach(std::span<const std::string> files, Faces which,
                                    const TakeFaces& take) const
{
    m_files->facesOfEach(files, which, take);
}

} // namespace quillmark
