// TrueType and OpenType files and collections: finding each face's `name` and `OS/2` tables.
// The tables are read by NameTable.h and OS2Info.h; FontFacts.h puts them together.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace quillmark {

/// The raw tables of one face. Both are views into the bytes that the face was read from and are
/// absent when the face has no usable record for them.
struct SFNTFace {
    std::optional<std::span<const std::byte>> name;
    std::optional<std::span<const std::byte>> os2;
    std::string_view outlines; // FormatLabel::openTypeCFF or FormatLabel::trueType

    /// Compares the tables' contents, not where they lie.
    friend bool operator==(const SFNTFace& left, const SFNTFace& right);
};

namespace SFNT {

/// Where a table lies, in bytes from the start of the file (also inside collections).
struct TableRange {
    std::uint64_t offset{};
    std::uint64_t length{};
    bool operator==(const TableRange&) const = default;
};

/// What a face's table directory says. A range always lies inside the file.
struct FaceLayout {
    std::optional<TableRange> name;
    std::optional<TableRange> os2;
    std::optional<TableRange> fvar; // font variations, for the names of a variable font's instances
    std::string_view outlines;
    bool operator==(const FaceLayout&) const = default;
};

/// The directory that starts at the beginning of `directory`, for a file of `fileSize` bytes.
/// `directory` may end anywhere behind the directory's last record, so a file's reader needs to
/// fetch only that much. Absent when there is no face: an unknown version, more than 511 tables, or
/// records that run past the end of `directory`.
[[nodiscard]] std::optional<FaceLayout> layout(std::span<const std::byte> directory,
                                               std::uint64_t fileSize);

/// The number of bytes that `layout` needs for the directory starting at the beginning of
/// `header`, of which 6 bytes suffice here; absent when there is no face.
[[nodiscard]] std::optional<std::size_t> directorySize(std::span<const std::byte> header);

/// Whether the bytes start a collection (`ttcf`).
[[nodiscard]] bool isCollection(std::span<const std::byte> header);

/// The number of faces that a collection's header (its first 12 bytes) declares; absent when it
/// cannot be read, is 0, or is 10000 or more.
[[nodiscard]] std::optional<std::uint32_t> collectionFaceCount(std::span<const std::byte> header);

/// All faces of a font file or collection, in file order; empty for anything else.
[[nodiscard]] std::vector<SFNTFace> faces(std::span<const std::byte> bytes);

/// The face whose offset table starts at `offset` (0 for a plain font file).
[[nodiscard]] std::optional<SFNTFace> face(std::size_t offset, std::span<const std::byte> bytes);

} // namespace SFNT
} // namespace quillmark
