// Font files of every format, told apart by their bytes: the faces, and the facts read from each.

#include "Harness.h"

#include "library/ByteSource.h"
#include "library/FontFile.h"
#include "library/FontLibrary.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace quillmark;
    const MemorySource file(fuzz::input(data, size));
    for (const Faces which : {Faces::all, Faces::variable}) {
        std::optional<std::uint32_t> before;
        for (const PlatformFont& face : FontFile::faces(file, which)) {
            fuzz::expect(!before || *before < face.index);
            before = face.index;
            fuzz::expect(which == Faces::variable || !face.fvar);
            const FontFacts facts = FontLibrary::facts(face, FontOrigin::folder);
            fuzz::expect(repairedUtf8(facts.displayName()) == facts.displayName());
            fuzz::expectText(facts.licenseDescription);
            fuzz::expectText(facts.copyright);
        }
    }
    return 0;
}
