// Lower-casing.
#pragma once

#include <string>
#include <string_view>

namespace quillmark {

/// Full Unicode lower-casing in the root locale, so the result never depends on the user's.
[[nodiscard]] std::string lowercased(std::string_view text);

} // namespace quillmark
