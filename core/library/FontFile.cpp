#include "library/FontFile.h"

#include "library/FreeTypeFaces.h"
#include "library/SFNTFile.h"
#include "library/WOFF.h"
#include "library/WOFF2.h"

namespace quillmark::FontFile {

std::vector<PlatformFont> faces(const ByteSource& file, Faces which)
{
    const HeadedSource headed(file);
    if (SFNTFile::isOne(headed)) return SFNTFile::faces(headed, which);
    if (WOFF::isOne(headed)) return WOFF::faces(headed, which);
    if (WOFF2::isOne(headed)) return WOFF2::faces(headed, which);
    return FreeTypeFaces::faces(file, which);
}

std::vector<PlatformFont> faces(const std::string& path, Faces which)
{
    return faces(path, Location(path), which);
}

std::vector<PlatformFont> faces(const std::string& path, const Location& location, Faces which)
{
    const auto file = RegularFile::open(location);
    if (!file) return {};
    std::vector<PlatformFont> found = faces(*file, which);
    for (PlatformFont& face : found)
        face.path = path;
    return found;
}

} // namespace quillmark::FontFile
