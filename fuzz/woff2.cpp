// WOFF2 fonts and collections: the faces, and the facts read from their tables.

#include "Harness.h"

#include "library/ByteSource.h"
#include "library/FontLibrary.h"
#include "library/WOFF2.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace quillmark;
    const MemorySource memory(fuzz::input(data, size));
    const HeadedSource file(memory);
    if (!WOFF2::isOne(file)) return 0;
    const auto faces = WOFF2::faces(file, Faces::variable);
    fuzz::expect(faces.size() <= 9999);
    for (const PlatformFont& face : faces)
        fuzz::expectText(FontLibrary::facts(face, FontOrigin::folder).licenseDescription);
    return 0;
}
