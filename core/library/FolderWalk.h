// Finding the font files and licence files below a folder, without opening any of them.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace quillmark {

/// What lies below a folder. Paths are kept as the bytes the system gave, in the order of the walk:
/// entries by their names' bytes, what a subfolder holds in the subfolder's place.
struct FolderContents {
    struct FontFile {
        std::string path;
        std::size_t folder{}; // the folder it lies in, as an index into licenseCandidates
    };
    std::vector<FontFile> fonts;
    std::vector<std::vector<std::filesystem::path>> licenseCandidates; // one list for each folder
};

/// Walks `folder` and its subfolders. Left out are hidden entries (with a leading full stop), links
/// to folders, and everything but regular files and links to them; a subfolder that cannot be read
/// counts as empty. `folder` itself may be a link, hidden, relative, and end in a slash.
[[nodiscard]] FolderContents walkFolder(const std::filesystem::path& folder);

/// The licence candidates that lie in `folder` itself, as a walk finds them there.
[[nodiscard]] std::vector<std::filesystem::path>
licenseCandidates(const std::filesystem::path& folder);

/// Whether a file of this name is taken for a font: its extension is ttf, otf, ttc, otc, dfont,
/// woff or woff2, in any case.
[[nodiscard]] bool hasFontExtension(std::string_view fileName);

} // namespace quillmark
