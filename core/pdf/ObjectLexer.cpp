#include "pdf/ObjectLexer.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>

namespace quillmark::PDF {
namespace {

enum class Class : std::uint8_t { regular, space, delimiter };

constexpr std::array<Class, 256> classes = [] {
    std::array<Class, 256> table{};
    for (const char space : {'\0', '\t', '\n', '\f', '\r', ' '})
        table[static_cast<unsigned char>(space)] = Class::space;
    for (const char delimiter : {'(', ')', '<', '>', '[', ']', '{', '}', '/', '%'})
        table[static_cast<unsigned char>(delimiter)] = Class::delimiter;
    return table;
}();

bool isRegular(int byte)
{
    return byte >= 0 && classes[static_cast<std::size_t>(byte)] == Class::regular;
}

/// The value of a hexadecimal digit; -1 for anything else.
int hexDigit(char character)
{
    if (character >= '0' && character <= '9') return character - '0';
    if (character >= 'A' && character <= 'F') return character - 'A' + 10;
    if (character >= 'a' && character <= 'f') return character - 'a' + 10;
    return -1;
}

/// The byte that the escape at `at` stands for; absent when there is none. A NUL, which names
/// cannot have, is none.
std::optional<char> escapedByte(std::string_view name, std::size_t at)
{
    if (name[at] != '#' || name.size() - at < 3) return std::nullopt;
    const int high = hexDigit(name[at + 1]);
    const int low = hexDigit(name[at + 2]);
    if (high < 0 || low < 0 || high + low == 0) return std::nullopt;
    return static_cast<char>(high * 16 + low);
}

/// Replaces the #-escapes of a name in place. A "#" that starts none is itself.
void unescape(std::string& name)
{
    std::size_t out = name.find('#');
    if (out == std::string::npos) return;
    for (std::size_t in = out; in < name.size();) {
        const auto byte = escapedByte(name, in);
        name[out++] = byte.value_or(name[in]);
        in += byte ? 3U : 1U;
    }
    name.resize(out);
}

bool isKeyword(std::string_view word)
{
    static constexpr auto keywords = std::to_array<std::string_view>({
        "endobj",
        "endstream",
        "obj",
        "startxref",
        "stream",
        "trailer",
        "xref",
    });
    return std::ranges::find(keywords, word) != keywords.end();
}

} // namespace

ObjectLexer::ObjectLexer(ByteSource& source, std::uint64_t offset, std::size_t limit)
    : m_source(source), m_offset(offset), m_limit(limit)
{
}

bool ObjectLexer::refill()
{
    m_offset += m_window.size();
    m_consumed += m_window.size();
    m_at = 0;
    m_window = m_source.at(m_offset);
    if (m_window.size() > m_limit - m_consumed) {
        m_window = m_window.first(m_limit - m_consumed);
        m_exhausted = m_window.empty();
    }
    return !m_window.empty();
}

int ObjectLexer::peek()
{
    if (m_at == m_window.size() && !refill()) return noByte;
    return std::to_integer<int>(m_window[m_at]);
}

void ObjectLexer::skipComment()
{
    for (int byte = peek(); byte >= 0 && byte != '\r' && byte != '\n'; byte = peek())
        skip();
}

/// Passes over white space and comments; the byte behind them.
int ObjectLexer::skipSpace()
{
    for (;;) {
        const int byte = peek();
        if (byte == '%')
            skipComment();
        else if (byte >= 0 && classes[static_cast<std::size_t>(byte)] == Class::space)
            skip();
        else
            return byte;
    }
}

/// Passes over the rest of a string in parentheses.
void ObjectLexer::skipString()
{
    std::size_t depth = 1;
    for (int byte = peek(); byte >= 0; byte = peek()) {
        skip();
        if (byte == '\\' && peek() >= 0) skip();
        if (byte == '(') ++depth;
        if (byte == ')' && --depth == 0) return;
    }
}

void ObjectLexer::skipHexString()
{
    for (int byte = peek(); byte >= 0; byte = peek()) {
        skip();
        if (byte == '>') return;
    }
}

Token ObjectLexer::name()
{
    m_text.clear();
    for (int byte = peek(); isRegular(byte); byte = peek()) {
        m_text += static_cast<char>(byte);
        skip();
    }
    unescape(m_text);
    return {Token::Kind::name, 0, m_text};
}

Token ObjectLexer::word()
{
    // Words with a meaning are short; of longer ones only the end matters.
    constexpr std::size_t kept = 32;
    m_text.clear();
    bool whole = true;
    for (int byte = peek(); isRegular(byte); byte = peek()) {
        if (m_text.size() < kept)
            m_text += static_cast<char>(byte);
        else
            whole = false;
        skip();
    }
    if (!whole) return {Token::Kind::other, 0, {}};
    if (m_text == "R") return {Token::Kind::reference, 0, {}};
    if (m_text == "null") return {Token::Kind::null, 0, {}};
    if (isKeyword(m_text)) return {Token::Kind::keyword, 0, m_text};
    const char* begin = m_text.data() + (m_text.front() == '+' ? 1 : 0);
    const char* end = m_text.data() + m_text.size();
    std::int64_t number = 0;
    const auto [stop, error] = std::from_chars(begin, end, number);
    if (error == std::errc{} && stop == end) return {Token::Kind::integer, number, {}};
    return {Token::Kind::other, 0, {}};
}

Token ObjectLexer::next()
{
    const int byte = skipSpace();
    if (byte < 0) return {Token::Kind::end, 0, {}};
    if (isRegular(byte)) return word();
    skip();
    switch (byte) {
    case '/':
        return name();
    case '[':
        return {Token::Kind::arrayOpen, 0, {}};
    case ']':
        return {Token::Kind::arrayClose, 0, {}};
    case '<':
        if (peek() == '<') {
            skip();
            return {Token::Kind::dictionaryOpen, 0, {}};
        }
        skipHexString();
        return {Token::Kind::other, 0, {}};
    case '>':
        if (peek() == '>') {
            skip();
            return {Token::Kind::dictionaryClose, 0, {}};
        }
        return {Token::Kind::other, 0, {}};
    case '(':
        skipString();
        return {Token::Kind::other, 0, {}};
    default: // a stray parenthesis or brace
        return {Token::Kind::other, 0, {}};
    }
}

} // namespace quillmark::PDF
