// The user's settings that belong to the model. Windows keep theirs in the same file.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace quillmark::Preferences {

/// The folders under the key "fontFolders", as they were saved; none when the key or the file is
/// not there.
[[nodiscard]] std::vector<std::string> fontFolders(const std::filesystem::path& file);

/// Writes them, and leaves all other keys as they are. Whether that could be done.
[[nodiscard]] bool setFontFolders(const std::filesystem::path& file,
                                  const std::vector<std::string>& folders);

} // namespace quillmark::Preferences
