// TrueType and OpenType files and collections, read by position: only the table directories and the
// wanted tables are touched, so that a font's size does not matter.
#pragma once

#include "library/ByteSource.h"
#include "library/FontService.h"

#include <vector>

namespace quillmark::SFNTFile {

/// Whether the file starts like a font or a collection; what it holds may still be damaged.
[[nodiscard]] bool isOne(const HeadedSource& file);

/// The faces in file order, without those whose table directory is damaged.
[[nodiscard]] std::vector<PlatformFont> faces(const HeadedSource& file, Faces which);

} // namespace quillmark::SFNTFile
