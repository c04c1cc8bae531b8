#include "notes/NotesJson.h"

#include "notes/Limits.h"
#include "text/Encoding.h"
#include "text/IsoDate.h"

#include <nlohmann/json.hpp>

#include <cstddef>
#include <optional>
#include <utility>

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

std::variant<json, Damage> parse(std::string_view text)
{
    if (auto damage = excess(text)) return *std::move(damage);
    // The parser takes a NUL for the end of the text and passes over all that follows.
    const bool hasNul = text.find('\0') != std::string_view::npos;
    constexpr bool throws = false;
    json value = hasNul ? json(json::value_t::discarded) : json::parse(text, nullptr, throws);
    if (value.is_discarded()) return Damage{"it is not JSON"};
    return value;
}

std::string textOf(const json& value)
{
    return value.dump(-1, ' ', false, json::error_handler_t::replace);
}

void encodeUnknownKeys(json& object, const UnknownKeys& unknownKeys)
{
    for (const auto& [key, text] : unknownKeys) {
        auto value = parse(text);
        auto* const parsed = std::get_if<json>(&value);
        if (parsed != nullptr) object.emplace(key, std::move(*parsed));
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

/// Takes a note apart. Each member that is asked for is gone from it afterwards.
class NoteReader {
public:
    NoteReader(json& object, std::string_view key) : m_object(object), m_key(key) {}

    void required(const char* name, std::string& field)
    {
        std::string* const text = m_object[name].get_ptr<std::string*>();
        if (text == nullptr) return fail(name);
        field = std::move(*text);
        m_object.erase(name);
    }
    void required(const char* name, HeldLicense& field)
    {
        std::string raw;
        required(name, raw);
        const auto license = fromRawValue<HeldLicense>(raw);
        if (!license) return fail(name);
        field = *license;
    }
    void required(const char* name, std::chrono::sys_seconds& field)
    {
        std::string text;
        required(name, text);
        const auto time = parseIsoDate(text);
        if (!time) return fail(name);
        field = *time;
    }
    /// A null means absent as well.
    void optional(const char* name, std::optional<std::string>& field)
    {
        const auto found = m_object.find(name);
        if (found == m_object.end()) return;
        if (!found->is_null()) return required(name, field.emplace());
        m_object.erase(found);
    }
    [[nodiscard]] const std::optional<Damage>& damage() const { return m_damage; }

private:
    void fail(const char* name)
    {
        constexpr std::size_t longest = 60; // a longer key would drown the sentence
        if (m_damage) return;
        const std::string whose =
            m_key.size() > longest ? "a note" : "the note on \"" + std::string(m_key) + "\"";
        m_damage = Damage{whose + " has no valid \"" + name + "\""};
    }

    json& m_object;
    std::string_view m_key;
    std::optional<Damage> m_damage;
};

UnknownKeys unknownKeys(const json& object)
{
    UnknownKeys keys;
    for (const auto& [key, value] : object.items())
        keys.emplace(key, textOf(value));
    return keys;
}

std::variant<LicenseNote, Damage> decodeNote(json& object, std::string_view key)
{
    if (!object.is_object()) return Damage{"\"notes\" holds something that is not a note"};
    LicenseNote note;
    NoteReader reader(object, key);
    reader.required("boughtFrom", note.boughtFrom);
    reader.required("license", note.license);
    reader.required("url", note.url);
    reader.optional("attachment", note.attachment);
    reader.optional("attachmentName", note.attachmentName);
    reader.required("text", note.text);
    reader.required("updated", note.updated);
    if (reader.damage()) return *reader.damage();
    note.unknownKeys = unknownKeys(object);
    return note;
}

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

std::variant<NotesBook, Damage> decode(std::string_view text)
{
    auto parsed = parse(repairedUtf8(text));
    if (auto* const damage = std::get_if<Damage>(&parsed)) return std::move(*damage);
    auto& root = std::get<json>(parsed);
    const auto notes = root.find("notes");
    if (notes == root.end() || !notes->is_object()) return Damage{"it has no \"notes\""};

    NotesBook book;
    for (auto& [key, value] : notes->items()) {
        auto note = decodeNote(value, key);
        if (auto* const damage = std::get_if<Damage>(&note)) return std::move(*damage);
        book.notes.emplace_hint(book.notes.end(), key, std::move(std::get<LicenseNote>(note)));
    }
    root.erase(notes);
    book.unknownKeys = unknownKeys(root);
    return book;
}

} // namespace quillmark::NotesJson
