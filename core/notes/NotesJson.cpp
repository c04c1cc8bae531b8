#include "notes/NotesJson.h"

#include "notes/Limits.h"
#include "text/Encoding.h"
#include "text/IsoDate.h"

#include <nlohmann/json.hpp>

#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

namespace quillmark::NotesJson {
namespace {

using nlohmann::json;

/// Puts together what the parser reads, and stops it at a limit. The library's own way to watch
/// over a parser looks through an object again for each member, and cannot stop it.
class BoundedValue {
public:
    // What the parser calls; it stops when one of them gives false.
    bool null() { return put(nullptr); }
    bool boolean(bool flag) { return put(flag); }
    bool number_integer(json::number_integer_t number) { return put(number); }
    bool number_unsigned(json::number_unsigned_t number) { return put(number); }
    bool number_float(json::number_float_t number, const std::string&) { return put(number); }
    bool string(std::string& text) { return put(std::move(text)); }
    bool binary(json::binary_t&) { return false; } // there is none in text
    bool start_object(std::size_t) { return begin(json::object()); }
    bool key(std::string& name)
    {
        m_member = &(*m_open.back())[std::move(name)];
        return count();
    }
    bool end_object() { return end(); }
    bool start_array(std::size_t) { return begin(json::array()); }
    bool end_array() { return end(); }
    bool parse_error(std::size_t, const std::string&, const json::exception&)
    {
        return fail("it is not JSON");
    }

    [[nodiscard]] json take() { return std::move(m_value); }
    [[nodiscard]] const std::optional<Damage>& damage() const { return m_damage; }

private:
    bool put(json value)
    {
        static_cast<void>(place(std::move(value)));
        return count();
    }
    bool begin(json empty)
    {
        if (m_open.size() >= Limits::notesFileDepth)
            return fail("its values are nested too deeply");
        m_open.push_back(place(std::move(empty)));
        return count();
    }
    bool end()
    {
        m_open.pop_back();
        return count();
    }
    /// Puts a value where it belongs; its address stays while it is the last one there.
    json* place(json value)
    {
        json* const parent = m_open.empty() ? nullptr : m_open.back();
        if (parent != nullptr && parent->is_array()) {
            parent->push_back(std::move(value));
            return &parent->back();
        }
        json* const where = parent == nullptr ? &m_value : m_member;
        *where = std::move(value);
        return where;
    }
    bool count() { return ++m_parts <= Limits::notesFileParts || fail("it holds too many values"); }
    bool fail(const char* reason)
    {
        m_damage = Damage{reason};
        return false;
    }

    json m_value;
    std::vector<json*> m_open; // the objects and arrays that have not ended, outermost first
    json* m_member{};          // what the last key stands for
    std::size_t m_parts{};
    std::optional<Damage> m_damage;
};

std::variant<json, Damage> parse(std::string_view text)
{
    BoundedValue value;
    json::sax_parse(text, &value);
    if (value.damage()) return *value.damage();
    return value.take();
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
