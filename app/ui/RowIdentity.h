// Which row of a list is which after the fonts have been read again.
#pragma once

#include "model/RowList.h"

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace quillmark {

/// For each of the positions in `before` that of the same row in `after`; absent when it is gone.
/// Rows are told apart by their ids, and those that share one by their order.
[[nodiscard]] std::vector<std::optional<std::size_t>>
sameRows(const RowList& before, std::span<const std::size_t> positions, const RowList& after);

} // namespace quillmark
