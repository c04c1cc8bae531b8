#include "ui/RowIdentity.h"

#include <string>
#include <unordered_map>
#include <utility>

namespace quillmark {

std::vector<std::optional<std::size_t>>
sameRows(const RowList& before, std::span<const std::size_t> positions, const RowList& after)
{
    // The places of the few ids asked for, in both lists.
    using Places = std::vector<std::size_t>;
    std::unordered_map<std::string, std::pair<Places, Places>> places;
    for (const std::size_t position : positions)
        places.try_emplace(before.span()[position].id());
    if (places.empty()) return {};
    const auto note = [&](const RowList& rows, Places std::pair<Places, Places>::*side) {
        for (std::size_t i = 0; i < rows.size(); ++i) {
            const auto found = places.find(rows.span()[i].id());
            if (found != places.end()) (found->second.*side).push_back(i);
        }
    };
    note(before, &std::pair<Places, Places>::first);
    note(after, &std::pair<Places, Places>::second);

    std::vector<std::optional<std::size_t>> same;
    same.reserve(positions.size());
    for (const std::size_t position : positions) {
        const auto& [old, fresh] = places.at(before.span()[position].id());
        std::size_t number = 0;
        while (old[number] != position)
            ++number;
        same.push_back(number < fresh.size() ? std::optional(fresh[number]) : std::nullopt);
    }
    return same;
}

} // namespace quillmark
