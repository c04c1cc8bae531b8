// Font files in other containers than sfnt, built byte by byte, and sfnt files taken apart and put
// together again. FontBytes.h builds plain font files.
#pragma once

#include "support/FontBytes.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quillmark::test {

struct TableBytes {
    std::string tag; // four characters
    Bytes bytes;
};

/// The sfnt version of TrueType outlines.
inline constexpr std::string_view trueTypeVersion{"\0\1\0\0", 4};

/// zlib's and gzip's forms of DEFLATE, and Brotli.
[[nodiscard]] Bytes deflated(std::span<const std::byte> bytes);
[[nodiscard]] Bytes gzipped(std::span<const std::byte> bytes);
[[nodiscard]] Bytes brotliCompressed(std::span<const std::byte> bytes);
/// Brotli's form of so many zeros, which are never in memory.
[[nodiscard]] Bytes brotliZeros(std::uint64_t count);

/// A WOFF 1.0 file. A table is stored as it is where compression does not make it smaller.
/// Positions: "flavor", "numTables", and for each table, by its tag, "<tag>.offset",
/// "<tag>.storedLength", "<tag>.length" and "<tag>.data"; a second table of a tag is "<tag>2".
[[nodiscard]] ByteWriter woff(std::string_view version, const std::vector<TableBytes>& tables);

struct WOFF2Values {
    struct Table {
        std::string tag;
        Bytes bytes{}; // as in the stream
        /// Absent for the form in which the table stands in a font file; otherwise the version of
        /// its transformation and the length that the table would have in a font file.
        std::optional<std::uint8_t> transformation{};
        std::uint32_t originalLength{};
        /// What the directory says instead of the bytes' real length.
        std::optional<std::uint32_t> declaredLength{};
        /// Writes the tag out although there is a number for it.
        bool spellTag{};
    };
    struct Face {
        std::string_view version;
        std::vector<std::uint16_t> tables; // as indices
    };
    std::string_view version{trueTypeVersion}; // of the only face; "ttcf" goes with `faces`
    std::vector<Table> tables{};
    std::vector<Face> faces{}; // of a collection
};

/// A WOFF 2.0 file. Positions: "flavor", "numTables", "streamLength", "directory", "numFonts",
/// "stream".
[[nodiscard]] ByteWriter woff2(const WOFF2Values& values);

/// A Macintosh suitcase without a resource fork: the fonts as resources of type sfnt.
[[nodiscard]] Bytes dfont(const std::vector<Bytes>& fonts);

/// What a Type 1 or BDF font says about itself.
struct LegacyNames {
    std::string postScriptName{"LegacyFont"};
    std::string fullName{"Legacy Font Bold"};
    std::string family{"Legacy Font"};
    std::string weight{"Bold"};
    std::string notice{"Copyright of the legacy font"};
};

/// A Type 1 program in the binary form (PFB), with one glyph.
[[nodiscard]] Bytes type1Font(const LegacyNames& names = {});
/// A bitmap font in the BDF form, with one glyph.
[[nodiscard]] Bytes bdfFont(const LegacyNames& names = {});

/// The tables of a plain font file, and its sfnt version.
[[nodiscard]] std::vector<TableBytes> tablesOf(std::span<const std::byte> font);
[[nodiscard]] std::string versionOf(std::span<const std::byte> font);
/// A collection of plain font files.
[[nodiscard]] Bytes collectionOf(const std::vector<Bytes>& fonts);

} // namespace quillmark::test
