// Reading small files whole. Files that are read at positions are library/RegularFile.h.
#pragma once

#include "files/FileError.h"

#include <cstddef>
#include <filesystem>
#include <string>
#include <variant>

namespace quillmark {

/// The bytes of the regular file at `path`, or at the end of the links there. Anything else is an
/// error, and so is a file of more than `limit` bytes; nothing here waits for a pipe.
[[nodiscard]] std::variant<std::string, FileError> readFile(const std::filesystem::path& path,
                                                            std::size_t limit);

} // namespace quillmark
