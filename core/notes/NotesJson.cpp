#include "notes/NotesJson.h"

#include "notes/Limits.h"
#include "text/Encoding.h"
#include "text/IsoDate.h"
#include "text/Utf8.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <utility>
#include <vector>

namespace quillmark::NotesJson {
namespace {

using nlohmann::json;

/// What in `text` could make the parser take much more memory or time than its size allows for,
/// seen without parsing it. Text that is no JSON is left for the parser to refuse: as far as that
/// gets, it sees no more than is counted here.
std::optional<Damage> excess(std::string_view text)
{
    std::size_t depth = 0;
    std::size_t marks = 0;
    bool inString = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char character = text[i];
        if (character == '"') inString = !inString;
        if (inString) {
            if (character == '\\') ++i; // what is escaped ends no string
            continue;
        }
        const bool opens = character == '[' || character == '{';
        const bool closes = character == ']' || character == '}';
        if (opens && ++depth > Limits::notesFileDepth)
            return Damage{"its values are nested too deeply"};
        if (closes && depth > 0) --depth;
        if (!opens && !closes && character != ',' && character != ':') continue;
        if (++marks > Limits::notesFileMarks) return Damage{"it holds too many values"};
    }
    return std::nullopt;
}

std::optional<json> parsed(const std::string& text)
{
    constexpr bool throws = false;
    json value = json::parse(text, nullptr, throws);
    return value.is_discarded() ? std::nullopt : std::optional(std::move(value));
}

std::string textOf(const json& value)
{
    return value.dump(-1, ' ', false, json::error_handler_t::replace);
}

void encodeUnknownKeys(json& object, const UnknownKeys& unknownKeys)
{
    for (const auto& [key, text] : unknownKeys) {
        if (auto value = parsed(text)) object.emplace(key, *std::move(value));
    }
}

json encode(const LicenseNote& note)
{
    json object{
        {"boughtFrom", note.boughtFrom},
        {"license", rawValue(note.license)},
        {"url", note.url},
        {"text", note.text},
        {"updated", isoDate(note.updated)},
    };
    if (note.attachment) object["attachment"] = *note.attachment;
    if (note.attachmentName) object["attachmentName"] = *note.attachmentName;
    encodeUnknownKeys(object, note.unknownKeys);
    return object;
}

/// Puts a JSON value together from its parts as they are met.
// NOLINTNEXTLINE(bugprone-exception-escape): of values, whose moves clang-tidy takes to throw
class ValueBuilder {
public:
    /// Takes a whole value, or the beginning of an object or an array.
    void add(json value)
    {
        const bool isOpen = value.is_structured();
        json& place = m_open.empty() ? (m_root = std::move(value)) : put(std::move(value));
        if (isOpen) m_open.push_back(&place);
    }
    void key(std::string& name) { m_key = std::move(name); }
    void close() { m_open.pop_back(); }
    /// Whether nothing of it is missing any more.
    [[nodiscard]] bool isComplete() const { return m_open.empty(); }
    [[nodiscard]] json take() { return std::exchange(m_root, {}); }
    /// Whether a key was there twice in an object.
    [[nodiscard]] bool hasLost() const { return m_hasLost; }

private:
    json& put(json value)
    {
        json& parent = *m_open.back();
        if (parent.is_array()) return parent.emplace_back(std::move(value));
        if (parent.contains(m_key)) m_hasLost = true;
        return parent[m_key] = std::move(value);
    }

