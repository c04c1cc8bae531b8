// The order of version numbers, as publishers of updates write them.
#pragma once

#include <compare>
#include <string_view>

namespace quillmark {

/// Runs of digits count as numbers of any size, and what is missing as zero, so 1.0 is 1.0.0 and
/// older than 1.10. Letters are older than any number: 1.0b3 comes before 1.0. Dots, blanks and
/// other ASCII punctuation only separate, but a dash ends what counts: 1.0-rc1 is 1.0.
[[nodiscard]] std::weak_ordering compareVersions(std::string_view left, std::string_view right);

} // namespace quillmark
