// The predictors of Flate and LZW data. The first bytes are the parameters, the rest the rows.

#include "Harness.h"

#include "pdf/Predictors.h"

#include <cstring>

namespace {

/// Small ones nearly always, for these make sense, and any at all now and then.
std::int64_t number(std::span<const std::byte> bytes)
{
    if (bytes[0] != std::byte{0xFF}) return std::to_integer<std::int64_t>(bytes[0]);
    std::int64_t any{};
    std::memcpy(&any, bytes.data(), sizeof any);
    return any;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace quillmark;
    constexpr std::size_t parameters = 4 + sizeof(std::int64_t);
    if (size < parameters) return 0;
    const auto bytes = fuzz::input(data, size);
    const PDF::Predictor predictor{
        .predictor = number(bytes),
        .colors = number(bytes.subspan(1)),
        .bitsPerComponent = number(bytes.subspan(2)),
        .columns = number(bytes.subspan(3)),
    };
    const auto rows = bytes.subspan(parameters);
    PDF::Bytes undone(rows.begin(), rows.end());
    if (!PDF::undoPredictor(predictor, undone)) return 0;
    fuzz::expect(undone.size() <= rows.size());
    if (predictor.predictor < 10) fuzz::expect(undone.size() == rows.size());
    return 0;
}
