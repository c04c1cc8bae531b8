// Writing JSON piece by piece, so that a list of thousands of fonts never stands in memory twice.
// For the records' own form see RecordCoding.h.
#pragma once

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace quillmark {

/// The name of a member: at most 64 characters of ASCII of which none needs to be escaped. That is
/// seen to while the program is compiled, for names are written more often than anything else.
class JsonKey {
public:
    // Converts as a string literal converts to what stands for it.
    consteval JsonKey(const char* text) : m_text(text) // NOLINT(google-explicit-constructor)
    {
        constexpr std::size_t longest = 64;
        if (m_text.size() > longest) throw "a long key";
        for (const char character : m_text)
            if (character < ' ' || character > '~' || character == '"' || character == '\\')
                throw "a key that needs escaping";
    }
    [[nodiscard]] std::string_view text() const { return m_text; }

private:
    std::string_view m_text;
};

/// Appends JSON (RFC 8259, UTF-8), usually indented by two spaces, to a string that the caller owns
/// and may drain between calls. Strings must be valid UTF-8; characters that could control a
/// terminal on which the JSON is shown are escaped, all others stand as they are. Keys come out in
/// the order of the calls; a caller that nests wrongly is caught by an assertion. What is written
/// reaches the string in larger pieces, the last of them when the outermost value ends.
class JsonWriter {
public:
    /// How values are set: each member and item on a line of its own, or all on one line, in which
    /// there is no line end then.
    enum class Layout : std::uint8_t { indented, oneLine };

    explicit JsonWriter(std::string& output, Layout layout = Layout::indented)
        : JsonWriter(output, 0, layout)
    {
    }

    /// A writer of the items of an array that lies `depth` levels deep, itself counted. They can be
    /// written apart, by several threads, before a writer that is in such an array is given them.
    [[nodiscard]] static JsonWriter ofItems(std::string& output, std::size_t depth)
    {
        return JsonWriter(output, depth, Layout::indented);
    }
    /// Puts in what such a writer has written.
    void items(std::string_view written);
    /// How many objects and arrays have begun and not ended.
    [[nodiscard]] std::size_t depth() const { return m_levels.size(); }

    void beginObject() { begin(Scope::object, '{'); }
    void endObject() { end(Scope::object, '}'); }
    void beginArray() { begin(Scope::array, '['); }
    void endArray() { end(Scope::array, ']'); }
    /// The key of the value that is written next.
    void key(JsonKey name);
    void value(std::string_view text);
    void value(std::int64_t number);
    // A template, for otherwise a string literal would rather become a bool than a string_view.
    void value(std::same_as<bool> auto flag) { literal(flag ? "true" : "false"); }

    /// A key with a text, a number or a flag.
    void member(JsonKey name, const auto& content)
    {
        key(name);
        value(content);
    }

private:
    enum class Scope : std::uint8_t { object, array };
    struct Level {
        Scope scope{};
        bool empty{true};
    };

    JsonWriter(std::string& output, std::size_t depth, Layout layout);

    void begin(Scope scope, char bracket);
    void end(Scope scope, char bracket);
    void literal(std::string_view text);
    void startValue();
    void startItem();
    void newLine();
    void endValue();
    void quote(std::string_view text);
    void put(std::string_view text);
    [[nodiscard]] char* room(std::size_t size);
    void gathered(const char* end);
    void flush();

    std::string& m_output;
    std::vector<Level> m_levels;
    std::size_t m_outermost{}; // levels that are not this writer's own
    Layout m_layout;
    bool m_afterKey{};
    // Most of what is written are pieces of a few characters: cheaper to gather than to append.
    std::array<char, 4096> m_gathered; // NOLINT(*-member-init): no more than is filled is read
    std::size_t m_gatheredSize{};
};

} // namespace quillmark
