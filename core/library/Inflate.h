// Data compressed with DEFLATE (RFC 1951), as WOFF tables and gzipped fonts hold it.
#pragma once

#include "library/ByteSource.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace quillmark {

/// What is wrapped around the compressed data.
enum class Wrapper {
    zlib, // RFC 1950
    gzip, // RFC 1952, its first member
};

/// What the `length` bytes at `at` decode to. Absent when they are damaged, when they end too
/// early, and when more than `limit` bytes come out of them. Memory grows with what really comes
/// out.
[[nodiscard]] std::optional<std::vector<std::byte>> inflated(const ByteSource& source,
                                                             std::uint64_t at, std::uint64_t length,
                                                             Wrapper wrapper, std::size_t limit);

} // namespace quillmark
