// Text of fonts and files made fit for the windows.
#pragma once

#include <QString>

#include <cstddef>
#include <string_view>

namespace quillmark {

/// The characters (code points) of one value that the windows show.
inline constexpr std::size_t shownCharacters = 20'000;

/// `text`, valid UTF-8 of any length, as a window may show it: line ends and tabs stay, every other
/// character that could turn the reading order or pass for something else becomes U+FFFD. What is
/// longer than `shownCharacters` is cut, and says so.
[[nodiscard]] QString shownText(std::string_view text);

} // namespace quillmark
