// Bytes that are read piece by piece, so that a font's size does not matter.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace quillmark {

/// Bytes that can be read at any position: a file, or memory.
class ByteSource {
public:
    virtual ~ByteSource() = default;

    [[nodiscard]] virtual std::uint64_t size() const = 0;

    /// Fills `into` from position `at`; returns how many bytes were read. These are fewer than
    /// asked for only at the end and where reading fails.
    virtual std::size_t read(std::uint64_t at, std::span<std::byte> into) const noexcept = 0;
};

/// The bytes of a span, which must outlive the source.
class MemorySource final : public ByteSource {
public:
    explicit MemorySource(std::span<const std::byte> bytes) : m_bytes(bytes) {}

    [[nodiscard]] std::uint64_t size() const override { return m_bytes.size(); }
    std::size_t read(std::uint64_t at, std::span<std::byte> into) const noexcept override
    {
        if (at >= m_bytes.size()) return 0;
        const auto available = m_bytes.subspan(static_cast<std::size_t>(at));
        const std::size_t count = std::min(into.size(), available.size());
        std::copy_n(available.begin(), count, into.begin());
        return count;
    }

private:
    std::span<const std::byte> m_bytes;
};

/// A source whose first bytes are at hand: in most fonts one read fetches the signature, the table
/// directory and an `OS/2` table. The source must outlive it.
class HeadedSource {
public:
    explicit HeadedSource(const ByteSource& source);

    [[nodiscard]] const ByteSource& source() const { return m_source; }
    [[nodiscard]] std::uint64_t size() const { return m_source.size(); }
    [[nodiscard]] std::span<const std::byte> head() const
    {
        return std::span(m_head).first(m_headSize);
    }

    /// The bytes at `at`, at most `length` of them; fewer where the source ends. They lie in the
    /// head or in `scratch` and are valid as long as both.
    [[nodiscard]] std::span<const std::byte> view(std::uint64_t at, std::size_t length,
                                                  std::vector<std::byte>& scratch) const;

    /// A copy of exactly `length` bytes at `at`; absent when not all of them can be read.
    [[nodiscard]] std::optional<std::vector<std::byte>> copy(std::uint64_t at,
                                                             std::size_t length) const;

private:
    const ByteSource& m_source;
    std::array<std::byte, 4096> m_head; // NOLINT(*-member-init): no more than is read is looked at
    std::size_t m_headSize{};
};

} // namespace quillmark
