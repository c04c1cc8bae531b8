// Reading what was named on the command line, with the system's words when that fails.
#pragma once

#include <filesystem>
#include <string>
#include <variant>

namespace quillmark::cli {

/// An input that could not be read, in words that follow a name and a colon.
struct ReadFailure {
    std::string reason;
};

/// `path` as UTF-8.
[[nodiscard]] std::string shownPath(const std::filesystem::path& path);

/// The last component as UTF-8; "/" for the root.
[[nodiscard]] std::string shownName(const std::filesystem::path& path);

enum class InputKind { folder, file };

/// What `path` is, if it is there and may be read.
[[nodiscard]] std::variant<InputKind, ReadFailure> inspect(const std::filesystem::path& path);

} // namespace quillmark::cli
