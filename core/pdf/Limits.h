// What one document may cost. Nothing here is met by documents that people make; each limit keeps a
// small hostile file from turning into gigabytes or hours. What is over a limit behaves as
// unreadable: it contributes nothing, and the rest of the document is still checked.
#pragma once

#include <cstddef>
#include <cstdint>

namespace quillmark::PDF::Limits {

/// Dictionaries examined for a page's resources: the page and 31 ancestors.
inline constexpr int resourceChain = 32;

/// Decoded bytes of one stream, and of each layer when filters are chained. The largest embedded
/// fonts, with all of Chinese, Japanese and Korean, have some 20 MB.
inline constexpr std::size_t streamBytes = std::size_t{64} << 20U;

/// Filters of one stream.
inline constexpr std::size_t filters = 16;

/// Bytes of font programs that are decoded for one document, also for those that turn out to be
/// over another limit.
inline constexpr std::uint64_t programBytes = std::uint64_t{256} << 20U;

/// Fonts of one document, after merging. Rows with their sentences take some kilobytes each.
inline constexpr std::size_t fonts = 50'000;

/// Page numbers of all fonts of one document together: 20,000 pages with 800 fonts each. Over it, a
/// font keeps its first pages.
inline constexpr std::size_t fontPages = 16'000'000;

} // namespace quillmark::PDF::Limits
