// The tokens that objects are written in (ISO 32000-2, 7.2 and 7.3).
#pragma once

#include "pdf/ByteSource.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace quillmark::PDF {

struct Token {
    enum class Kind {
        end, // of the bytes, or of the text's limit
        null,
        integer,
        name,
        other, // a string, real, truth value or word without a meaning here
        reference,
        arrayOpen,
        arrayClose,
        dictionaryOpen,
        dictionaryClose,
        keyword, // a word that only stands outside of objects: obj, endobj, stream, xref, ...
    };
    Kind kind{};
    std::int64_t number{};
    std::string_view text; // of a name, after its escapes, or keyword; until the next token
};

class ObjectLexer {
public:
    /// Reads `source` from `offset` on, at most `limit` bytes.
    ObjectLexer(ByteSource& source, std::uint64_t offset, std::size_t limit);

    [[nodiscard]] Token next();

    /// Passes over one object without taking it apart, until it is clear whether `wanted` is among
    /// the names in it. False only when it certainly is not.
    [[nodiscard]] bool mayContain(std::string_view wanted);

    /// Whether the text went on behind the limit.
    [[nodiscard]] bool exhausted() const { return m_exhausted; }
    /// Bytes read so far.
    [[nodiscard]] std::size_t consumed() const { return m_consumed + m_at; }

private:
    static constexpr int noByte = -1;

    [[nodiscard]] int peek()
    {
        if (m_at == m_window.size() && !refill()) return noByte;
        return std::to_integer<int>(m_window[m_at]);
    }
    void skip() { ++m_at; } // what `peek` returned
    [[nodiscard]] bool refill();

    [[nodiscard]] std::string_view regularCharacters();
    [[nodiscard]] Token name();
    [[nodiscard]] Token word();
    [[nodiscard]] bool skipSecondBracket(int first);
    void skipComment();
    void skipString();
    void skipHexString();
    [[nodiscard]] int skipSpace();

    ByteSource& m_source;
    std::uint64_t m_offset; // of the window
    std::size_t m_limit;
    std::size_t m_consumed{}; // before the window
    std::span<const std::byte> m_window;
    std::size_t m_at{}; // in the window
    bool m_exhausted{};
    std::string m_text; // of a token that is not in one piece in the window
};

/// Whether `name` may stand somewhere in `text`, whatever that is. False only when it certainly
/// does not. Takes a small part of the time that reading the tokens would.
[[nodiscard]] bool mayMention(std::span<const std::byte> text, std::string_view name);

} // namespace quillmark::PDF
