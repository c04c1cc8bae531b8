#include "coding/JsonWriter.h"

#include "text/Printable.h"
#include "text/Utf8.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <charconv>
#include <cstddef>
#include <limits>

namespace quillmark {
namespace {

constexpr std::size_t indent = 2;

/// Whether a byte begins a character that has to be looked at: a quotation mark, a backslash, or
/// what may be a controlling character, of which those that are not ASCII begin with one of three
/// bytes. Without branches, so that compilers make a few instructions of many bytes.
constexpr bool isSpecial(unsigned char byte)
{
    return (byte < 0x20) | (byte == 0x7F) | (byte == '"') | (byte == '\\') | (byte == 0xC2) |
           (byte == 0xD8) | (byte == 0xE2);
}

/// As many bytes as are looked at together.
constexpr std::size_t blockSize = 32;

bool isPlainBlock(const char* block)
{
    unsigned char special = 0;
    for (std::size_t i = 0; i < blockSize; ++i)
        special |= static_cast<unsigned char>(isSpecial(static_cast<unsigned char>(block[i])));
    return special == 0;
}

/// How many bytes at the start of the text can stand as they are.
std::size_t plainSize(std::string_view text)
{
    std::size_t size = 0;
    while (text.size() - size >= blockSize && isPlainBlock(text.data() + size))
        size += blockSize;
    // What is left of a long text is the end of one more block, which overlaps the last one.
    const bool isAtLastBlock = size > 0 && text.size() - size < blockSize;
    if (isAtLastBlock && isPlainBlock(text.data() + text.size() - blockSize)) return text.size();
    while (size < text.size() && !isSpecial(static_cast<unsigned char>(text[size])))
        ++size;
    return size;
}

/// What is short enough to be put together first: all keys, and most values.
constexpr std::size_t shortText = 48;

/// Appends a short text in its quotation marks, of which `end` holds the last, if it can stand as
/// it is. Put together first, it takes the string one step to grow and not three.
bool appendIfPlain(std::string& output, std::string_view text, std::string_view end)
{
    std::array<char, shortText + 8> piece; // NOLINT(*-member-init): no more than is filled is read
    char* to = piece.data();
    *to++ = '"';
    unsigned char special = 0;
    for (const char character : text) {
        special |= static_cast<unsigned char>(isSpecial(static_cast<unsigned char>(character)));
        *to++ = character;
    }
    if (special != 0) return false;
    for (const char character : end)
        *to++ = character;
    output.append(piece.data(), static_cast<std::size_t>(to - piece.data()));
    return true;
}

/// The letter that stands for a character behind a backslash; zero when it has none.
constexpr char escapeLetter(char32_t character)
{
    switch (character) {
    case '"':
    case '\\':
        return static_cast<char>(character);
    case '\b':
        return 'b';
    case '\f':
        return 'f';
    case '\n':
        return 'n';
    case '\r':
        return 'r';
    case '\t':
        return 't';
    default:
        return 0;
    }
}

/// `character` must have an escape letter or be below U+10000.
void appendEscaped(std::string& output, char32_t character)
{
    output += '\\';
    if (const char letter = escapeLetter(character); letter != 0) {
        output += letter;
        return;
    }
    constexpr std::string_view digits = "0123456789abcdef";
    output += 'u';
    for (const unsigned shift : {12U, 8U, 4U, 0U})
        output += digits[character >> shift & 0xFU];
}

} // namespace

void JsonWriter::key(std::string_view name)
{
    assert(!m_afterKey && !m_levels.empty() && m_levels.back().scope == Scope::object);
    startItem();
    quote(name, "\": ");
    m_afterKey = true;
}

void JsonWriter::value(std::string_view text)
{
    startValue();
    quote(text, "\"");
}

void JsonWriter::value(std::int64_t number)
{
    std::array<char, std::numeric_limits<std::int64_t>::digits10 + 2> digits{};
    const auto written = std::to_chars(digits.data(), digits.data() + digits.size(), number);
    literal({digits.data(), written.ptr});
}

void JsonWriter::begin(Scope scope, char bracket)
{
    startValue();
    m_output += bracket;
    m_levels.push_back({.scope = scope});
}

void JsonWriter::end([[maybe_unused]] Scope scope, char bracket)
{
    assert(!m_afterKey && !m_levels.empty() && m_levels.back().scope == scope);
    const bool empty = m_levels.back().empty;
    m_levels.pop_back();
    if (!empty) newLine();
    m_output += bracket;
}

void JsonWriter::literal(std::string_view text)
{
    startValue();
    m_output += text;
}

/// Before every value: in an object the key has made room for it already.
void JsonWriter::startValue()
{
    if (m_afterKey) {
        m_afterKey = false;
        return;
    }
    if (m_levels.empty()) return;
    assert(m_levels.back().scope == Scope::array);
    startItem();
}

void JsonWriter::startItem()
{
    // A comma, a line end and the usual indentation, from which is taken what is needed: what
    // stands between two items is as good as always appended in one piece.
    constexpr auto separator = [] {
        std::array<char, 2 + 32 * indent> characters{};
        characters.fill(' ');
        characters[0] = ',';
        characters[1] = '\n';
        return characters;
    }();
    const std::size_t start = m_levels.back().empty ? 1 : 0;
    m_levels.back().empty = false;
    const std::size_t end = 2 + indent * m_levels.size();
    m_output.append(separator.data() + start, std::min(end, separator.size()) - start);
    if (end > separator.size()) m_output.append(end - separator.size(), ' ');
}

void JsonWriter::newLine()
{
    m_output += '\n';
    m_output.append(indent * m_levels.size(), ' ');
}

/// `end` begins with the closing quotation mark.
void JsonWriter::quote(std::string_view text, std::string_view end)
{
    if (text.size() <= shortText && appendIfPlain(m_output, text, end)) return;
    m_output += '"';
    for (;;) {
        const std::size_t plain = plainSize(text);
        m_output.append(text.substr(0, plain));
        text.remove_prefix(plain);
        if (text.empty()) break;
        const Utf8::Character next = Utf8::first(text);
        if (escapeLetter(next.codePoint) != 0 || isControlling(next.codePoint))
            appendEscaped(m_output, next.codePoint);
        else
            m_output.append(text.substr(0, next.length));
        text.remove_prefix(next.length);
    }
    m_output += end;
}

} // namespace quillmark
