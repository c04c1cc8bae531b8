#include "text/Trim.h"

#include "text/Utf8.h"

#include <unicode/uchar.h>

namespace quillmark {
namespace {

bool isTrimmed(char32_t character, TrimAlso also)
{
    const bool isControl = character < 0x20 || (character >= 0x7F && character < 0xA0);
    switch (also) {
    case TrimAlso::nothing:
        break;
    case TrimAlso::nul:
        if (character == 0) return true;
        break;
    case TrimAlso::controls:
        if (isControl) return true;
        break;
    }
    if (character < 0x80) return character == ' ' || (character >= '\t' && character <= '\r');
    return u_isUWhiteSpace(static_cast<UChar32>(character)) != 0;
}

} // namespace

std::string_view trimmed(std::string_view text, TrimAlso also)
{
    while (!text.empty()) {
        const Utf8::Character character = Utf8::first(text);
        if (!isTrimmed(character.codePoint, also)) break;
        text.remove_prefix(character.length);
    }
    while (!text.empty()) {
        const Utf8::Character character = Utf8::last(text);
        if (!isTrimmed(character.codePoint, also)) break;
        text.remove_suffix(character.length);
    }
    return text;
}

std::optional<std::string> trimmedOrAbsent(std::string text, TrimAlso also)
{
    const std::string_view kept = trimmed(text, also);
    if (kept.empty()) return std::nullopt;
    if (kept.size() == text.size()) return text;
    return std::string(kept);
}

} // namespace quillmark
