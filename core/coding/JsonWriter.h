// Writing JSON piece by piece, so that a list of thousands of fonts never stands in memory twice.
// For the records' own form see RecordCoding.h.
#pragma once

#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace quillmark {

/// Appends JSON (RFC 8259, UTF-8), indented by two spaces, to a string that the caller owns and may
/// drain between calls. Strings must be valid UTF-8; characters that could control a terminal on
/// which the JSON is shown are escaped, all others stand as they are. Keys come out in the order of
/// the calls; a caller that nests wrongly is caught by an assertion.
class JsonWriter {
public:
    explicit JsonWriter(std::string& output) : m_output(output) {}

    void beginObject() { begin(Scope::object, '{'); }
    void endObject() { end(Scope::object, '}'); }
    void beginArray() { begin(Scope::array, '['); }
    void endArray() { end(Scope::array, ']'); }
    /// The key of the value that is written next.
    void key(std::string_view name);
    void value(std::string_view text);
    void value(std::int64_t number);
    // A template, for otherwise a string literal would rather become a bool than a string_view.
    void value(std::same_as<bool> auto flag) { literal(flag ? "true" : "false"); }

    /// A key with a text, a number or a flag.
    void member(std::string_view name, const auto& content)
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

    void begin(Scope scope, char bracket);
    void end(Scope scope, char bracket);
    void literal(std::string_view text);
    void startValue();
    void startItem();
    void newLine();
    void quote(std::string_view text, std::string_view end);

    std::string& m_output;
    std::vector<Level> m_levels;
    bool m_afterKey{};
};

} // namespace quillmark
