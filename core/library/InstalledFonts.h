// Which font files are installed, as fontconfig knows it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace quillmark {

/// A font file and those of its faces that are installed.
struct InstalledFile {
    std::string path;
    std::vector<std::uint32_t> faces; // each once
};

/// The installed files, each once, in fontconfig's order. Empty when fontconfig is not set up.
[[nodiscard]] std::vector<InstalledFile> installedFiles();

} // namespace quillmark
