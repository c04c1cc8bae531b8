// The fonts of this computer: fontconfig says which are installed, our own readers take the tables
// out of sfnt, WOFF and WOFF2 files, and FreeType opens the other formats.
#pragma once

#include "library/FontFiles.h"
#include "library/FontService.h"

#include <memory>

namespace quillmark {

/// Lists the installed fonts on first use and keeps that list; make a new one to see changes.
class SystemFontService final : public FontService {
public:
    /// `files` says which files are installed, and reads them.
    explicit SystemFontService(
        std::shared_ptr<const FontFiles> files = std::make_shared<LocalFontFiles>());
    ~SystemFontService() override;
    SystemFontService(const SystemFontService&) = delete;
    SystemFontService& operator=(const SystemFontService&) = delete;

    [[nodiscard]] std::vector<std::string> installedNames() const override;
    [[nodiscard]] std::optional<PlatformFont>
    installedFont(std::string_view postScriptName) const override;
    [[nodiscard]] std::vector<PlatformFont> facesOf(const std::string& file,
                                                    Faces which) const override;
    void facesOfEach(std::span<const std::string> files, Faces which,
                     const TakeFaces& take) const override;

private:
    struct Installed;
    std::shared_ptr<const FontFiles> m_files;
    std::unique_ptr<Installed> m_installed;
};

} // namespace quillmark
