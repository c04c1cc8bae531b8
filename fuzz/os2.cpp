// The `OS/2` table and the words for its embedding bits.

#include "Harness.h"

#include "fontfile/EmbeddingRights.h"
#include "fontfile/OS2Info.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace quillmark;
    const auto info = OS2Info::read(fuzz::input(data, size));
    fuzz::expect(info.has_value() == (size >= 10));
    if (!info) return 0;
    fuzz::expectText(info->vendorID);
    const EmbeddingRights rights{info->fsType};
    fuzz::expect(rights.summary().starts_with(rights.label()));
    fuzz::expect(rights.hex().size() == 6);
    return 0;
}
