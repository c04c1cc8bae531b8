// Making folders that last.
#pragma once

#include "files/FileError.h"

#include <filesystem>
#include <optional>

namespace quillmark {

/// Makes `folder` with the missing folders on the way to it; those that are made are for their
/// owner only. A folder that is there already is left as it is.
[[nodiscard]] std::optional<FileError> makeFolders(const std::filesystem::path& folder);

/// Has the system put the names in `folder` on the disk, as far as it can for this file system and
/// this user. Zero or the system's error number.
[[nodiscard]] int syncFolder(const std::filesystem::path& folder);

/// The same for what was written to an open file.
[[nodiscard]] int syncDescriptor(int descriptor);

} // namespace quillmark
