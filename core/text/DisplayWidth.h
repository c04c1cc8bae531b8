// How much room text takes on a terminal.
#pragma once

#include <cstddef>
#include <string_view>

namespace quillmark {

/// The columns that `text`, valid UTF-8 without control characters, takes on a terminal: two for
/// wide and full-width characters (UAX #11), none for what is drawn on the character before it or
/// not at all, one for the rest. Ambiguous characters count as narrow.
[[nodiscard]] std::size_t displayWidth(std::string_view text);

/// The longest start of `text` that takes at most `columns`, marks drawn on its last character
/// included.
[[nodiscard]] std::string_view prefixOfWidth(std::string_view text, std::size_t columns);

} // namespace quillmark
