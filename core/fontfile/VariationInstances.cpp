#include "fontfile/VariationInstances.h"

#include "fontfile/ByteReader.h"
#include "text/Utf8.h"

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <optional>
#include <string_view>
#include <utility>

namespace quillmark {
namespace {

constexpr std::uint16_t variationsPostScriptNamePrefix = 25; // a name identifier
constexpr std::uint16_t noNameID = 0xFFFF;

constexpr std::size_t instanceHeaderSize = 4; // subfamilyNameID and flags
constexpr std::size_t coordinateSize = 4;

std::optional<std::string_view> firstOf(const NameStrings& names,
                                        std::initializer_list<std::uint16_t> ids)
{
    for (const std::uint16_t id : ids)
        if (const auto found = names.find(id); found != names.end()) return found->second;
    return std::nullopt;
}

std::string_view shortened(std::string_view text)
{
    std::size_t length = 0;
    for (std::size_t i = 0; i < VariationInstances::maximumNameLength && length < text.size(); ++i)
        length += Utf8::first(text.substr(length)).length;
    return text.substr(0, length);
}

/// The characters that a PostScript name is made of when it is made from other names.
std::string lettersAndDigits(std::string_view text)
{
    std::string kept;
    std::ranges::copy_if(text, std::back_inserter(kept), [](char c) {
        return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9');
    });
    return kept;
}

/// What the PostScript names of all instances begin with; empty when the names do not tell.
std::string postScriptPrefix(const NameStrings& names)
{
    if (const auto prefix = firstOf(names, {variationsPostScriptNamePrefix}))
        return lettersAndDigits(shortened(*prefix));
    // The PostScript name of the font itself ends in the style of its default instance.
    const auto own = shortened(
        firstOf(names, {static_cast<std::uint16_t>(NameID::postScriptName)}).value_or(""));
    return lettersAndDigits(own.substr(0, own.rfind('-')));
}

std::string postScriptName(const std::string& prefix, std::string_view style)
{
    const std::string styleCharacters = lettersAndDigits(style);
    if (prefix.empty() || styleCharacters.empty()) return {};
    return std::string(shortened(prefix + "-" + styleCharacters));
}

} // namespace

std::vector<VariationInstance> VariationInstances::read(std::span<const std::byte> fvar,
                                                        const NameStrings& names)
{
    std::vector<VariationInstance> instances;
    const ByteReader table(fvar);
    const auto axesOffset = table.u16(4);
    const auto axisCount = table.u16(8);
    const auto axisSize = table.u16(10);
    const auto instanceCount = table.u16(12);
    const auto instanceSize = table.u16(14);
    if (!axesOffset || !axisCount || !axisSize || !instanceCount || !instanceSize) return instances;
    const std::size_t start = *axesOffset + std::size_t{*axisCount} * *axisSize;
    const std::size_t coordinatesEnd = instanceHeaderSize + *axisCount * coordinateSize;
    if (*instanceSize < coordinatesEnd) return instances;

    const std::string prefix = postScriptPrefix(names);
    const std::string family(
        shortened(firstOf(names, {static_cast<std::uint16_t>(NameID::typographicFamily),
                                  static_cast<std::uint16_t>(NameID::family)})
                      .value_or(prefix)));
    const std::size_t count = std::min<std::size_t>(*instanceCount, maximumInstances);
    for (std::size_t i = 0; i < count; ++i) {
        const auto bytes = table.slice(start + i * *instanceSize, *instanceSize);
        if (!bytes) break; // the instances behind it lie past the end as well
        const ByteReader instance(*bytes);
        const auto style = firstOf(names, {*instance.u16(0)});
        if (!style) continue;
        const std::uint16_t ownNameID = instance.u16(coordinatesEnd).value_or(noNameID);
        const auto ownName = ownNameID == noNameID ? std::nullopt : firstOf(names, {ownNameID});
        const std::string_view shortStyle = shortened(*style);
        std::string name =
            ownName ? std::string(shortened(*ownName)) : postScriptName(prefix, shortStyle);
        if (name.empty()) continue;
        instances.push_back({
            std::move(name),
            std::string(shortStyle),
            family.empty() ? std::string(shortStyle) : family + " " + std::string(shortStyle),
        });
    }
    return instances;
}

} // namespace quillmark
