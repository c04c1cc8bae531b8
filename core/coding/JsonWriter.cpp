#include "coding/JsonWriter.h"

#include <array>
#include <cassert>
#include <charconv>
#include <cstddef>
#include <limits>

namespace quillmark {
namespace {

constexpr std::size_t indent = 2;

/// Whether a byte of a string can stand as it is; those of UTF-8 sequences can.
constexpr auto isPlain = [] {
    std::array<bool, 256> plain{};
    for (std::size_t byte = 0; byte < plain.size(); ++byte)
        plain[byte] = byte >= 0x20 && byte != '"' && byte != '\\';
    return plain;
}();

/// As many bytes as are looked at together; compilers make a few instructions of them.
constexpr std::size_t blockSize = 32;

bool isPlainBlock(const char* block)
{
    unsigned char special = 0;
    for (std::size_t i = 0; i < blockSize; ++i) {
        const auto byte = static_cast<unsigned char>(block[i]);
        special |= static_cast<unsigned char>((byte < 0x20) | (byte == '"') | (byte == '\\'));
    }
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
    while (size < text.size() && isPlain[static_cast<unsigned char>(text[size])])
        ++size;
    return size;
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
    if (!m_levels.back().empty) m_output += ',';
    m_levels.back().empty = false;
    newLine();
}

void JsonWriter::newLine()
{
    m_output += '\n';
    m_output.append(indent * m_levels.size(), ' ');
}

/// `end` begins with the closing quotation mark.
void JsonWriter::quote(std::string_view text, std::string_view end)
{
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
