// WOFF 2.0 fonts and collections (W3C Recommendation, 1 March 2022): all tables in one compressed
// stream, which is decoded only as far as the wanted tables reach.
#pragma once

#include "library/ByteSource.h"
#include "library/FontService.h"

#include <vector>

namespace quillmark::WOFF2 {

/// Whether the file has the signature; what follows may still be damaged.
[[nodiscard]] bool isOne(const HeadedSource& file);

/// The faces in file order; none when the table directory is damaged. A table is absent where the
/// stream is damaged or ends before its last byte.
[[nodiscard]] std::vector<PlatformFont> faces(const HeadedSource& file, Faces which);

} // namespace quillmark::WOFF2
