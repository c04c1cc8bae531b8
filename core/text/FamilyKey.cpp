#include "text/FamilyKey.h"

#include "text/Case.h"
#include "text/Utf8.h"

#include <unicode/uchar.h>

namespace quillmark {
namespace {

bool isKept(char32_t character)
{
    if (character < 0x80)
        return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
               (character >= '0' && character <= '9');
    return (U_GET_GC_MASK(static_cast<UChar32>(character)) &
            (U_GC_L_MASK | U_GC_M_MASK | U_GC_N_MASK)) != 0;
}

} // namespace

std::string familyKey(std::string_view text)
{
    const std::string lower = lowercased(text);
    std::string key;
    key.reserve(lower.size());
    for (std::string_view rest = lower; !rest.empty();) {
        const Utf8::Character character = Utf8::first(rest);
        if (isKept(character.codePoint)) key.append(rest.substr(0, character.length));
        rest.remove_prefix(character.length);
    }
    return key;
}

} // namespace quillmark
