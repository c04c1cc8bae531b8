#include "ui/ShownText.h"

#include "model/QtText.h"
#include "text/Printable.h"
#include "text/Utf8.h"

#include <string>

namespace quillmark {

using namespace Qt::Literals::StringLiterals;

QString shownText(std::string_view text)
{
    std::string shown;
    std::size_t count = 0;
    while (!text.empty() && count < shownCharacters) {
        const Utf8::Character character = Utf8::first(text);
        text.remove_prefix(character.length);
        ++count;
        const char32_t codePoint = character.codePoint;
        if (codePoint == U'\r') {
            if (!text.starts_with('\n')) shown += '\n';
        } else if (codePoint == U'\n' || codePoint == U'\t') {
            shown += static_cast<char>(codePoint);
        } else {
            Utf8::append(shown, isControlling(codePoint) ? Utf8::replacementCharacter : codePoint);
        }
    }
    QString result = qtText(shown);
    if (!text.empty()) result += u"…\n(Cut here after %L1 characters.)"_s.arg(shownCharacters);
    return result;
}

} // namespace quillmark
