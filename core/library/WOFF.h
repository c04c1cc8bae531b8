// WOFF 1.0 fonts (W3C Recommendation, 13 December 2012): an sfnt font whose tables are compressed
// one by one.
#pragma once

#include "library/ByteSource.h"
#include "library/FontService.h"

#include <vector>

namespace quillmark::WOFF {

/// Whether the file has the signature; what follows may still be damaged.
[[nodiscard]] bool isOne(const HeadedSource& file);

/// The one face, or none when the table directory is damaged. Only the directory and the wanted
/// tables are read; one that does not decode to the length it declares is absent.
[[nodiscard]] std::vector<PlatformFont> faces(const HeadedSource& file, Faces which);

} // namespace quillmark::WOFF
