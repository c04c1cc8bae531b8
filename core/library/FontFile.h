// Font files of every format: what a file holds decides how it is read, not its name.
#pragma once

#include "library/ByteSource.h"
#include "library/FontService.h"

#include <vector>

namespace quillmark::FontFile {

/// The faces in file order, without a path; none when the bytes are no font. May be called from any
/// thread.
[[nodiscard]] std::vector<PlatformFont> faces(const ByteSource& file, Faces which);

} // namespace quillmark::FontFile
