// Reading an object's text.
#pragma once

#include "pdf/ByteSource.h"
#include "pdf/ObjectLexer.h"
#include "pdf/ParsedObject.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace quillmark::PDF {

/// Where an object's text begins.
struct ObjectText {
    ByteSource& source;
    std::uint64_t offset{};
    std::size_t limit{}; // bytes; an object that is longer is unreadable
};

/// Reads one object after the other, reusing its memory.
class ObjectParser {
public:
    /// Reads an object of a file, if what stands there begins with its header, such as "5 0 obj".
    /// Damage is repaired as far as it goes: stray tokens are passed over, and what is open when
    /// the object ends is closed. Null when the header differs, nothing is there, or a limit is
    /// exceeded.
    [[nodiscard]] ParsedObjectRef indirect(const ObjectText& text, const Reference& expected);

    /// The same for text without a header, as in an object stream. It is never a stream.
    [[nodiscard]] ParsedObjectRef direct(const ObjectText& text);

    /// Whether a dictionary may have the key `name`, without taking it apart. False only when it
    /// certainly has not. `expected` is the object's header; without a number, there is none.
    [[nodiscard]] bool mayHaveKey(const ObjectText& text, const Reference& expected,
                                  std::string_view name);

    /// Bytes of text that the last call looked at, whatever came of it.
    [[nodiscard]] std::size_t textRead() const { return m_textRead; }
    /// Whether `indirect` found the object, which did not end within the limit of its text.
    [[nodiscard]] bool wasTooLong() const { return m_wasTooLong; }

private:
    enum class Streams { impossible, possible };
    struct Open {
        Value::Kind kind{};
        std::size_t begin{}; // of its values, in m_pending
    };
    struct Entry {
        Value key;
        Value value;
    };

    [[nodiscard]] ParsedObjectRef parse(ObjectLexer& lexer, Streams streams, std::uint64_t offset);
    [[nodiscard]] bool accept(const Token& token);
    void push(Value::Kind kind, std::int64_t number = 0, std::uint32_t count = 0);
    void pushName(std::string_view name);
    void makeReference();
    void close();
    void orderEntries(std::size_t begin);

    std::shared_ptr<ParsedObject> m_object;
    // Containers that are still open are on a stack of our own, their values so far on another; a
    // container's values move together when it closes.
    std::vector<Open> m_open;
    std::vector<Value> m_pending;
    std::vector<Entry> m_entries;
    std::string m_endedBy; // the keyword at which an object ended, if it did
    std::size_t m_textRead{};
    bool m_wasTooLong{};
};

/// One object of an object stream: its number, and where it begins behind the pairs.
struct ObjectPlace {
    std::uint32_t number{};
    std::uint64_t offset{};
};

/// The pairs of integers at the beginning of an object stream, at most `count` of them; it ends at
/// the first thing that is none.
[[nodiscard]] std::vector<ObjectPlace> parsePlaces(const ObjectText& text, std::uint64_t count);

} // namespace quillmark::PDF