    json m_root;
    std::vector<json*> m_open; // each inside the one before
    std::string m_key;         // of the value to come
    bool m_hasLost{};
};

/// The members of a note, in the order in which they are asked for.
enum class Member { boughtFrom, license, url, attachment, attachmentName, text, updated };

constexpr auto memberNames = std::to_array<std::string_view>(
    {"boughtFrom", "license", "url", "attachment", "attachmentName", "text", "updated"});
static_assert(memberNames.size() == static_cast<std::size_t>(Member::updated) + 1);

std::optional<Member> memberCalled(std::string_view name)
{
    const auto found = std::ranges::find(memberNames, name);
    if (found == memberNames.end()) return std::nullopt;
    return static_cast<Member>(found - memberNames.begin());
}

/// One note, member by member.
class NoteReader {
public:
    void begin() { *this = NoteReader(); }
    void setText(Member member, std::string& text)
    {
        bool isValid = true;
        switch (member) {
        case Member::boughtFrom:
            note.boughtFrom = std::move(text);
            break;
        case Member::url:
            note.url = std::move(text);
            break;
        case Member::text:
            note.text = std::move(text);
            break;
        case Member::attachment:
            note.attachment = std::move(text);
            break;
        case Member::attachmentName:
            note.attachmentName = std::move(text);
            break;
        case Member::license: {
            const auto license = fromRawValue<HeldLicense>(text);
            isValid = license.has_value();
            note.license = license.value_or(HeldLicense::notSet);
            break;
        }
        case Member::updated: {
            const auto time = parseIsoDate(text);
            isValid = time.has_value();
            note.updated = time.value_or(std::chrono::sys_seconds());
            break;
        }
        }
        set(member, isValid ? State::valid : State::invalid);
    }
    /// Absent, where that may be.
    void setNull(Member member)
    {
        if (member == Member::attachment) note.attachment.reset();
        if (member == Member::attachmentName) note.attachmentName.reset();
        set(member, isOptional(member) ? State::valid : State::invalid);
    }
    void setInvalid(Member member) { set(member, State::invalid); }
    void setUnknown(const std::string& key, const json& value)
    {
        const bool isNew = note.unknownKeys.insert_or_assign(key, textOf(value)).second;
        hasLost = hasLost || !isNew;
    }
    /// The first member that is missing or of no use.
    [[nodiscard]] std::optional<Member> invalid() const
    {
        for (std::size_t i = 0; i < m_states.size(); ++i) {
            const auto member = static_cast<Member>(i);
            const bool isMissing = m_states[i] == State::missing && !isOptional(member);
            if (isMissing || m_states[i] == State::invalid) return member;
        }
        return std::nullopt;
    }

    LicenseNote note;
    bool hasLost{}; // whether a key was there twice

private:
    enum class State { missing, valid, invalid };

    static bool isOptional(Member member)
    {
        return member == Member::attachment || member == Member::attachmentName;
    }
    void set(Member member, State state)
    {
        State& former = m_states[static_cast<std::size_t>(member)];
        hasLost = hasLost || former != State::missing;
        former = state;
    }

    std::array<State, memberNames.size()> m_states{};
};

Damage invalidMember(std::string_view key, Member member)
{
    constexpr std::size_t longest = 60; // a longer key would drown the sentence
    const std::string whose =
        key.size() > longest ? "a note" : "the note on \"" + std::string(key) + "\"";
    const std::string name(memberNames[static_cast<std::size_t>(member)]);
    return {whose + " has no valid \"" + name + "\""};
}

/// Whether a double-precision number says what the text did that it was read from.
bool isExact(double number, const std::string& text)
{
    constexpr std::size_t surelyKept = 15; // std::numeric_limits<double>::digits10
    std::size_t digits = 0;
    // Besides digits these are signs and the point, which are less than any of them.
    for (const char character : text.substr(0, text.find_first_of("eE")))
        if (character > '0' || (character == '0' && digits > 0)) ++digits;
    // The nearer one that is not normal is to zero, the fewer digits it has.
    const bool isSure = digits == 0 || (digits <= surelyKept && std::isnormal(number));
    return isSure || textOf(json(number)) == text;
}

/// Takes the parts of a file of notes as the parser meets them, so that there is never a second
/// copy of it all in memory.
class BookReader {
public:
    // What nlohmann::json_sax asks for. The parser goes on while it is told that all is well.
    bool null() { return value(json()); }
    bool boolean(bool truth) { return value(json(truth)); }
    bool number_integer(std::int64_t number) { return value(json(number)); }
    bool number_unsigned(std::uint64_t number) { return value(json(number)); }
    bool number_float(double number, const std::string& text)
    {
        if (!isExact(number, text)) m_decoded.isWhole = false;
        return value(json(number));
    }
    bool string(std::string& text)
    {
        if (m_place == Place::note && m_member) {
            m_note.setText(*m_member, text);
            return true;
        }
        return value(json(std::move(text)));
    }
    static bool binary(json::binary_t& /*bytes*/) { return false; } // not in a text
    bool start_object(std::size_t /*count*/)
    {
        if (m_place == Place::outside) {
            m_place = Place::root;
        } else if (m_place == Place::root && m_isNotes) {
            m_place = Place::notes;
            m_hasNotes = true;
        } else if (m_place == Place::notes) {
            m_place = Place::note;
            m_note.begin();
        } else {
            return structure(json::object());
        }
        return true;
    }
    bool key(std::string& name)
    {
        switch (m_place) {
        case Place::root:
            m_isNotes = name == "notes";
            if (m_isNotes) {
                if (m_sawNotes) m_decoded.isWhole = false;
                m_sawNotes = true;
                m_hasNotes = false;
                m_decoded.book.notes.clear();
                m_damaged.clear();
            }
            m_key = std::move(name);
            break;
        case Place::notes:
            m_noteKey = std::move(name);
            break;
        case Place::note:
            m_member = memberCalled(name);
            m_key = std::move(name);
            break;
        case Place::outside:
            break;
        case Place::unknown:
            m_unknown.key(name);
            break;
        }
        return true;
    }
    bool end_object()
    {
        switch (m_place) {
        case Place::unknown:
            return closeStructure();
        case Place::note:
            endNote();
            m_place = Place::notes;
            break;
        case Place::notes:
            m_place = Place::root;
            break;
        case Place::root:
        case Place::outside:
            m_place = Place::outside;
            break;
        }
        return true;
    }
    bool start_array(std::size_t /*count*/) { return structure(json::array()); }
    bool end_array() { return closeStructure(); }
    static bool parse_error(std::size_t /*at*/, const std::string& /*token*/,
                            const json::exception& /*error*/)
    {
        return false;
    }

