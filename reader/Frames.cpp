#include "reader/Frames.h"

#include "text/Encoding.h"

#include <algorithm>
#include <cstring>

namespace quillmark::reader {
namespace {

struct Header {
    std::uint32_t kind{};
    std::uint32_t length{};
};

/// Room for some dozens of ordinary answers.
constexpr std::size_t usualRoom = std::size_t{256} << 10U;
/// Less room than that at the end is not worth a system call.
constexpr std::size_t leastRoom = std::size_t{64} << 10U;

} // namespace

FrameWriter::FrameWriter(std::string& into, std::uint32_t kind) : m_into(into), m_begin(into.size())
{
    u32(kind);
    u32(0);
}

FrameWriter::~FrameWriter()
{
    const auto length = static_cast<std::uint32_t>(m_into.size() - m_begin - sizeof(Header));
    std::memcpy(m_into.data() + m_begin + offsetof(Header, length), &length, sizeof length);
}

void FrameWriter::compact(std::uint64_t value)
{
    for (; value >= 0x80U; value >>= 7U)
        u8(static_cast<std::uint8_t>((value & 0x7FU) | 0x80U));
    u8(static_cast<std::uint8_t>(value));
}

template <typename Number>
Number FrameFields::number()
{
    Number value{};
    const std::string_view stored = bytes(sizeof value);
    if (stored.size() == sizeof value) std::memcpy(&value, stored.data(), sizeof value);
    return value;
}

template std::uint8_t FrameFields::number();
template std::uint16_t FrameFields::number();
template std::uint32_t FrameFields::number();

std::uint64_t FrameFields::compact()
{
    std::uint64_t value = 0;
    for (unsigned shift = 0; shift < 64; shift += 7) {
        const std::uint8_t next = u8();
        value |= std::uint64_t{next & 0x7FU} << shift;
        if ((next & 0x80U) == 0) return value;
    }
    fail();
    return 0;
}

std::string_view FrameFields::bytes(std::size_t count)
{
    if (count > m_rest.size()) {
        m_rest = {};
        m_isSound = false;
        return {};
    }
    const std::string_view taken = m_rest.substr(0, count);
    m_rest.remove_prefix(count);
    return taken;
}

std::string FrameFields::text()
{
    return repairedUtf8(bytes());
}

std::span<char> FrameBuffer::room()
{
    if (m_begin == m_end) m_begin = m_end = 0;
    if (m_size - m_end < leastRoom) {
        const std::size_t waiting = m_end - m_begin;
        const std::size_t size = std::max(usualRoom, 2 * waiting);
        if (size > m_size) {
            std::unique_ptr<char[]> larger(new char[size]); // NOLINT(*-avoid-c-arrays)
            if (waiting > 0) std::memcpy(larger.get(), m_bytes.get() + m_begin, waiting);
            m_bytes = std::move(larger);
            m_size = size;
        } else {
            std::memmove(m_bytes.get(), m_bytes.get() + m_begin, waiting);
        }
        m_begin = 0;
        m_end = waiting;
    }
    return {m_bytes.get() + m_end, m_size - m_end};
}

std::optional<Frame> FrameBuffer::next()
{
    Header header;
    const std::size_t waiting = m_end - m_begin;
    if (m_isBroken || waiting < sizeof header) return std::nullopt;
    std::memcpy(&header, m_bytes.get() + m_begin, sizeof header);
    if (header.length > m_longest) {
        m_isBroken = true;
        return std::nullopt;
    }
    if (waiting - sizeof header < header.length) return std::nullopt;
    const Frame frame{header.kind, {m_bytes.get() + m_begin + sizeof header, header.length}};
    m_begin += sizeof header + header.length;
    return frame;
}

} // namespace quillmark::reader
