// Names of inputs that come in a file, because they are too many for a command line.
#pragma once

#include "files/FileError.h"

#include <cstddef>
#include <filesystem>
#include <string>
#include <variant>
#include <vector>

namespace quillmark::cli {

/// Bytes of a list of names: 200,000 of 300 characters.
inline constexpr std::size_t maximumNameListBytes = std::size_t{64} << 20U;

/// The names in `file`, of which each ends with `end`, the last one maybe not; empty ones are
/// passed over. "-" is the descriptor `input`. Anything that can be read is taken, also a pipe.
[[nodiscard]] std::variant<std::vector<std::filesystem::path>, FileError>
readFileNames(const std::filesystem::path& file, char end, int input);

} // namespace quillmark::cli
