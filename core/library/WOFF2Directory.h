// The table directory of WOFF 2.0 files; WOFF2.h reads the tables.
#pragma once

#include "library/ByteSource.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace quillmark {

struct WOFF2Directory {
    /// Where a table lies in the decoded stream, in bytes. A hostile file declares any length here.
    struct Table {
        std::uint64_t offset{};
        std::uint64_t length{};
        bool operator==(const Table&) const = default;
    };
    /// One face, its wanted tables as indices into `tables`.
    struct Face {
        std::uint32_t index{}; // the face's place in its file, counted from 0
        std::optional<std::size_t> name;
        std::optional<std::size_t> os2;
        std::optional<std::size_t> fvar;
        bool operator==(const Face&) const = default;
    };
    std::vector<Table> tables;
    std::vector<Face> faces;
    std::uint64_t streamOffset{}; // in bytes from the start of the file
    std::uint64_t streamLength{}; // as declared

    /// Absent when the directory is cut off or is not one. A face with an unknown sfnt version or
    /// too many tables is left out of `faces`.
    [[nodiscard]] static std::optional<WOFF2Directory> read(const HeadedSource& file);
};

} // namespace quillmark
