// RunLengthDecode: any runs, and any bytes there and back.

#include "Filters.h"

#include "support/PDFEncoders.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace quillmark;
    const auto bytes = fuzz::input(data, size);
    const PDF::Filter filter{.kind = PDF::Filter::Kind::runLength};
    static_cast<void>(fuzz::decoded(bytes, filter));
    fuzz::expectBack(bytes, test::runLength(bytes), filter);
    return 0;
}
