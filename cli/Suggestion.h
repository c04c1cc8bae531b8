// What somebody may have meant who wrote something that is not known.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

namespace quillmark::cli {

/// The one of `known` that differs from `word` in the fewest characters, at most two; of several
/// the first. Absent when there is none, or when `word` itself is known or longer than any name.
[[nodiscard]] std::optional<std::string_view> nearest(std::string_view word,
                                                      const std::vector<std::string_view>& known);

} // namespace quillmark::cli
