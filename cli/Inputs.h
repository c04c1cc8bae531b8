// Reading what was named on the command line, with the system's words when that fails.
#pragma once

#include "cli/Environment.h"
#include "fontfile/FontFacts.h"
#include "text/Collation.h"

#include <filesystem>
#include <string>
#include <variant>
#include <vector>

namespace quillmark::cli {

/// An input that could not be read, in words that follow a name and a colon.
struct ReadFailure {
    std::string reason;
};

/// The path as an absolute one without ".", ".." and a slash at the end, which means the same file.
[[nodiscard]] std::filesystem::path absolutePath(const std::filesystem::path& path);

/// `path` as UTF-8.
[[nodiscard]] std::string shownPath(const std::filesystem::path& path);

/// The last component as UTF-8; "/" for the root.
[[nodiscard]] std::string shownName(const std::filesystem::path& path);

enum class InputKind { folder, file };

/// What `path` is, if it is there and may be read.
[[nodiscard]] std::variant<InputKind, ReadFailure> inspect(const std::filesystem::path& path);

/// The faces of one font file, each with the licence file that a scan of its folder would give it.
[[nodiscard]] std::variant<std::vector<FontFacts>, ReadFailure>
readFontFile(const FontService& service, const std::filesystem::path& file);

} // namespace quillmark::cli
