#include "text/Printable.h"

#include "text/Utf8.h"

#include <algorithm>

namespace quillmark {
namespace {

bool isAsciiControl(char character)
{
    return static_cast<unsigned char>(character) < 0x20 || character == 0x7F;
}

} // namespace

bool isControlling(char32_t character)
{
    const bool isControl = character < 0x20 || (character >= 0x7F && character < 0xA0);
    const bool isSeparator = character == 0x2028 || character == 0x2029;
    // The Bidi_Control property: marks, embeddings and overrides, isolates.
    const bool turnsReadingOrder = character == 0x061C || character == 0x200E ||
                                   character == 0x200F ||
                                   (character >= 0x202A && character <= 0x202E) ||
                                   (character >= 0x2066 && character <= 0x2069);
    return isControl || isSeparator || turnsReadingOrder;
}

std::string printable(std::string_view text)
{
    if (Utf8::isAscii(text) && std::none_of(text.begin(), text.end(), isAsciiControl))
        return std::string(text);
    std::string safe;
    safe.reserve(text.size());
    while (!text.empty()) {
        const Utf8::Character character = Utf8::first(text);
        Utf8::append(safe, isControlling(character.codePoint) ? Utf8::replacementCharacter
                                                              : character.codePoint);
        text.remove_prefix(character.length);
    }
    return safe;
}

} // namespace quillmark
