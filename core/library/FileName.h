// The parts of a file's name, as text: what is not UTF-8 in it becomes U+FFFD.
#pragma once

#include <string>
#include <string_view>

namespace quillmark::FileName {

/// What stands behind the last full stop, lower-cased; empty when there is none, or when it is the
/// first character. `name` is a name without folders.
[[nodiscard]] std::string extension(std::string_view name);

/// The name without its extension and the full stop before it.
[[nodiscard]] std::string stem(std::string_view name);

/// The last part of a path.
[[nodiscard]] std::string_view ofPath(std::string_view path);

} // namespace quillmark::FileName
