// Counting and classifying characters.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace quillmark {

/// The number of code points in valid UTF-8.
[[nodiscard]] std::size_t codePointCount(std::string_view text);

/// What a reader sees as single characters (extended grapheme clusters, UAX #29), as views into
/// `text`, at most `limit` of them.
[[nodiscard]] std::vector<std::string_view> userCharacters(std::string_view text,
                                                           std::size_t limit);

/// Whether one user-perceived character is upper-case: a single code point by its Uppercase
/// property, several when upper-casing leaves them alone and lower-casing does not.
[[nodiscard]] bool isUppercaseCharacter(std::string_view character);

} // namespace quillmark
