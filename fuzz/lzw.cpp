// LZWDecode: any codes, and any bytes there and back. The first byte says when codes grow.

#include "Filters.h"

#include "support/PDFEncoders.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace quillmark;
    if (size == 0) return 0;
    const PDF::Filter filter{.kind = PDF::Filter::Kind::lzw, .earlyChange = data[0] % 2 == 0};
    const auto bytes = fuzz::input(data, size).subspan(1);
    static_cast<void>(fuzz::decoded(bytes, filter));
    fuzz::expectBack(bytes, test::lzw(bytes, filter.earlyChange), filter);
    return 0;
}
