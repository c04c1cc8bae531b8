#include "library/FontFiles.h"

#include "library/FontFile.h"
#include "library/Parallel.h"

namespace quillmark {

std::vector<InstalledFile> LocalFontFiles::installed() const
{
    return installedFiles();
}

void LocalFontFiles::facesOfEach(std::span<const std::string> files, Faces which,
                                 const TakeFaces& take) const
{
    forEachIndex(
        files.size(), [&](std::size_t i) { take(i, FontFile::faces(files[i], which)); },
        keptOfAFile);
}

} // namespace quillmark
