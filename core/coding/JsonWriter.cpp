#include "coding/JsonWriter.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <charconv>
#include <cstddef>
#include <limits>

namespace quillmark {
namespace {

constexpr std::size_t indent = 2;

/// 0 for a byte that can stand as it is, as those of UTF-8 sequences can; 1 for others. Without
/// branches, so that compilers can look at many bytes at once.
unsigned char isSpecial(char character)
{
    const auto byte = static_cast<unsigned char>(character);
    return static_cast<unsigned char>((byte < 0x20) | (byte == '"') | (byte == '\\'));
}

/// As many bytes as are looked at together; compilers make a few instructions of them.
constexpr std::size_t blockSize = 32;

bool isPlainBlock(const char* block)
{
    unsigned char special = 0;
    for (std::size_t i = 0; i < blockSize; ++i)
        special |= isSpecial(block[i]);
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
    while (size < text.size() && isSpecial(text[size]) == 0)
        ++size;
    return size;
}

/// What fits into one block with room for the quotation marks: all keys, and most values.
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
        special |= isSpecial(character);
        *to++ = character;
    }
    if (special != 0) return false;
    for (const char character : end)
        *to++ = character;
    output.append(piece.data(), static_cast<std::size_t>(to - piece.data()));
    return true;
}

void appendEscaped(std::string& output, char character)
{
    constexpr std::string_view digits = "0123456789abcdef";
    switch (character) {
    case '"':
        output += "\\\"";
        return;
    case '\\':
        output += "\\\\";
        return;
    case '\b':
        output += "\\b";
        return;
    case '\f':
        output += "\\f";
        return;
    case '\n':
        output += "\\n";
        return;
    case '\r':
        output += "\\r";
        return;
    case '\t':
        output += "\\t";
        return;
    default:
        const auto code = static_cast<unsigned char>(character);
        output += "\\u00";
        output += digits[code >> 4U];
        output += digits[code & 0xFU];
    }
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
        if (plain == text.size()) break;
        appendEscaped(m_output, text[plain]);
        text.remove_prefix(plain + 1);
    }
    m_output += end;
}

} // namespace quillmark
