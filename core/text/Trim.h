// Cutting blanks off both ends of a text.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quillmark {

/// What is cut besides Unicode's White_Space characters.
enum class TrimAlso {
    nothing,
    nul,      // U+0000
    controls, // general category Cc, U+0000 included
};

/// `text` without white space (Unicode White_Space, line ends included) at both ends. `text` must
/// be valid UTF-8; the result is a view into it.
[[nodiscard]] std::string_view trimmed(std::string_view text, TrimAlso also = TrimAlso::nothing);

/// The same for what a font says; absent when nothing is left.
[[nodiscard]] std::optional<std::string> trimmedOrAbsent(std::string text,
                                                         TrimAlso also = TrimAlso::nothing);

} // namespace quillmark
