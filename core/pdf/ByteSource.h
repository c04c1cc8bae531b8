// Where a document's bytes come from: a file, read piece by piece, or memory.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <vector>

namespace quillmark::PDF {

class ByteSource {
public:
    virtual ~ByteSource() = default;
    [[nodiscard]] virtual std::uint64_t size() const = 0;
    /// Some of the bytes from `offset` on, valid until the next call; empty at and behind the end,
    /// and where the file cannot be read.
    [[nodiscard]] virtual std::span<const std::byte> at(std::uint64_t offset) = 0;
    /// Copies bytes from `offset` on; how many there were.
    [[nodiscard]] virtual std::size_t read(std::uint64_t offset, std::span<std::byte> target) = 0;
};

/// A source over `data`, which must outlive it.
[[nodiscard]] std::unique_ptr<ByteSource> memorySource(std::span<const std::byte> data);

/// A source over a regular file, which it keeps open; null for anything else. Reads at positions
/// and never maps the file: a mapped file that is cut short by somebody else kills the process.
[[nodiscard]] std::unique_ptr<ByteSource> fileSource(const std::filesystem::path& path);

/// The part of a source from its "%PDF-" on, which offsets in the file count from, if that stands
/// within the first 1024 bytes; else the source itself.
[[nodiscard]] std::unique_ptr<ByteSource>
skippingLeadingGarbage(std::unique_ptr<ByteSource> source);

} // namespace quillmark::PDF
