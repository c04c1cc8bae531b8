// The form of a path in which files are remembered, compared and shown.
#pragma once

#include <filesystem>

namespace quillmark {

/// The path as an absolute one without ".", ".." and a slash at the end, which means the same file.
[[nodiscard]] std::filesystem::path absolutePath(const std::filesystem::path& path);

} // namespace quillmark
