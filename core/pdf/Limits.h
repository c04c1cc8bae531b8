// What one document may cost. Nothing here is met by documents that people make; each limit keeps a
// small hostile file from turning into gigabytes or hours. What is over a limit behaves as
// unreadable: it contributes nothing, and the rest of the document is still checked.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace quillmark::PDF::Limits {

inline constexpr std::uint64_t mebibyte = std::uint64_t{1} << 20U;

/// Dictionaries examined for a page's resources: the page and 31 ancestors.
inline constexpr int resourceChain = 32;

/// Entries of the lists in a page tree that are gone through, most of which are pages. Thousands of
/// nodes can share one long list. The largest documents that people make have some 100,000 pages.
inline constexpr std::size_t treeEntries = 5'000'000;

/// Arrays and dictionaries inside one another in one object.
inline constexpr std::size_t objectDepth = 500;

/// Bytes of text of one object: a list of all pages of a document with 800,000 of them.
inline constexpr std::size_t objectText = 8 * mebibyte;

/// Bytes of text of one object that libqpdf reads by itself, such as the trailer. It takes up to
/// 240 times that in memory.
inline constexpr std::size_t foreignObjectText = mebibyte;

/// Bytes of text of the dictionary of a stream whose data are wanted. libqpdf parses it once more,
/// and takes a hundred times the memory.
inline constexpr std::size_t streamDictionaryText = std::size_t{64} << 10U;

/// Bytes of parsed objects that are kept for being asked for again.
inline constexpr std::size_t objectCache = 64 * mebibyte;

/// Bytes of objects parsed for one document, in text or in memory, whichever is more. Large
/// documents are read once and a bit, and of that only what leads to fonts.
constexpr std::uint64_t parsedBytes(std::uint64_t fileSize)
{
    return 128 * mebibyte + 16 * fileSize;
}

/// Bytes of a name that a font has or is told by. PDF 1.7 allowed 127; rows hold a name some times.
inline constexpr std::size_t nameBytes = 1024;

/// Bytes of all names that a document has for its fonts, with 32 for each: some 300,000, which
/// differ in their subset prefixes. Over it, a font keeps the names met first, and always one.
inline constexpr std::size_t fontNames = 16 * mebibyte;

/// XObjects in dictionaries that are being gone through at one time, because forms in them lead to
/// further ones.
inline constexpr std::size_t pendingObjects = 250'000;

/// Decoded bytes of one stream, and of each layer when filters are chained. The largest embedded
/// fonts, with all of Chinese, Japanese and Korean, have some 20 MB.
inline constexpr std::size_t streamBytes = 64 * mebibyte;

/// Filters of one stream.
inline constexpr std::size_t filters = 16;

/// Bytes of font programs that are decoded for one document, also for those that turn out to be
/// over another limit.
inline constexpr std::uint64_t programBytes = 256 * mebibyte;

/// Decoded bytes of one object stream. Producers put a hundred objects in one, some all of them.
inline constexpr std::size_t objectStream = 16 * mebibyte;

/// Decoded bytes of object streams that are kept for further objects.
inline constexpr std::size_t objectStreamCache = 64 * mebibyte;

/// Bytes of object streams that are decoded for one document.
constexpr std::uint64_t objectStreams(std::uint64_t fileSize)
{
    return 256 * mebibyte + 4 * fileSize;
}

/// Bytes that libqpdf decodes by itself while it opens a document, which are those of
/// cross-reference streams: 3 million objects. Each of their bytes can become an entry of a hundred
/// bytes, so a small file is not given that much.
constexpr std::uint64_t crossReferenceBytes(std::uint64_t fileSize)
{
    return std::min(16 * mebibyte, (mebibyte / 16) + std::min(fileSize, mebibyte) * 64);
}

/// Bytes that libqpdf reads of a document: so many, and the whole file so many times.
inline constexpr std::uint64_t readBytes = 32 * mebibyte;
inline constexpr std::uint64_t readings = 16;

/// Searches through a file for objects that are not where they should be. One finds them all.
inline constexpr int repairs = 8;

/// Fonts of one document, after merging. Rows with their sentences take some kilobytes each.
inline constexpr std::size_t fonts = 50'000;

/// Bytes of text in the facts of one document's rows. Thousands of fonts can share one program, or
/// match one font, whose names take megabytes; real fonts with a whole licence have some kilobytes.
inline constexpr std::size_t rowText = 128 * mebibyte;

/// Page numbers of all fonts of one document together: 20,000 pages with 800 fonts each. Over it, a
/// font keeps its first pages.
inline constexpr std::size_t fontPages = 16'000'000;

} // namespace quillmark::PDF::Limits
