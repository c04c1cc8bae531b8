#include "cli/TextLines.h"

#include "text/DisplayWidth.h"
#include "text/Printable.h"
#include "text/Utf8.h"

#include <algorithm>
#include <utility>

namespace quillmark::cli {
namespace {

constexpr std::string_view ellipsis = "…";

std::string_view escapeSequence(Ink ink)
{
    switch (ink) {
    case Ink::plain:
        return {};
    case Ink::strong:
        return "\x1b[1m";
    case Ink::faint:
        return "\x1b[2m";
    case Ink::restricted:
        return "\x1b[31m";
    case Ink::unknown:
        return "\x1b[33m";
    case Ink::likelyOK:
        return "\x1b[32m";
    }
    return {};
}

constexpr std::string_view plainInk = "\x1b[0m";

/// A tab or the end of a line (UAX #14).
bool endsLine(char32_t character)
{
    return (character >= '\t' && character <= '\r') || character == 0x85 || character == 0x2028 ||
           character == 0x2029;
}

/// The next piece of `text` to put on a line of `columns`: words as long as they fit, at least one.
std::string_view takeLine(std::string_view& text, std::size_t columns)
{
    std::size_t end = 0;
    while (end < text.size()) {
        const std::size_t wordEnd = std::min(text.find(' ', end + 1), text.size());
        if (end > 0 && displayWidth(text.substr(0, wordEnd)) > columns) break;
        end = wordEnd;
    }
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return line;
}

} // namespace

Ink ink(Verdict verdict)
{
    switch (verdict) {
    case Verdict::restricted:
        return Ink::restricted;
    case Verdict::unknown:
        return Ink::unknown;
    case Verdict::likelyOK:
        return Ink::likelyOK;
    }
    return Ink::plain;
}

std::string oneLine(std::string_view text)
{
    std::string joined;
    joined.reserve(text.size());
    bool breaks = false;
    while (!text.empty()) {
        const Utf8::Character character = Utf8::first(text);
        if (endsLine(character.codePoint)) {
            breaks = true;
            while (joined.ends_with(' '))
                joined.pop_back();
        } else if (!breaks || character.codePoint != ' ') {
            if (breaks && !joined.empty()) joined += ' ';
            breaks = false;
            joined += text.substr(0, character.length);
        }
        text.remove_prefix(character.length);
    }
    return printable(joined);
}

TextLines& TextLines::text(std::string_view text, Ink ink)
{
    append(oneLine(text), ink);
    return *this;
}

TextLines& TextLines::cell(std::string_view text, std::size_t columns, Ink ink)
{
    std::string safe = oneLine(text);
    std::size_t width = displayWidth(safe);
    if (m_page.columns && width > columns) {
        safe.resize(prefixOfWidth(safe, columns - std::min<std::size_t>(columns, 1)).size());
        safe += ellipsis;
        width = displayWidth(safe);
    }
    append(safe, ink);
    return skip(columns - std::min(columns, width));
}

TextLines& TextLines::skip(std::size_t columns)
{
    m_pendingBlanks += columns;
    return *this;
}

void TextLines::endLine()
{
    m_pendingBlanks = 0;
    m_output.buffer() += '\n';
    m_output.drain();
}

void TextLines::paragraph(std::string_view text, std::size_t indent, Ink ink)
{
    const std::string safe = oneLine(text);
    if (!m_page.columns) {
        append(safe, ink);
        return endLine();
    }
    // Narrower paragraphs than this are harder to read than lines that the terminal breaks, and in
    // wider ones the eye does not find the next line.
    constexpr std::size_t narrowest = 20;
    constexpr std::size_t widest = 100;
    const std::size_t columns =
        std::clamp(*m_page.columns - std::min(*m_page.columns, indent), narrowest, widest);
    std::string_view rest = safe;
    do {
        append(takeLine(rest, columns), ink);
        endLine();
        if (!rest.empty()) skip(indent);
    } while (!rest.empty());
}

void TextLines::append(std::string_view safe, Ink ink)
{
    if (safe.empty()) return;
    std::string& buffer = m_output.buffer();
    buffer.append(std::exchange(m_pendingBlanks, 0), ' ');
    const std::string_view start = m_page.colored ? escapeSequence(ink) : std::string_view();
    buffer += start;
    buffer += safe;
    if (!start.empty()) buffer += plainInk;
}

} // namespace quillmark::cli
