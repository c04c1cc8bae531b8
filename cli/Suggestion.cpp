#include "cli/Suggestion.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <utility>

namespace quillmark::cli {
namespace {

/// The number of characters to insert, remove or replace that leads from one word to the other.
std::size_t editDistance(std::string_view from, std::string_view to)
{
    std::vector<std::size_t> row(to.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < from.size(); ++i) {
        std::size_t diagonal = std::exchange(row[0], i + 1);
        for (std::size_t j = 0; j < to.size(); ++j) {
            const std::size_t replaced = diagonal + (from[i] == to[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, diagonal + 1, row[j] + 1});
        }
    }
    return row.back();
}

} // namespace

std::optional<std::string_view> nearest(std::string_view word,
                                        const std::vector<std::string_view>& known)
{
    // Nothing near it is a misspelling of anything, and very long words are not worth comparing.
    constexpr std::size_t farthest = 2;
    constexpr std::size_t longest = 64;
    if (word.size() > longest) return std::nullopt;
    std::optional<std::string_view> found;
    std::size_t least = farthest + 1;
    for (const std::string_view name : known) {
        const std::size_t longer = std::max(word.size(), name.size());
        const std::size_t shorter = std::min(word.size(), name.size());
        if (longer - shorter >= least) continue;
        const std::size_t distance = editDistance(word, name);
        if (distance == 0) return std::nullopt;
        if (distance >= least) continue;
        least = distance;
        found = name;
    }
    return found;
}

} // namespace quillmark::cli
