#include "fontfile/Type1.h"

#include "text/Encoding.h"
#include "text/Trim.h"

#include <algorithm>
#include <span>
#include <string>
#include <string_view>

namespace quillmark {
namespace {

/// The clear-text part stands first and is far shorter in any real font.
constexpr std::size_t searchedBytes = 65536;

/// A string is cut behind this many characters.
constexpr std::size_t longestString = 4000;

/// The program's bytes seen as characters, one each; they become UTF-8 only when a value is found.
using Latin1 = std::string_view;

std::string toUtf8(Latin1 characters)
{
    return decodeLatin1(std::as_bytes(std::span(characters)));
}

std::optional<std::string> fontName(Latin1 program)
{
    constexpr std::string_view key = "/FontName";
    const std::size_t found = program.find(key);
    if (found == Latin1::npos) return std::nullopt;
    Latin1 rest = program.substr(found + key.size());
    rest.remove_prefix(std::min(rest.find_first_not_of(' '), rest.size()));
    if (!rest.starts_with('/')) return std::nullopt;
    rest.remove_prefix(1);
    const Latin1 name = rest.substr(0, rest.find_first_of(" \r\n\t/"));
    if (name.empty()) return std::nullopt;
    return toUtf8(name);
}

/// What stands behind the opening parenthesis of the string that belongs to `key`.
std::optional<Latin1> behindParenthesis(Latin1 program, std::string_view key)
{
    for (const std::string_view opening : {" (", "("}) {
        const std::string wanted = std::string(key).append(opening);
        const std::size_t found = program.find(wanted);
        if (found != Latin1::npos) return program.substr(found + wanted.size());
    }
    return std::nullopt;
}

std::optional<std::string> parenthesisedString(Latin1 program, std::string_view key)
{
    const auto source = behindParenthesis(program, key);
    if (!source) return std::nullopt;

    std::string characters;
    std::size_t depth = 1;
    for (std::size_t i = 0; i < source->size() && characters.size() <= longestString; ++i) {
        char character = (*source)[i];
        if (character == '\\') {
            // The character that follows is meant as it stands, whatever it is.
            if (++i == source->size()) break;
            character = (*source)[i];
        } else if (character == '(') {
            ++depth;
        } else if (character == ')' && --depth == 0) {
            break;
        }
        characters.push_back(character);
    }
    return trimmedOrAbsent(toUtf8(characters));
}

} // namespace

std::optional<BareFontInfo> Type1::read(std::span<const std::byte> program)
{
    const auto searched = program.first(std::min(program.size(), searchedBytes));
    const Latin1 characters(reinterpret_cast<const char*>(searched.data()), searched.size());
    const auto contains = [characters](std::string_view key) {
        return characters.find(key) != Latin1::npos;
    };
    if (!contains("/FontName") && !contains("/Notice") && !contains("/FullName"))
        return std::nullopt;
    return BareFontInfo{
        fontName(characters),
        parenthesisedString(characters, "/FullName"),
        parenthesisedString(characters, "/FamilyName"),
        parenthesisedString(characters, "/Notice"),
        parenthesisedString(characters, "/Copyright"),
    };
}

} // namespace quillmark
