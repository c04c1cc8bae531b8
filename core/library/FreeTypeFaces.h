// Fonts in the formats for which there is no reader of our own: dfont suitcases, Type 1, and bitmap
// fonts, also gzipped ones. FreeType opens them; glyphs, sizes and variations are never asked for.
#pragma once

#include "library/ByteSource.h"
#include "library/FontService.h"

#include <vector>

namespace quillmark::FreeTypeFaces {

/// The faces in file order. Formats without a `name` table give the names they have: Type 1 its
/// family, style, full name, PostScript name and notice (as copyright), bitmap fonts their family,
/// style and copyright.
[[nodiscard]] std::vector<PlatformFont> faces(const ByteSource& file, Faces which);

} // namespace quillmark::FreeTypeFaces