    std::variant<Decoded, Damage> take(bool isTextWhole)
    {
        if (!m_hasNotes) return Damage{"it has no \"notes\""};
        if (!m_damaged.empty()) return std::move(m_damaged.begin()->second);
        if (!isTextWhole || m_unknown.hasLost()) m_decoded.isWhole = false;
        return std::move(m_decoded);
    }

private:
    enum class Place { outside, root, notes, note, unknown };

    /// A value that is neither object nor array.
    bool value(json value)
    {
        if (m_place == Place::unknown) {
            m_unknown.add(std::move(value));
            return true;
        }
        return taken(value);
    }
    bool structure(json empty)
    {
        if (m_place != Place::unknown) m_outer = std::exchange(m_place, Place::unknown);
        m_unknown.add(std::move(empty));
        return true;
    }
    bool closeStructure()
    {
        m_unknown.close();
        if (!m_unknown.isComplete()) return true;
        m_place = m_outer;
        return taken(m_unknown.take());
    }
    /// Puts a whole value where it belongs.
    bool taken(const json& value)
    {
        switch (m_place) {
        case Place::root:
            if (m_isNotes) break;
            if (!m_decoded.book.unknownKeys.insert_or_assign(m_key, textOf(value)).second)
                m_decoded.isWhole = false;
            break;
        case Place::notes:
            setDamaged({"\"notes\" holds something that is not a note"});
            break;
        case Place::note:
            if (!m_member)
                m_note.setUnknown(m_key, value);
            else if (value.is_null())
                m_note.setNull(*m_member);
            else
                m_note.setInvalid(*m_member);
            break;
        case Place::outside:
        case Place::unknown:
            break;
        }
        return true;
    }
    void endNote()
    {
        if (m_note.hasLost) m_decoded.isWhole = false;
        if (const auto member = m_note.invalid())
            return setDamaged(invalidMember(m_noteKey, *member));
        auto& notes = m_decoded.book.notes;
        const auto count = notes.size();
        // Our own files have them in order.
        notes.insert_or_assign(notes.end(), m_noteKey, std::move(m_note.note));
        if (notes.size() == count || m_damaged.erase(m_noteKey) > 0) m_decoded.isWhole = false;
    }
    void setDamaged(Damage damage)
    {
        m_decoded.book.notes.erase(m_noteKey);
        m_damaged.insert_or_assign(m_noteKey, std::move(damage));
    }

    Decoded m_decoded;
    std::map<std::string, Damage> m_damaged; // by the keys of the notes
    Place m_place{Place::outside};
    Place m_outer{}; // where the unknown value stands
    std::string m_key;
    std::string m_noteKey;
    std::optional<Member> m_member; // of the note, for the value to come
    bool m_isNotes{};               // the same for the root's
    bool m_sawNotes{};
    bool m_hasNotes{};
    NoteReader m_note;
    ValueBuilder m_unknown;
};

} // namespace

std::string encode(const NotesBook& book)
{
    json notes = json::object();
    for (const auto& [key, note] : book.notes)
        notes.emplace(key, encode(note));
    json root{{"notes", std::move(notes)}};
    encodeUnknownKeys(root, book.unknownKeys);
    return root.dump(2, ' ', false, json::error_handler_t::replace) + '\n';
}

std::variant<Decoded, Damage> decode(std::string_view text)
{
    std::string repaired;
    bool isWhole = true;
    if (!Utf8::isAscii(text)) {
        repaired = repairedUtf8(text);
        isWhole = repaired == text;
        text = repaired;
    }
    if (auto damage = excess(text)) return *std::move(damage);
    BookReader reader;
    // The parser takes a NUL for the end of the text and passes over all that follows.
    if (text.find('\0') != std::string_view::npos || !json::sax_parse(text, &reader))
        return Damage{"it is not JSON"};
    return reader.take(isWhole);
}

} // namespace quillmark::NotesJson
