// Keeping other programs out of a folder for a moment.
#pragma once

#include "files/FileDescriptor.h"
#include "files/FileError.h"

#include <chrono>
#include <filesystem>
#include <variant>

namespace quillmark {

/// Locks `folder` for as long as the descriptor is open; the system lets go of it however the
/// process ends. It keeps out only those who ask for the same lock, and leaves no file behind.
/// Somebody else's is waited for as long as `patience`. The descriptor is closed where the file
/// system knows no such locks, or the folder may not be listed.
[[nodiscard]] std::variant<FileDescriptor, FileError>
lockFolder(const std::filesystem::path& folder, std::chrono::milliseconds patience);

} // namespace quillmark
