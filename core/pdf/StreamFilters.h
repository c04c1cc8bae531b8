// The filters that PDF streams use for plain bytes (ISO 32000-2, 7.4), with limits on what comes
// out. Image filters are deliberately not here: no picture is ever decoded.
#pragma once

#include "pdf/Inflater.h"
#include "pdf/PDFObjects.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace quillmark::PDF {

/// How a filter's output was prepared for compression. Values as in DecodeParms.
struct Predictor {
    std::int64_t predictor{1}; // 1: none; 2: TIFF; 10 and above: PNG
    std::int64_t colors{1};
    std::int64_t bitsPerComponent{8};
    std::int64_t columns{1};
};

struct Filter {
    enum class Kind {
        flate,
        lzw,
        asciiHex,
        ascii85,
        runLength,
        crypt, // the reader has decrypted already, so this changes nothing
    };
    Kind kind{};
    Predictor predictor{};  // Flate and LZW only
    bool earlyChange{true}; // LZW only: codes grow one code early
};

/// The filter of this name, or of its abbreviation; absent for every other filter.
[[nodiscard]] std::optional<Filter::Kind> filterKind(std::string_view name);

/// Decodes streams, as long as all of them together stay within a budget.
class StreamDecoder {
public:
    /// `budget` is in bytes. Every layer of every stream is charged, the undecoded one too, and
    /// also those of streams that turn out to be over their limit.
    explicit StreamDecoder(std::uint64_t budget) : m_budget(budget) {}

    /// What is left of the budget.
    [[nodiscard]] std::uint64_t budget() const { return m_budget; }

    /// Applies `filters` in order. Damaged data give what comes out before the damage, as readers
    /// do. Absent when that is nothing at all, when a layer has more than `limit` bytes, and when
    /// the budget ends.
    [[nodiscard]] std::optional<Bytes> decode(Bytes raw, std::span<const Filter> filters,
                                              std::size_t limit);

private:
    [[nodiscard]] Bytes apply(const Filter& filter, Bytes raw, std::size_t limit);

    Inflater m_inflater;
    std::uint64_t m_budget;
};

} // namespace quillmark::PDF
