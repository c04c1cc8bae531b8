#include "pdf/ObjectParser.h"

#include "pdf/Limits.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace quillmark::PDF {
namespace {

/// Passes over an object's header. False when it is not the one expected.
bool passHeader(ObjectLexer& lexer, const Reference& expected)
{
    const Token number = lexer.next();
    if (number.kind != Token::Kind::integer || number.number != expected.number) return false;
    const Token generation = lexer.next();
    if (generation.kind != Token::Kind::integer || generation.number != expected.generation)
        return false;
    const Token keyword = lexer.next();
    return keyword.kind == Token::Kind::keyword && keyword.text == "obj";
}

} // namespace

ParsedObjectRef ObjectParser::parse(ObjectLexer& lexer, Streams streams, std::uint64_t offset)
{
    m_object = std::make_shared<ParsedObject>();
    m_open.clear();
    m_pending.clear();
    m_endedBy.clear();
    while (accept(lexer.next())) {
        if (m_open.empty() && !m_pending.empty()) break;
        if (m_open.size() > Limits::objectDepth) return nullptr;
    }
    while (!m_open.empty())
        close();
    if (m_pending.empty() || lexer.exhausted()) return nullptr;
    m_object->m_root = m_pending.front();
    if (streams == Streams::possible && m_object->m_root.kind() == Value::Kind::dictionary) {
        if (m_endedBy.empty()) (void)accept(lexer.next());
        m_object->m_isStream = m_endedBy == "stream";
        m_object->m_streamKeywordEnd = offset + lexer.consumed();
    }
    m_object->m_textSize = lexer.consumed();
    return std::move(m_object);
}

/// Takes one token in. False when the object ends here, finished or not.
bool ObjectParser::accept(const Token& token)
{
    switch (token.kind) {
    case Token::Kind::keyword:
        m_endedBy = token.text;
        return false;
    case Token::Kind::end:
        return false;
    case Token::Kind::null:
        push(Value::Kind::null);
        return true;
    case Token::Kind::integer:
        push(Value::Kind::integer, token.number);
        return true;
    case Token::Kind::name:
        pushName(token.text);
        return true;
    case Token::Kind::other:
        push(Value::Kind::other);
        return true;
    case Token::Kind::reference:
        makeReference();
        return true;
    case Token::Kind::arrayOpen:
        m_open.push_back({Value::Kind::array, m_pending.size()});
        return true;
    case Token::Kind::dictionaryOpen:
        m_open.push_back({Value::Kind::dictionary, m_pending.size()});
        return true;
    case Token::Kind::arrayClose:
        if (!m_open.empty() && m_open.back().kind == Value::Kind::array) close();
        return true;
    case Token::Kind::dictionaryClose:
        if (!m_open.empty() && m_open.back().kind == Value::Kind::dictionary) close();
        return true;
    }
    return false;
}

void ObjectParser::push(Value::Kind kind, std::int64_t number, std::uint32_t count)
{
    auto& value = m_pending.emplace_back();
    value.m_kind = kind;
    value.m_number = number;
    value.m_count = count;
}

void ObjectParser::pushName(std::string_view name)
{
    auto& names = m_object->m_names;
    const auto at = static_cast<std::int64_t>(names.size());
    names += name;
    push(Value::Kind::name, at, static_cast<std::uint32_t>(name.size()));
}

/// Turns the last two integers and the "R" behind them into a reference.
void ObjectParser::makeReference()
{
    constexpr std::int64_t maximum = std::numeric_limits<std::int32_t>::max();
    const std::size_t begin = m_open.empty() ? 0 : m_open.back().begin;
    if (m_open.empty() || m_pending.size() - begin < 2) return;
    const auto generation = m_pending[m_pending.size() - 1].integer();
    const auto number = m_pending[m_pending.size() - 2].integer();
    if (!generation || !number) return;
    m_pending.resize(m_pending.size() - 2);
    const bool sound =
        *number > 0 && *number <= maximum && *generation >= 0 && *generation <= maximum;
    if (sound)
        push(Value::Kind::reference, *number, static_cast<std::uint32_t>(*generation));
    else
        push(Value::Kind::null);
}

void ObjectParser::close()
{
    const Open container = m_open.back();
    m_open.pop_back();
    if (container.kind == Value::Kind::dictionary) orderEntries(container.begin);
    auto& values = m_object->m_values;
    const auto first = static_cast<std::int64_t>(values.size());
    const std::size_t count = m_pending.size() - container.begin;
    values.insert(values.end(), m_pending.begin() + static_cast<std::ptrdiff_t>(container.begin),
                  m_pending.end());
    m_pending.resize(container.begin);
    const std::size_t shown = container.kind == Value::Kind::dictionary ? count / 2 : count;
    push(container.kind, first, static_cast<std::uint32_t>(shown));
}

/// Puts the entries of a dictionary, from `begin` on, in the order of their keys. A value where a
/// key is due is passed over.
void ObjectParser::orderEntries(std::size_t begin)
{
    auto& entries = m_entries;
    entries.clear();
    for (std::size_t i = begin; i + 1 < m_pending.size();) {
        if (m_pending[i].kind() != Value::Kind::name) {
            ++i;
            continue;
        }
        entries.push_back({m_pending[i], m_pending[i + 1]});
        i += 2;
    }
    const auto key = [this](const Entry& entry) { return *m_object->name(entry.key); };
    std::ranges::stable_sort(entries, {}, key);
    m_pending.resize(begin);
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (i + 1 < entries.size() && key(entries[i]) == key(entries[i + 1])) continue;
        if (entries[i].value.kind() == Value::Kind::null) continue;
        m_pending.push_back(entries[i].key);
        m_pending.push_back(entries[i].value);
    }
}

ParsedObjectRef ObjectParser::indirect(const ObjectText& text, const Reference& expected)
{
    ObjectLexer lexer(text.source, text.offset, text.limit);
    ParsedObjectRef object;
    const bool isThere = passHeader(lexer, expected);
    if (isThere) object = parse(lexer, Streams::possible, text.offset);
    m_wasTooLong = isThere && lexer.exhausted();
    m_textRead = lexer.consumed();
    return object;
}

ParsedObjectRef ObjectParser::direct(const ObjectText& text)
{
    ObjectLexer lexer(text.source, text.offset, text.limit);
    auto object = parse(lexer, Streams::impossible, text.offset);
    m_textRead = lexer.consumed();
    return object;
}

bool ObjectParser::mayHaveKey(const ObjectText& text, const Reference& expected,
                              std::string_view name)
{
    ObjectLexer lexer(text.source, text.offset, text.limit);
    const bool headerDiffers = expected.number != 0 && !passHeader(lexer, expected);
    const bool may = headerDiffers || lexer.mayContain(name);
    m_textRead = lexer.consumed();
    return may;
}

std::vector<ObjectPlace> parsePlaces(const ObjectText& text, std::uint64_t count)
{
    std::vector<ObjectPlace> places;
    ObjectLexer lexer(text.source, text.offset, text.limit);
    while (places.size() < count) {
        const Token number = lexer.next();
        const Token offset = lexer.next();
        if (number.kind != Token::Kind::integer || offset.kind != Token::Kind::integer) break;
        if (offset.number < 0 || number.number < 0 ||
            number.number > std::numeric_limits<std::int32_t>::max())
            continue;
        places.push_back(
            {static_cast<std::uint32_t>(number.number), static_cast<std::uint64_t>(offset.number)});
    }
    return places;
}

} // namespace quillmark::PDF
