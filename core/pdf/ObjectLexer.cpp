#include "pdf/ObjectLexer.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <utility>

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

/// Replaces the #-escapes of a name with at least one "#" in place. A "#" that starts none is
/// itself.
void unescape(std::string& name)
{
    std::size_t out = name.find('#');
    for (std::size_t in = out; in < name.size();) {
        const auto byte = escapedByte(name, in);
        name[out++] = byte.value_or(name[in]);
        in += byte ? 3U : 1U;
    }
    name.resize(out);
}

bool isKeyword(std::string_view word)
{
    if (word.front() < 'e') return false; // numbers, mostly
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

/// Whether a name that is written so may be `wanted`; what its escapes stand for is not looked at.
bool mayStandFor(std::string_view written, std::string_view wanted)
{
    return written == wanted || written.find('#') != std::string_view::npos;
}

/// The arrays and dictionaries around a place in an object.
class OpenContainers {
public:
    [[nodiscard]] bool none() const { return m_depth == 0; }

    /// False when they are too deep; such objects are taken apart to be sure.
    [[nodiscard]] bool begin(int opener)
    {
        if (m_depth == m_closers.size()) return false;
        m_closers[m_depth++] = opener == '[' ? int{']'} : int{'>'};
        return true;
    }

    /// False when it is not the innermost that this closes.
    [[nodiscard]] bool end(int closer)
    {
        if (none() || m_closers[m_depth - 1] != closer) return false;
        --m_depth;
        return true;
    }

private:
    std::array<int, 32> m_closers{};
    std::size_t m_depth{};
};

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

/// The regular characters from here on. Mostly they lie in one piece in front of us; else they are
/// put together.
std::string_view ObjectLexer::regularCharacters()
{
    const auto rest = [this] {
        std::size_t end = m_at;
        while (end < m_window.size() && isRegular(std::to_integer<int>(m_window[end])))
            ++end;
        const std::string_view characters(reinterpret_cast<const char*>(m_window.data()) + m_at,
                                          end - m_at);
        m_at = end;
        return characters;
    };
    const std::string_view whole = rest();
    if (m_at < m_window.size()) return whole;
    m_text = whole;
    while (isRegular(peek()))
        m_text += rest();
    return m_text;
}

Token ObjectLexer::name()
{
    const auto characters = regularCharacters();
    if (characters.find('#') == std::string_view::npos) return {Token::Kind::name, 0, characters};
    std::string unescaped(characters);
    unescape(unescaped);
    m_text = std::move(unescaped);
    return {Token::Kind::name, 0, m_text};
}

Token ObjectLexer::word()
{
    const auto characters = regularCharacters();
    if (characters == "R") return {Token::Kind::reference, 0, {}};
    if (characters == "null") return {Token::Kind::null, 0, {}};
    if (isKeyword(characters)) return {Token::Kind::keyword, 0, characters};
    const char* begin = characters.data() + (characters.front() == '+' ? 1 : 0);
    const char* end = characters.data() + characters.size();
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

/// Passes over the second of two angle brackets, if `first` is one and there are two.
bool ObjectLexer::skipSecondBracket(int first)
{
    if ((first != '<' && first != '>') || peek() != first) return false;
    skip();
    return true;
}

bool ObjectLexer::mayContain(std::string_view wanted)
{
    OpenContainers open;
    for (;;) {
        const int byte = skipSpace();
        if (byte < 0) return true;
        if (isRegular(byte)) {
            (void)regularCharacters();
            if (open.none()) return true;
            continue;
        }
        skip();
        const bool twice = skipSecondBracket(byte);
        if (byte == '/') {
            if (mayStandFor(regularCharacters(), wanted)) return true;
        } else if (byte == '[' || (byte == '<' && twice)) {
            if (!open.begin(byte)) return true;
        } else if (byte == ']' || (byte == '>' && twice)) {
            if (!open.end(byte)) return true;
            if (open.none()) return false;
        } else if (byte == '<') {
            skipHexString();
        } else if (byte == '(') {
            skipString();
        }
    }
}

bool mayMention(std::span<const std::byte> text, std::string_view name)
{
    const std::string_view all(reinterpret_cast<const char*>(text.data()), text.size());
    if (all.find('/' + std::string(name)) != std::string_view::npos) return true;
    // What is left are names with escapes. With every byte escaped, a name is three times as long.
    const std::size_t longest = 3 * name.size();
    for (std::size_t at = all.find('#'); at != std::string_view::npos; at = all.find('#', at + 1)) {
        const std::size_t begin = at - std::min(at, longest);
        const std::size_t slash = all.substr(begin, at - begin).rfind('/');
        if (slash == std::string_view::npos) continue;
        std::string found(all.substr(begin + slash + 1, longest));
        unescape(found);
        if (found.starts_with(name)) return true;
    }
    return false;
}

} // namespace quillmark::PDF
