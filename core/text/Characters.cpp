#include "text/Characters.h"

#include "text/Case.h"
#include "text/IcuText.h"
#include "text/Utf8.h"

#include <unicode/brkiter.h>
#include <unicode/uchar.h>
#include <unicode/utext.h>

#include <algorithm>
#include <memory>

namespace quillmark {
namespace {

bool isAsciiByte(char byte)
{
    return static_cast<unsigned char>(byte) < 0x80;
}

/// Up to `limit` characters from the start of `text`, whose first bytes are not plain ASCII.
void appendByBreakIterator(std::vector<std::string_view>& characters, std::string_view text,
                           std::size_t limit)
{
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::BreakIterator> breaks(
        icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    UText utf8 = UTEXT_INITIALIZER;
    utext_openUTF8(&utf8, text.data(), icuText(text).size(), &status);
    if (U_SUCCESS(status)) breaks->setText(&utf8, status);
    if (U_SUCCESS(status)) {
        std::int32_t start = breaks->first();
        while (characters.size() < limit) {
            const std::int32_t end = breaks->next();
            if (end == icu::BreakIterator::DONE) break;
            characters.push_back(text.substr(static_cast<std::size_t>(start),
                                             static_cast<std::size_t>(end - start)));
            start = end;
        }
    }
    utext_close(&utf8);
}

} // namespace

std::size_t codePointCount(std::string_view text)
{
    const auto startsCharacter = [](char byte) {
        return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
    };
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), startsCharacter));
}

std::vector<std::string_view> userCharacters(std::string_view text, std::size_t limit)
{
    std::vector<std::string_view> characters;
    // Between two ASCII characters there is always a boundary, but for a carriage return before a
    // line feed. A character of another script may join what stands before it.
    while (characters.size() < limit && !text.empty()) {
        const bool nextMayJoin = text.size() > 1 && !isAsciiByte(text[1]);
        if (!isAsciiByte(text[0]) || text[0] == '\r' || nextMayJoin) {
            appendByBreakIterator(characters, text, limit);
            break;
        }
        characters.push_back(text.substr(0, 1));
        text.remove_prefix(1);
    }
    return characters;
}

bool isUppercaseCharacter(std::string_view character)
{
    if (character.empty()) return false;
    const Utf8::Character first = Utf8::first(character);
    if (first.length == character.size())
        return u_isUUppercase(static_cast<UChar32>(first.codePoint)) != 0;
    return uppercased(character) == character && lowercased(character) != character;
}

} // namespace quillmark
