// Bytes in memory that count what is read of them.
#pragma once

#include "library/ByteSource.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>

namespace quillmark::test {

/// `bytes` followed by as many zeros as make `size`. `readable` cuts off what can be read without
/// changing the size, as when a file is cut while it is open.
class CountingSource final : public ByteSource {
public:
    explicit CountingSource(std::span<const std::byte> bytes, std::uint64_t size = 0)
        : m_bytes(bytes), m_size(std::max<std::uint64_t>(size, bytes.size())), readable(m_size)
    {
    }

    [[nodiscard]] std::uint64_t size() const override { return m_size; }
    std::size_t read(std::uint64_t at, std::span<std::byte> into) const noexcept override
    {
        ++reads;
        if (at >= readable) return 0;
        const auto count =
            static_cast<std::size_t>(std::min<std::uint64_t>(into.size(), readable - at));
        std::ranges::fill(into.first(count), std::byte{0});
        MemorySource(m_bytes).read(at, into.first(count));
        bytesRead += count;
        return count;
    }

private:
    std::span<const std::byte> m_bytes;
    std::uint64_t m_size{};

public:
    std::uint64_t readable{};
    mutable std::size_t reads{};
    mutable std::uint64_t bytesRead{};
};

} // namespace quillmark::test
