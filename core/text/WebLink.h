// Which texts may become links.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quillmark {

/// The address to open for a text that is one: http or https with a host, without a user name
/// (which can pass for a host), and with everything that RFC 3986 does not allow in it
/// percent-encoded. Absent for any other text.
[[nodiscard]] std::optional<std::string> webLink(std::string_view text);

} // namespace quillmark
