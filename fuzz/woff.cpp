// WOFF fonts: the face, and the facts read from its tables.

#include "Harness.h"

#include "library/ByteSource.h"
#include "library/FontLibrary.h"
#include "library/WOFF.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace quillmark;
    const MemorySource memory(fuzz::input(data, size));
    const HeadedSource file(memory);
    if (!WOFF::isOne(file)) return 0;
    const auto faces = WOFF::faces(file, Faces::variable);
    fuzz::expect(faces.size() <= 1);
    for (const PlatformFont& face : faces)
        fuzz::expectText(FontLibrary::facts(face, FontOrigin::folder).licenseDescription);
    return 0;
}
