// FlateDecode: any data, and any bytes there and back.

#include "Filters.h"

#include "support/FontContainers.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace quillmark;
    const auto bytes = fuzz::input(data, size);
    const PDF::Filter filter{.kind = PDF::Filter::Kind::flate};
    static_cast<void>(fuzz::decoded(bytes, filter));
    fuzz::expectBack(bytes, test::deflated(bytes), filter);
    return 0;
}
