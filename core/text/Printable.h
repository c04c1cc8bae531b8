// Text from files made safe for a terminal or a page.
#pragma once

#include <string>
#include <string_view>

namespace quillmark {

/// Whether a character can move a cursor, start an escape sequence or turn the reading order of
/// what stands beside it: control characters (C0, DEL, C1, line and paragraph separators) and
/// bidirectional control characters.
[[nodiscard]] bool isControlling(char32_t character);

/// `text` with every such character replaced by U+FFFD.
[[nodiscard]] std::string printable(std::string_view text);

} // namespace quillmark
