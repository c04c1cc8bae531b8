// Numbers that sort as the things do that they stand for.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <numeric>
#include <vector>

namespace quillmark {

/// For each of `keys` how many different ones come before it: equal ones have equal ranks.
template <typename Key, typename Before = std::less<>>
[[nodiscard]] std::vector<std::uint32_t> ranksOf(const std::vector<Key>& keys, Before before = {})
{
    std::vector<std::uint32_t> order(keys.size());
    std::iota(order.begin(), order.end(), 0U);
    std::ranges::sort(order, before, [&](std::uint32_t at) -> const Key& { return keys[at]; });
    std::vector<std::uint32_t> ranks(keys.size());
    std::uint32_t rank = 0;
    for (std::size_t i = 1; i < order.size(); ++i) {
        if (before(keys[order[i - 1]], keys[order[i]])) ++rank;
        ranks[order[i]] = rank;
    }
    return ranks;
}

/// A number of which the first 32 bits come from one rank and the others from another: sorting such
/// numbers sorts by both.
[[nodiscard]] constexpr std::uint64_t joinedRanks(std::uint32_t first, std::uint32_t second)
{
    constexpr unsigned rankBits = 32;
    return (std::uint64_t{first} << rankBits) | second;
}

} // namespace quillmark
