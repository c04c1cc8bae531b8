#include "pdf/ByteSource.h"

#include <algorithm>
#include <cerrno>
#include <string_view>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quillmark::PDF {
namespace {

class MemorySource final : public ByteSource {
public:
    explicit MemorySource(std::span<const std::byte> data) : m_data(data) {}
    [[nodiscard]] std::uint64_t size() const override { return m_data.size(); }
    [[nodiscard]] std::span<const std::byte> at(std::uint64_t offset) override
    {
        if (offset >= m_data.size()) return {};
        return m_data.subspan(static_cast<std::size_t>(offset));
    }
    [[nodiscard]] std::size_t read(std::uint64_t offset, std::span<std::byte> target) override
    {
        const auto bytes = at(offset);
        const std::size_t count = std::min(bytes.size(), target.size());
        std::copy_n(bytes.begin(), count, target.begin());
        return count;
    }

private:
    std::span<const std::byte> m_data;
};

/// Keeps a few pieces of the file. Objects that belong together mostly stand together, but readers
/// jump between them, the cross-reference table and the end of the file.
class FileSource final : public ByteSource {
public:
    FileSource(int file, std::uint64_t size) : m_file(file), m_size(size) {}
    ~FileSource() override { ::close(m_file); }
    FileSource(const FileSource&) = delete;
    FileSource& operator=(const FileSource&) = delete;

    [[nodiscard]] std::uint64_t size() const override { return m_size; }
    [[nodiscard]] std::span<const std::byte> at(std::uint64_t offset) override
    {
        if (offset >= m_size) return {};
        const std::uint64_t number = offset / pieceSize;
        Piece& piece = m_pieces[number % m_pieces.size()];
        if (piece.bytes.empty() || piece.number != number) fill(piece, number);
        const std::span<const std::byte> bytes(piece.bytes.data(), piece.length);
        return bytes.subspan(std::min<std::size_t>(offset % pieceSize, bytes.size()));
    }
    [[nodiscard]] std::size_t read(std::uint64_t offset, std::span<std::byte> target) override
    {
        std::size_t done = 0;
        while (offset < m_size && done < target.size()) {
            const auto count = ::pread(m_file, target.data() + done, target.size() - done,
                                       static_cast<off_t>(offset + done));
            if (count < 0 && errno == EINTR) continue;
            if (count <= 0) break;
            done += static_cast<std::size_t>(count);
        }
        return done;
    }

private:
    static constexpr std::size_t pieceSize = std::size_t{16} << 10U;
    struct Piece {
        std::uint64_t number{};
        std::size_t length{};
        std::vector<std::byte> bytes; // empty until first used
    };

    void fill(Piece& piece, std::uint64_t number)
    {
        piece.bytes.resize(pieceSize);
        piece.number = number;
        piece.length = read(number * pieceSize, piece.bytes);
    }

    int m_file;
    std::uint64_t m_size;
    std::array<Piece, 16> m_pieces;
};

class OffsetSource final : public ByteSource {
public:
    OffsetSource(std::unique_ptr<ByteSource> whole, std::uint64_t start)
        : m_whole(std::move(whole)), m_start(start)
    {
    }
    [[nodiscard]] std::uint64_t size() const override { return m_whole->size() - m_start; }
    [[nodiscard]] std::span<const std::byte> at(std::uint64_t offset) override
    {
        if (offset >= size()) return {};
        return m_whole->at(m_start + offset);
    }
    [[nodiscard]] std::size_t read(std::uint64_t offset, std::span<std::byte> target) override
    {
        return offset < size() ? m_whole->read(m_start + offset, target) : 0;
    }

private:
    std::unique_ptr<ByteSource> m_whole;
    std::uint64_t m_start;
};

} // namespace

std::unique_ptr<ByteSource> memorySource(std::span<const std::byte> data)
{
    return std::make_unique<MemorySource>(data);
}

std::unique_ptr<ByteSource> fileSource(const std::filesystem::path& path)
{
    // Without O_NONBLOCK, opening a pipe that nobody writes to would wait for ever.
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (file < 0) return nullptr;
    struct stat status {};
    if (::fstat(file, &status) != 0 || !S_ISREG(status.st_mode)) {
        ::close(file);
        return nullptr;
    }
    return std::make_unique<FileSource>(file, static_cast<std::uint64_t>(status.st_size));
}

std::unique_ptr<ByteSource> skippingLeadingGarbage(std::unique_ptr<ByteSource> source)
{
    constexpr std::size_t searched = 1024;
    const auto bytes = source->at(0);
    const std::string_view start(reinterpret_cast<const char*>(bytes.data()),
                                 std::min(bytes.size(), searched));
    const std::size_t header = start.find("%PDF-");
    if (header == 0 || header == std::string_view::npos) return source;
    return std::make_unique<OffsetSource>(std::move(source), header);
}

} // namespace quillmark::PDF
