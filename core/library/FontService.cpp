#include "library/FontService.h"

#include "library/Parallel.h"

namespace quillmark {

void FontService::facesOfEach(std::span<const std::string> files, Faces which,
                              const TakeFaces& take) const
{
    forEachIndex(files.size(), [&](std::size_t i) { take(i, facesOf(files[i], which)); });
}

} // namespace quillmark
