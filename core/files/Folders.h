// Making folders that last, and names in them.
#pragma once

#include "files/FileDescriptor.h"
#include "files/FileError.h"

#include <filesystem>
#include <optional>
#include <string>

namespace quillmark {

/// Makes `folder` with the missing folders on the way to it; those that are made are for their
/// owner only. A folder that is there already is left as it is.
[[nodiscard]] std::optional<FileError> makeFolders(const std::filesystem::path& folder);

/// Opens `folder`, with further flags of open(2): to be read, or only to be worked in where it may
/// not be listed. errno tells why it is not open.
[[nodiscard]] FileDescriptor openFolder(const std::filesystem::path& folder, int flags = 0);

/// Has the system put the names in `folder` on the disk, as far as it can for this file system and
/// this user. Zero or the system's error number.
[[nodiscard]] int syncFolder(const std::filesystem::path& folder);
[[nodiscard]] int syncFolder(const FileDescriptor& folder);

/// The same for what was written to an open file.
[[nodiscard]] int syncDescriptor(int descriptor);

/// Renames a file in an open folder, and never replaces another. Zero or the system's error number.
[[nodiscard]] int renameToNew(int folder, const std::string& from, const std::string& to);

} // namespace quillmark
