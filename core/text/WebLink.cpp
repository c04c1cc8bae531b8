#include "text/WebLink.h"

#include "text/Utf8.h"

#include <algorithm>
#include <array>

namespace quillmark {
namespace {

constexpr std::size_t longestLink = 2000; // bytes; what browsers are sure to take

bool startsWith(std::string_view text, std::string_view lowercasePrefix)
{
    return text.size() >= lowercasePrefix.size() &&
           std::ranges::equal(text.substr(0, lowercasePrefix.size()), lowercasePrefix, {},
                              Utf8::asciiLower);
}

bool isLetterOrDigit(char character)
{
    const char lower = Utf8::asciiLower(character);
    return (lower >= 'a' && lower <= 'z') || (character >= '0' && character <= '9');
}

bool isInHost(char character)
{
    return isLetterOrDigit(character) || character == '-' || character == '.' || character == '_' ||
           character == ':' || character == '[' || character == ']';
}

/// Unreserved and reserved characters, and the sign of an octet that is encoded already.
bool isAllowed(char character)
{
    return isLetterOrDigit(character) ||
           std::string_view("-._~:/?#[]@!$&'()*+,;=%").find(character) != std::string_view::npos;
}

} // namespace

std::optional<std::string> webLink(std::string_view text)
{
    constexpr std::array<std::string_view, 2> schemes{"http://", "https://"};
    const auto* const scheme = std::ranges::find_if(
        schemes, [&](std::string_view prefix) { return startsWith(text, prefix); });
    if (scheme == schemes.end() || text.size() > longestLink) return std::nullopt;
    const std::string_view rest = text.substr(scheme->size());
    const std::string_view host = rest.substr(0, rest.find_first_of("/?#"));
    if (host.empty() || !isLetterOrDigit(host.front()) || !std::ranges::all_of(host, isInHost))
        return std::nullopt;
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string link;
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte <= 0x20 || byte == 0x7F) return std::nullopt;
        if (isAllowed(character))
            link += character;
        else
            link.append({'%', digits[byte >> 4U], digits[byte & 0x0FU]});
    }
    return link;
}

} // namespace quillmark
