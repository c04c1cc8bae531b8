// What the harnesses of stream filters share.
#pragma once

#include "Harness.h"

#include "pdf/StreamFilters.h"

#include <algorithm>

namespace quillmark::fuzz {

/// More than the harnesses' inputs hold, so that only what grows meets the limit.
inline constexpr std::size_t decodedLimit = std::size_t{1} << 20;

/// Decodes `data` with one filter, as those of a stream are.
inline std::optional<PDF::Bytes> decoded(std::span<const std::byte> data, const PDF::Filter& filter)
{
    PDF::StreamDecoder decoder(8 * decodedLimit);
    auto result =
        decoder.decode(PDF::Bytes(data.begin(), data.end()), std::span(&filter, 1), decodedLimit);
    if (result) {
        expect(result->empty() == data.empty() && result->size() <= decodedLimit);
        expect(decoder.budget() <= 8 * decodedLimit - data.size() - result->size());
    }
    return result;
}

/// What is encoded is to come back whole.
inline void expectBack(std::span<const std::byte> data, std::span<const std::byte> encoded,
                       const PDF::Filter& filter)
{
    if (data.empty() || encoded.size() > decodedLimit) return;
    const auto back = decoded(encoded, filter);
    expect(back && std::ranges::equal(*back, data));
}

} // namespace quillmark::fuzz
