// The one place where offsets into untrusted bytes are computed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace quillmark {

/// Big-endian reads over a span. Each yields an absent value where the span does not hold all of
/// what was asked for; nothing is ever read outside it. The span must outlive the reader.
class ByteReader {
public:
    explicit ByteReader(std::span<const std::byte> bytes) : m_bytes(bytes) {}

    [[nodiscard]] std::size_t size() const { return m_bytes.size(); }
    [[nodiscard]] std::optional<std::uint8_t> u8(std::size_t at) const;
    [[nodiscard]] std::optional<std::uint16_t> u16(std::size_t at) const;
    [[nodiscard]] std::optional<std::uint32_t> u32(std::size_t at) const;
    /// An unsigned value of `width` bytes, 1 to 4.
    [[nodiscard]] std::optional<std::uint32_t> unsignedValue(std::size_t at,
                                                             std::size_t width) const;
    [[nodiscard]] std::optional<std::span<const std::byte>> slice(std::size_t at,
                                                                  std::size_t length) const;

private:
    std::span<const std::byte> m_bytes;
};

} // namespace quillmark
