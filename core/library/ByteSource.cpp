#include "library/ByteSource.h"

namespace quillmark {

// NOLINTNEXTLINE(*-member-init): no more of the head than is read is looked at
HeadedSource::HeadedSource(const ByteSource& source)
    : m_source(source), m_headSize(source.read(0, m_head))
{
}

std::span<const std::byte> HeadedSource::view(std::uint64_t at, std::size_t length,
                                              std::vector<std::byte>& scratch) const
{
    if (at >= size()) return {};
    const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(length, size() - at));
    if (at <= m_headSize && count <= m_headSize - at)
        return head().subspan(static_cast<std::size_t>(at), count);
    scratch.resize(count);
    return std::span(scratch).first(m_source.read(at, scratch));
}

std::optional<std::vector<std::byte>> HeadedSource::copy(std::uint64_t at, std::size_t length) const
{
    if (at > size() || length > size() - at) return std::nullopt;
    if (at <= m_headSize && length <= m_headSize - at) {
        const auto bytes = head().subspan(static_cast<std::size_t>(at), length);
        return std::vector<std::byte>(bytes.begin(), bytes.end());
    }
    std::vector<std::byte> bytes(length);
    if (m_source.read(at, bytes) != length) return std::nullopt;
    return bytes;
}

} // namespace quillmark
