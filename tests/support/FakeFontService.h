// A font service that answers what a test tells it to.
#pragma once

#include "library/FontService.h"

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quillmark::test {

class FakeFontService final : public FontService {
public:
    /// What is installed: the name to ask for, and the font that answers, if any does.
    std::vector<std::pair<std::string, std::optional<PlatformFont>>> installed;
    /// The faces of files, by path.
    std::map<std::filesystem::path, std::vector<PlatformFont>> files;

    [[nodiscard]] std::vector<std::string> installedNames() const override;
    [[nodiscard]] std::optional<PlatformFont>
    installedFont(std::string_view postScriptName) const override;
    [[nodiscard]] std::vector<PlatformFont> facesOf(const std::string& file,
                                                    Faces which) const override;
};

} // namespace quillmark::test
