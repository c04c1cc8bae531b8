// Messages as bytes: a kind, a length, and so many bytes. What stands in them is in Messages.h.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace quillmark::reader {

/// A message as it came. Its bytes are valid until more are received.
struct Frame {
    std::uint32_t kind{};
    std::string_view bytes;
};

/// Appends one message to `into`, field by field. Numbers are in the machine's own order: both
/// sides run on it.
class FrameWriter {
public:
    FrameWriter(std::string& into, std::uint32_t kind);
    /// The message is complete.
    ~FrameWriter();
    FrameWriter(const FrameWriter&) = delete;
    FrameWriter& operator=(const FrameWriter&) = delete;

    void u8(std::uint8_t value) { m_into.push_back(static_cast<char>(value)); }
    void u16(std::uint16_t value) { number(value); }
    void u32(std::uint32_t value) { number(value); }
    /// Seven bits at a time, the lowest first: short for small numbers.
    void compact(std::uint64_t value);
    void text(std::string_view text)
    {
        u32(static_cast<std::uint32_t>(text.size()));
        m_into += text;
    }
    /// Bytes whose length is known otherwise.
    void bytes(std::string_view bytes) { m_into += bytes; }

private:
    template <typename Number>
    void number(Number value)
    {
        m_into.append(reinterpret_cast<const char*>(&value), sizeof value);
    }

    std::string& m_into;
    std::size_t m_begin;
};

/// Takes a message apart. What is asked for beyond its end is zero or empty, and then `isSound` is
/// false for good.
class FrameFields {
public:
    explicit FrameFields(std::string_view bytes) : m_rest(bytes) {}

    std::uint8_t u8() { return number<std::uint8_t>(); }
    std::uint16_t u16() { return number<std::uint16_t>(); }
    std::uint32_t u32() { return number<std::uint32_t>(); }
    std::uint64_t compact();
    /// Bytes as they came.
    std::string_view bytes(std::size_t count);
    std::string_view bytes() { return bytes(u32()); }
    /// Text, which is always valid UTF-8.
    std::string text();

    [[nodiscard]] bool isSound() const { return m_isSound; }
    /// Whether all was there, and nothing else.
    [[nodiscard]] bool isComplete() const { return m_isSound && m_rest.empty(); }
    void fail() { m_isSound = false; }

private:
    template <typename Number>
    Number number();

    std::string_view m_rest;
    bool m_isSound{true};
};

/// Bytes that come in pieces, until they are whole messages.
class FrameBuffer {
public:
    /// No message may have more than `longest` bytes.
    explicit FrameBuffer(std::size_t longest) : m_longest(longest) {}

    /// Where to put what comes; ends the life of all frames. The room grows with what has come,
    /// never with what a message announces.
    [[nodiscard]] std::span<char> room();
    /// So many bytes of the room were filled.
    void filled(std::size_t count) { m_end += count; }
    [[nodiscard]] std::optional<Frame> next();
    /// Whether a message is longer than it may be; nothing can be read any more.
    [[nodiscard]] bool isBroken() const { return m_isBroken; }
    [[nodiscard]] bool isEmpty() const { return m_begin == m_end; }

private:
    std::size_t m_longest;
    std::unique_ptr<char[]> m_bytes; // NOLINT(*-avoid-c-arrays): a vector would clear its room
    std::size_t m_size{};
    std::size_t m_begin{}; // what is waiting
    std::size_t m_end{};
    bool m_isBroken{};
};

} // namespace quillmark::reader
