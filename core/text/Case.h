// Changing case.
#pragma once

#include <string>
#include <string_view>

namespace quillmark {

/// Full Unicode lower-casing in the root locale, so the result never depends on the user's.
[[nodiscard]] std::string lowercased(std::string_view text);

/// Full Unicode upper-casing in the root locale.
[[nodiscard]] std::string uppercased(std::string_view text);

} // namespace quillmark
