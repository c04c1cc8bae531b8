// Text and paths on their way into Qt and out of it. The records hold std::string in UTF-8.
#pragma once

#include <QString>

#include <optional>
#include <string>
#include <string_view>

namespace quillmark {

[[nodiscard]] QString qtText(std::string_view text);
[[nodiscard]] std::string stdText(const QString& text);

/// A path as text that is the same path again, whatever its bytes: itself when it is UTF-8, and a
/// "file:" URL otherwise. `path` is absolute.
[[nodiscard]] QString keptPath(std::string_view path);
[[nodiscard]] std::string pathFromKept(const QString& kept);

/// The absolute path as a "file:" URL (RFC 8089), every byte that needs it percent-encoded.
[[nodiscard]] std::string fileURL(std::string_view path);
/// The bytes of the path in a "file:" URL on this computer; absent for anything else.
[[nodiscard]] std::optional<std::string> pathOfFileURL(std::string_view url);

} // namespace quillmark
