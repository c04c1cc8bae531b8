// The filters of PDF streams, the other way round. Flate is `deflated` in FontContainers.h.
#pragma once

#include "support/FontBytes.h"

#include <cstddef>
#include <span>

namespace quillmark::test {

/// `earlyChange` as in the filter's parameters: codes grow one code early.
[[nodiscard]] Bytes lzw(std::span<const std::byte> data, bool earlyChange = true);
[[nodiscard]] Bytes asciiHex(std::span<const std::byte> data);
[[nodiscard]] Bytes ascii85(std::span<const std::byte> data);
/// Runs of three and more equal bytes are written as runs.
[[nodiscard]] Bytes runLength(std::span<const std::byte> data);

/// Rows of `columns` bytes, each with PNG's tag for the difference to the row above.
[[nodiscard]] Bytes pngUp(std::span<const std::byte> data, std::size_t columns);

} // namespace quillmark::test
