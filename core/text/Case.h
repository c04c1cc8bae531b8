// Changing case and case-insensitive search.
#pragma once

#include <string>
#include <string_view>

namespace quillmark {

/// Full Unicode lower-casing in the root locale, so the result never depends on the user's.
[[nodiscard]] std::string lowercased(std::string_view text);

/// Full Unicode upper-casing in the root locale.
[[nodiscard]] std::string uppercased(std::string_view text);

/// Whether `text` contains `needle` when case is ignored (Unicode default case folding).
[[nodiscard]] bool containsIgnoringCase(std::string_view text, std::string_view needle);

} // namespace quillmark
