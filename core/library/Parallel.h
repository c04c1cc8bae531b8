// Work on all cores, inside one call.
#pragma once

#include <cstddef>
#include <functional>

namespace quillmark {

/// The cores that this process may use, which can be fewer than the machine has.
[[nodiscard]] std::size_t coreCount();

/// Calls `work` once for each index below `count`, from as many threads as the process may use
/// cores, and returns when all is done. The first exception that leaves `work` is thrown again
/// here; indices that were not begun by then are left out. `kept` is about what each call leaves in
/// memory, in bytes, if that is known.
void forEachIndex(std::size_t count, const std::function<void(std::size_t)>& work,
                  std::size_t kept = 0);

} // namespace quillmark
