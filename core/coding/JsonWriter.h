// Writing JSON piece by piece, so that a list of thousands of fonts never stands in memory twice.
// For the records' own form see RecordCoding.h.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace quillmark {

/// Appends indented JSON (RFC 8259, UTF-8) to a string that the caller owns and may drain between
/// calls. Strings must be valid UTF-8. Keys come out in the order of the calls; a caller that
/// nests wrongly is caught by an assertion.
class JsonWriter {
public:
    explicit JsonWriter(std::string& output) : m_output(output) {}

    void beginObject();
    void endObject();
    void beginArray();
    void endArray();
    void key(std::string_view name);
    void value(std::string_view text);
    void value(std::int64_t number);
    void value(bool flag);

private:
    void separate();
    void newLine();

    enum class Scope : std::uint8_t { object, array };
    struct Level {
        Scope scope{};
        bool empty{true};
    };
    std::string& m_output;
    std::vector<Level> m_levels;
    bool m_afterKey{};
};

} // namespace quillmark
