#include "library/FontIndex.h"

#include "library/FontLibrary.h"
#include "text/Characters.h"
#include "text/FamilyKey.h"

#include <utility>

namespace quillmark {
namespace {

/// What stands before the first hyphen, leading hyphens left out; all of a name that consists of
/// hyphens.
std::string_view familyPart(std::string_view name)
{
    const std::size_t begin = name.find_first_not_of('-');
    if (begin == std::string_view::npos) return name;
    return name.substr(begin, name.find('-', begin) - begin);
}

/// `text` without its first `count` code points.
std::string_view dropFirst(std::string_view text, std::size_t count)
{
    const auto isContinuation = [](char unit) {
        return (static_cast<unsigned char>(unit) & 0xC0U) == 0x80U;
    };
    std::size_t at = 0;
    for (; count > 0 && at < text.size(); --count) {
        ++at;
        while (at < text.size() && isContinuation(text[at]))
            ++at;
    }
    return text.substr(at);
}

} // namespace

FontIndex::FontIndex(std::span<const FontFacts> fonts, bool useCoreText_,
                     std::span<const FontFacts> namedInstances)
    : useCoreText(useCoreText_)
{
    for (const FontFacts& font : fonts) {
        byName.insert_or_assign(font.postScriptName, font);
        std::string key = familyKey(font.family);
        if (font.origin == FontOrigin::installed)
            byFamily.try_emplace(std::move(key), font);
        else
            byFamily.insert_or_assign(std::move(key), font);
    }
    for (const FontFacts& instance : namedInstances)
        byName.try_emplace(instance.postScriptName, instance);
}

std::optional<FontFacts> FontIndex::lookup(std::string_view name, const FontService& service) const
{
    if (const auto found = byName.find(std::string(name)); found != byName.end())
        return found->second;
    if (useCoreText) {
        if (auto facts = FontLibrary::installedFont(service, name)) return facts;
    }
    const std::string_view family = familyPart(name);
    const auto found = byFamily.find(familyKey(family));
    if (found == byFamily.end()) return std::nullopt;
    FontFacts facts = found->second;
    facts.style = dropFirst(name, codePointCount(family) + 1);
    return facts;
}

} // namespace quillmark
