#include "coding/JsonWriter.h"

#include "text/Printable.h"
#include "text/Utf8.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cassert>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>

namespace quillmark {
namespace {

constexpr std::size_t indent = 2;
/// Deeper levels are not indented further.
constexpr std::size_t deepest = 64;
/// Texts that are gathered with others, in bytes; longer ones are appended at once.
constexpr std::size_t usualText = 1000;

char* copied(std::string_view text, char* to)
{
    std::memcpy(to, text.data(), text.size());
    return to + text.size();
}

/// Whether a byte, or which bytes of several, begin a character that has to be looked at: a
/// quotation mark, a backslash, what may be a controlling character, and all that is not ASCII, of
/// which a few are controlling.
template <typename Bytes>
auto special(Bytes bytes)
{
    // As a signed number, what is not ASCII is less than a space as well.
    return (bytes < ' ') | (bytes == '\x7F') | (bytes == '"') | (bytes == '\\');
}

/// Bytes that are looked at together, by the processor's instructions for that.
using Block [[gnu::vector_size(16)]] = signed char;

Block blockAt(const char* bytes)
{
    Block block;
    std::memcpy(&block, bytes, sizeof block);
    return block;
}

bool isPlain(Block specialBytes)
{
    const auto halves = std::bit_cast<std::array<std::uint64_t, 2>>(specialBytes);
    return (halves[0] | halves[1]) == 0;
}

/// Whether no byte is special. Without a way out in between: nearly always all have to be seen.
bool isPlain(std::string_view text)
{
    const char* const end = text.data() + text.size();
    if (text.size() < sizeof(Block)) {
        Block padded = Block{} + ' ';
        std::memcpy(&padded, text.data(), text.size());
        return isPlain(special(padded));
    }
    // The last block overlaps the one before.
    Block found = special(blockAt(end - sizeof(Block)));
    for (const char* at = text.data(); at < end - sizeof(Block); at += sizeof(Block))
        found |= special(blockAt(at));
    return isPlain(found);
}

/// How many bytes come before the first one that is special.
std::size_t plainSize(std::string_view text)
{
    std::size_t size = 0;
    while (text.size() - size >= sizeof(Block) && isPlain(special(blockAt(text.data() + size))))
        size += sizeof(Block);
    while (size < text.size() && !special(static_cast<signed char>(text[size])))
        ++size;
    return size;
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
std::string escaped(char32_t character)
{
    if (const char letter = escapeLetter(character); letter != 0) return {'\\', letter};
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text = "\\u";
    for (const unsigned shift : {12U, 8U, 4U, 0U})
        text += digits[character >> shift & 0xFU];
    return text;
}

} // namespace

// NOLINTNEXTLINE(*-member-init): no more of what is gathered than was filled is read
JsonWriter::JsonWriter(std::string& output, std::size_t depth, Layout layout)
    : m_output(output), m_outermost(depth), m_layout(layout)
{
    constexpr std::size_t usualLevels = 4; // below the outermost
    m_levels.reserve(depth + usualLevels);
    m_levels.assign(depth, Level{.scope = Scope::array, .empty = false});
}

void JsonWriter::items(std::string_view written)
{
    assert(!m_afterKey && !m_levels.empty() && m_levels.back().scope == Scope::array);
    if (written.empty()) return;
    if (m_levels.back().empty) written.remove_prefix(1); // the comma
    m_levels.back().empty = false;
    put(written);
}

void JsonWriter::key(JsonKey name)
{
    assert(!m_afterKey && !m_levels.empty() && m_levels.back().scope == Scope::object);
    startItem();
    char* to = room(name.text().size() + 4);
    *to++ = '"';
    to = copied(name.text(), to);
    *to++ = '"';
    *to++ = ':';
    *to++ = ' ';
    gathered(to);
    m_afterKey = true;
}

void JsonWriter::value(std::string_view text)
{
    startValue();
    if (text.size() <= usualText && isPlain(text)) {
        char* to = room(text.size() + 2);
        *to++ = '"';
        to = copied(text, to);
        *to++ = '"';
        gathered(to);
    } else {
        quote(text);
    }
    endValue();
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
    put(std::string_view(&bracket, 1));
    m_levels.push_back({.scope = scope});
}

void JsonWriter::end([[maybe_unused]] Scope scope, char bracket)
{
    assert(!m_afterKey && m_levels.size() > m_outermost && m_levels.back().scope == scope);
    const bool empty = m_levels.back().empty;
    m_levels.pop_back();
    if (!empty) newLine();
    put(std::string_view(&bracket, 1));
    endValue();
}

void JsonWriter::literal(std::string_view text)
{
    startValue();
    put(text);
    endValue();
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

void JsonWriter::endValue()
{
    if (m_levels.size() == m_outermost) flush();
}

void JsonWriter::startItem()
{
    char* to = room(1);
    *to++ = ',';
    if (!m_levels.back().empty) {
        gathered(to);
        if (m_layout == Layout::oneLine) put(" ");
    }
    m_levels.back().empty = false;
    newLine();
}

void JsonWriter::newLine()
{
    if (m_layout == Layout::oneLine) return;
    // A line end and the usual indentation, which is written in one piece, whatever is needed of
    // it.
    constexpr auto lineStart = [] {
        std::array<char, 32> characters{};
        characters.fill(' ');
        characters[0] = '\n';
        return characters;
    }();
    char* const line = room(std::max(lineStart.size(), 1 + deepest * indent));
    std::memcpy(line, lineStart.data(), lineStart.size());
    const std::size_t size = 1 + std::min(m_levels.size(), deepest) * indent;
    if (size > lineStart.size()) std::fill(line + lineStart.size(), line + size, ' ');
    gathered(line + size);
}

void JsonWriter::quote(std::string_view text)
{
    put("\"");
    std::size_t plain = plainSize(text);
    while (plain < text.size()) {
        const Utf8::Character next = Utf8::first(text.substr(plain));
        if (escapeLetter(next.codePoint) != 0 || isControlling(next.codePoint)) {
            put(text.substr(0, plain));
            put(escaped(next.codePoint));
            text.remove_prefix(plain + next.length);
            plain = 0;
        } else {
            plain += next.length;
        }
        plain += plainSize(text.substr(plain));
    }
    put(text);
    put("\"");
}

void JsonWriter::put(std::string_view text)
{
    if (text.size() > usualText) {
        flush();
        m_output += text;
    } else {
        gathered(copied(text, room(text.size())));
    }
}

char* JsonWriter::room(std::size_t size)
{
    assert(size <= m_gathered.size());
    if (size > m_gathered.size() - m_gatheredSize) flush();
    return m_gathered.data() + m_gatheredSize;
}

void JsonWriter::gathered(const char* end)
{
    m_gatheredSize = static_cast<std::size_t>(end - m_gathered.data());
}

void JsonWriter::flush()
{
    m_output.append(m_gathered.data(), m_gatheredSize);
    m_gatheredSize = 0;
}

} // namespace quillmark
