#include "pdf/SubsetPrefix.h"

#include "text/Characters.h"

#include <algorithm>
#include <cstddef>

namespace quillmark {
namespace {

constexpr std::size_t tagLength = 6; // user-perceived characters

/// Capitals of any script count, as a reader sees them: a letter with its accents is one.
bool isSubsetTag(std::string_view text)
{
    // One more than needed, so that a longer text shows without being cut up whole.
    const auto characters = userCharacters(text, tagLength + 1);
    return characters.size() == tagLength && std::ranges::all_of(characters, isUppercaseCharacter);
}

} // namespace

SubsetName splitSubsetPrefix(std::string_view rawName)
{
    const std::size_t plus = rawName.find('+');
    if (plus != std::string_view::npos) {
        const std::string_view name = rawName.substr(plus + 1);
        if (!name.empty() && isSubsetTag(rawName.substr(0, plus))) return {std::string(name), true};
    }
    return {std::string(rawName), false};
}

} // namespace quillmark
