#include "fontfile/FontFacts.h"

#include "fontfile/SFNT.h"

#include <initializer_list>
#include <utility>

namespace quillmark {
namespace {

const std::optional<std::string>& either(const std::optional<std::string>& mine,
                                         const std::optional<std::string>& theirs)
{
    return mine ? mine : theirs;
}

std::string withoutSpaces(std::string text)
{
    std::erase(text, ' ');
    return text;
}

} // namespace

FontFacts FontFacts::fromNames(NameStrings names, std::optional<OS2Info> os2,
                               std::string_view fallbackName, std::optional<std::string> filePath,
                               std::optional<std::string> format, FontOrigin origin)
{
    // Taken out and not copied: from here on each is asked for once.
    const auto name = [&names](NameID id) -> std::optional<std::string> {
        const auto found = names.find(static_cast<std::uint16_t>(id));
        if (found == names.end()) return std::nullopt;
        return std::move(found->second);
    };
    const auto firstOf = [&name](std::initializer_list<NameID> ids) {
        std::optional<std::string> text;
        for (const NameID id : ids)
            if (!text) text = name(id);
        return text;
    };

    FontFacts facts;
    if (auto postScriptName = postScriptNameAmong(names))
        facts.postScriptName = *std::move(postScriptName);
    else
        facts.postScriptName = fallbackName;
    facts.fullName = name(NameID::fullName);
    if (auto family = firstOf({NameID::typographicFamily, NameID::family, NameID::postScriptName}))
        facts.family = *std::move(family);
    else
        facts.family = fallbackName;
    facts.style = firstOf({NameID::typographicSubfamily, NameID::subfamily}).value_or("");
    facts.copyright = name(NameID::copyright);
    facts.trademark = name(NameID::trademark);
    facts.manufacturer = name(NameID::manufacturer);
    facts.designer = name(NameID::designer);
    facts.vendorURL = name(NameID::vendorURL);
    facts.licenseDescription = name(NameID::licenseDescription);
    facts.licenseURL = name(NameID::licenseURL);
    facts.os2 = std::move(os2);
    facts.filePath = std::move(filePath);
    facts.format = std::move(format);
    facts.origin = origin;
    return facts;
}

std::optional<std::string> FontFacts::postScriptNameAmong(const NameStrings& names)
{
    const auto postScriptName = names.find(static_cast<std::uint16_t>(NameID::postScriptName));
    if (postScriptName != names.end()) return postScriptName->second;
    const auto fullName = names.find(static_cast<std::uint16_t>(NameID::fullName));
    if (fullName != names.end()) return withoutSpaces(fullName->second);
    return std::nullopt;
}

std::vector<FontFacts> FontFacts::read(std::span<const std::byte> data,
                                       const std::optional<std::string>& filePath,
                                       FontOrigin origin)
{
    const std::vector<SFNTFace> faces = SFNT::faces(data);
    std::vector<FontFacts> facts;
    facts.reserve(faces.size());
    std::size_t budget = NameTable::maximumFileBytes;
    for (const SFNTFace& face : faces) {
        facts.push_back(
            fromNames(face.name ? NameTable::strings(*face.name, budget, nameIDs) : NameStrings{},
                      face.os2 ? OS2Info::read(*face.os2) : std::nullopt, "Unnamed font", filePath,
                      std::string(face.outlines), origin));
    }
    return facts;
}

FontFacts FontFacts::filled(const FontFacts& other) const
{
    FontFacts result = *this;
    if (style.empty()) result.style = other.style;
    result.fullName = either(fullName, other.fullName);
    result.copyright = either(copyright, other.copyright);
    result.trademark = either(trademark, other.trademark);
    result.manufacturer = either(manufacturer, other.manufacturer);
    result.designer = either(designer, other.designer);
    result.vendorURL = either(vendorURL, other.vendorURL);
    result.licenseDescription = either(licenseDescription, other.licenseDescription);
    result.licenseURL = either(licenseURL, other.licenseURL);
    if (!os2) result.os2 = other.os2;
    result.filePath = either(filePath, other.filePath);
    if (result.licenseDescription == other.licenseDescription)
        result.licenseFile = either(licenseFile, other.licenseFile);
    return result;
}

std::string FontFacts::displayName() const
{
    if (fullName && !fullName->empty()) return *fullName;
    return style.empty() ? family : family + " " + style;
}

std::optional<std::uint16_t> FontFacts::fsType() const
{
    if (!os2) return std::nullopt;
    return os2->fsType;
}

} // namespace quillmark
