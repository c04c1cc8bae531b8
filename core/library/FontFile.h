// Font files of every format: what a file holds decides how it is read, not its name.
#pragma once

#include "library/ByteSource.h"
#include "library/FontService.h"
#include "library/RegularFile.h"

#include <string>
#include <vector>

namespace quillmark::FontFile {

/// The faces in file order, without a path; none when the bytes are no font. May be called from any
/// thread.
[[nodiscard]] std::vector<PlatformFont> faces(const ByteSource& file, Faces which);

/// The faces of the regular file at `path`, which they carry; none when it cannot be read.
[[nodiscard]] std::vector<PlatformFont> faces(const std::string& path, Faces which);
/// The same where it is known how the file is found best.
[[nodiscard]] std::vector<PlatformFont> faces(const std::string& path, const Location& location,
                                              Faces which);

} // namespace quillmark::FontFile
