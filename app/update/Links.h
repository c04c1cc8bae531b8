// Which addresses a list of updates may have opened in the browser.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quillmark {

/// The address to open, when it is one for a browser: https, or http on this computer itself.
[[nodiscard]] std::optional<std::string> pageAddress(std::string_view text);

/// Whether that host is this computer: "localhost", 127.0.0.0/8 or ::1.
[[nodiscard]] bool isLoopback(std::string_view host);

} // namespace quillmark
