// ASCII85Decode: any text, and any bytes there and back.

#include "Filters.h"

#include "support/PDFEncoders.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace quillmark;
    const auto bytes = fuzz::input(data, size);
    const PDF::Filter filter{.kind = PDF::Filter::Kind::ascii85};
    static_cast<void>(fuzz::decoded(bytes, filter));
    fuzz::expectBack(bytes, test::ascii85(bytes), filter);
    return 0;
}
