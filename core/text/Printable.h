// Text from files made safe for a terminal or a page.
#pragma once

#include <string>
#include <string_view>

namespace quillmark {

/// `text` with every control character (C0, DEL, C1, line and paragraph separators) and every
/// bidirectional control character replaced by U+FFFD, so that nothing in it can move a cursor,
/// start an escape sequence or turn the reading order of what stands beside it.
[[nodiscard]] std::string printable(std::string_view text);

} // namespace quillmark
