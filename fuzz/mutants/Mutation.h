// Bytes changed at random, the same for the same number on every machine.
#pragma once

#include "support/FontBytes.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace quillmark::fuzz {

/// Random numbers whose sequence the C++ standard settles, which that of its distributions is not.
class Random {
public:
    explicit Random(std::uint64_t seed);
    std::uint64_t operator()();
    /// Below `end`, which is not zero.
    std::size_t below(std::size_t end) { return static_cast<std::size_t>((*this)() % end); }
    bool oneIn(std::size_t count) { return below(count) == 0; }
    template <typename Value>
    const Value& oneOf(std::span<const Value> values)
    {
        return values[below(values.size())];
    }

private:
    std::uint64_t m_state;
};

/// Changes one to eight places: bits, numbers of two and four bytes, and pieces that are removed,
/// repeated, or taken from `other` or from `words`.
[[nodiscard]] test::Bytes mutated(Random& random, test::Bytes bytes,
                                  std::span<const std::byte> other,
                                  std::span<const std::string> words);

} // namespace quillmark::fuzz
