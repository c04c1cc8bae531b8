// What one font file may cost. No real font comes near these limits; they bound the work and the
// memory for hostile ones. What lies over a limit contributes nothing, the rest still does.
#pragma once

#include <cstddef>
#include <cstdint>

namespace quillmark::Limits {

/// Bytes of tables handed out for one file. A table that several faces share counts for each.
inline constexpr std::uint64_t tableBytes = std::uint64_t{64} << 20U;

/// Bytes that come out of the compressed data of one WOFF or WOFF2 file, whatever it declares.
inline constexpr std::uint64_t decodedBytes = std::uint64_t{128} << 20U;

/// Faces of one file, as in TrueType collections.
inline constexpr std::uint32_t faces = 9999;

/// Bytes of a WOFF2 table directory. 65535 tables of the longest form and the faces of a full
/// collection fit.
inline constexpr std::size_t woff2DirectoryBytes = std::size_t{4} << 20U;

/// The size of a file that FreeType is asked to open, also after decompression. It reads Type 1
/// and bitmap fonts whole.
inline constexpr std::uint64_t freeTypeFileBytes = std::uint64_t{64} << 20U;

/// Bytes that FreeType may read from one file in all, seeking back and forth; the hostile case is a
/// resource fork with thousands of faces, for each of which everything is read again.
inline constexpr std::uint64_t freeTypeReadBytes = std::uint64_t{256} << 20U;

/// Memory that FreeType may have at a time. It keeps Type 1 and bitmap fonts whole, and copies the
/// face that it is asked for out of a resource fork.
inline constexpr std::size_t freeTypeMemoryBytes = std::size_t{192} << 20U;

/// Named instances of one file. Real variable fonts have up to some hundreds.
inline constexpr std::size_t instances = 65536;

/// Bytes of text in the records for the named instances of one file.
inline constexpr std::size_t instanceTextBytes = std::size_t{64} << 20U;

/// Bytes in the path of a folder that is still entered: four times as long as programs can name
/// one without going there step by step.
inline constexpr std::size_t pathBytes = std::size_t{16} << 10U;

} // namespace quillmark::Limits
