// What a list of updates may cost. Nothing here is met by lists that publishers make; each limit
// keeps a hostile one from holding up the window. A list over a limit is unreadable as a whole.
#pragma once

#include <cstddef>

namespace quillmark::FeedLimits {

/// Bytes of a list.
inline constexpr std::size_t feedBytes = std::size_t{1} << 20U;

/// Items of a list.
inline constexpr std::size_t feedItems = 1000;

/// Elements inside one another.
inline constexpr std::size_t feedDepth = 32;

/// Attributes of one element. Qt's reader compares each with every other: a list of 1 MiB that is
/// all attributes of one element would take it a minute and a half.
inline constexpr std::size_t feedAttributes = 32;

/// Characters of a version. An item whose version is longer has none.
inline constexpr std::size_t versionCharacters = 64;

/// Characters of release notes that are shown; the rest is cut off.
inline constexpr std::size_t notesCharacters = 50'000;

/// Elements inside one another in release notes; those further in lose their markup.
inline constexpr std::size_t notesDepth = 12;

} // namespace quillmark::FeedLimits
