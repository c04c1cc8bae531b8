#include "library/Inflate.h"

#include <algorithm>
#include <array>
#include <span>

#include <zlib.h>

namespace quillmark {
namespace {

constexpr std::size_t pieceSize = 16384;

/// zlib's state for one stream.
class Inflater {
public:
    explicit Inflater(Wrapper wrapper)
    {
        constexpr int largestWindow = 15;
        constexpr int expectGzip = 16;
        const int windowBits = largestWindow + (wrapper == Wrapper::gzip ? expectGzip : 0);
        m_isReady = ::inflateInit2(&m_stream, windowBits) == Z_OK;
    }
    ~Inflater() { ::inflateEnd(&m_stream); }
    Inflater(const Inflater&) = delete;
    Inflater& operator=(const Inflater&) = delete;

    [[nodiscard]] bool isReady() const { return m_isReady; }
    [[nodiscard]] bool needsInput() const { return m_stream.avail_in == 0; }
    /// The bytes must stay until they are used up.
    void feed(std::span<std::byte> input)
    {
        m_stream.next_in = reinterpret_cast<Bytef*>(input.data());
        m_stream.avail_in = static_cast<uInt>(input.size());
    }
    /// Decodes into `output`; `written` is how much of it was filled.
    int step(std::span<std::byte> output, std::size_t& written)
    {
        m_stream.next_out = reinterpret_cast<Bytef*>(output.data());
        m_stream.avail_out = static_cast<uInt>(output.size());
        const int result = ::inflate(&m_stream, Z_NO_FLUSH);
        written = output.size() - m_stream.avail_out;
        return result;
    }

private:
    z_stream m_stream{};
    bool m_isReady{};
};

} // namespace

std::optional<std::vector<std::byte>> inflated(const ByteSource& source, std::uint64_t at,
                                               std::uint64_t length, Wrapper wrapper,
                                               std::size_t limit)
{
    Inflater inflater(wrapper);
    if (!inflater.isReady()) return std::nullopt;
    std::array<std::byte, pieceSize> input{};
    std::array<std::byte, pieceSize> output{};
    std::vector<std::byte> result;
    for (;;) {
        if (inflater.needsInput()) {
            const auto wanted =
                static_cast<std::size_t>(std::min<std::uint64_t>(length, pieceSize));
            const std::size_t count = source.read(at, std::span(input).first(wanted));
            if (count == 0) return std::nullopt; // the stream should have ended by now
            inflater.feed(std::span(input).first(count));
            at += count;
            length -= count;
        }
        std::size_t written = 0;
        const int status = inflater.step(output, written);
        if (status != Z_OK && status != Z_STREAM_END && status != Z_BUF_ERROR) return std::nullopt;
        if (written > limit - result.size()) return std::nullopt;
        result.insert(result.end(), output.begin(),
                      output.begin() + static_cast<std::ptrdiff_t>(written));
        if (status == Z_STREAM_END) return result;
    }
}

} // namespace quillmark
