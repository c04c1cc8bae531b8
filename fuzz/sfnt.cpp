// Font files and collections: the faces, and the facts and variation instances read from them.

#include "Harness.h"

#include "fontfile/FontFacts.h"
#include "fontfile/SFNT.h"
#include "fontfile/VariationInstances.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace quillmark;
    const auto bytes = fuzz::input(data, size);
    const auto facts = FontFacts::read(bytes, std::nullopt, FontOrigin::folder);
    fuzz::expect(facts.size() == SFNT::faces(bytes).size());
    for (const FontFacts& face : facts) {
        fuzz::expectText(std::string_view(face.postScriptName));
        fuzz::expectText(std::string_view(face.displayName()));
        fuzz::expectText(face.licenseDescription);
    }
    if (const auto layout = SFNT::layout(bytes, size); layout && layout->fvar && layout->name) {
        const auto names =
            NameTable::strings(bytes.subspan(layout->name->offset, layout->name->length));
        const auto fvar = bytes.subspan(layout->fvar->offset, layout->fvar->length);
        for (const VariationInstance& instance : VariationInstances::read(fvar, names))
            fuzz::expectText(std::string_view(instance.postScriptName));
    }
    return 0;
}
