// The one place where offsets into untrusted bytes are computed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace quillmark {

/// Big-endian reads over a span. Each yields an absent value where the span does not hold all of
/// what was asked for; nothing is ever read outside it. The span must outlive the reader.
/// The reads are defined here because the name table does hundreds of them for every font.
class ByteReader {
public:
    explicit ByteReader(std::span<const std::byte> bytes) : m_bytes(bytes) {}

    [[nodiscard]] std::size_t size() const { return m_bytes.size(); }

    [[nodiscard]] std::optional<std::uint8_t> u8(std::size_t at) const
    {
        return read<std::uint8_t>(at, 1);
    }
    [[nodiscard]] std::optional<std::uint16_t> u16(std::size_t at) const
    {
        return read<std::uint16_t>(at, 2);
    }
    [[nodiscard]] std::optional<std::uint32_t> u32(std::size_t at) const
    {
        return read<std::uint32_t>(at, 4);
    }
    /// An unsigned value of `width` bytes, 1 to 4; absent for any other width.
    [[nodiscard]] std::optional<std::uint32_t> unsignedValue(std::size_t at,
                                                             std::size_t width) const
    {
        if (width < 1 || width > 4) return std::nullopt;
        return read<std::uint32_t>(at, width);
    }

    [[nodiscard]] std::optional<std::span<const std::byte>> slice(std::size_t at,
                                                                  std::size_t length) const
    {
        if (!holds(at, length)) return std::nullopt;
        return m_bytes.subspan(at, length);
    }

private:
    [[nodiscard]] bool holds(std::size_t at, std::size_t length) const
    {
        // Compared by subtraction: at + length can wrap round, size - at cannot.
        return at <= m_bytes.size() && length <= m_bytes.size() - at;
    }

    template <typename Value>
    [[nodiscard]] std::optional<Value> read(std::size_t at, std::size_t width) const
    {
        if (!holds(at, width)) return std::nullopt;
        std::uint32_t value = 0;
        for (std::size_t i = 0; i < width; ++i)
            value = value << 8U | std::to_integer<std::uint32_t>(m_bytes[at + i]);
        return static_cast<Value>(value);
    }

    std::span<const std::byte> m_bytes;
};

} // namespace quillmark
