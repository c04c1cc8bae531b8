#include "cli/FontNames.h"

#include "cli/Suggestion.h"
#include "text/CaseFolding.h"

namespace quillmark::cli {

std::vector<FontFacts> fontsCalled(std::string_view name, std::span<const FontFacts> fonts,
                                   const std::string& locale)
{
    const CaseFolding folding(locale);
    const std::string folded = folding.folded(name);
    const auto isExact = [&](const FontFacts& font) { return font.displayName() == name; };
    const auto isFolded = [&](const FontFacts& font) {
        return folding.folded(font.displayName()) == folded ||
               folding.folded(font.postScriptName) == folded;
    };
    const auto isFamily = [&](const FontFacts& font) {
        return folding.folded(font.family) == folded;
    };
    const auto found = [&](const auto& isCalled) {
        std::vector<FontFacts> called;
        for (const FontFacts& font : fonts)
            if (isCalled(font)) called.push_back(font);
        return called;
    };
    std::vector<FontFacts> called = found(isExact);
    if (called.empty()) called = found(isFolded);
    if (called.empty()) called = found(isFamily);
    return called;
}

std::optional<std::string> fontNameNear(std::string_view name, std::span<const FontFacts> fonts,
                                        const std::string& locale)
{
    std::vector<std::string> names;
    names.reserve(3 * fonts.size());
    for (const FontFacts& font : fonts) {
        names.push_back(font.postScriptName);
        names.push_back(font.displayName());
        names.push_back(font.family);
    }
    if (const auto near = nearest(name, {names.begin(), names.end()})) return std::string(*near);
    const CaseFolding folding(locale);
    const std::string folded = folding.folded(name);
    for (const FontFacts& font : fonts)
        if (folding.folded(font.displayName()).find(folded) != std::string::npos)
            return font.displayName();
    return std::nullopt;
}

} // namespace quillmark::cli
