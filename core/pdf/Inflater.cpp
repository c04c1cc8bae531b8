#include "pdf/Inflater.h"

#include <algorithm>
#include <limits>
#include <optional>

#include <libdeflate.h>
#include <zlib.h>

namespace quillmark::PDF {
namespace {

// A vector would fill what is about to be overwritten.
using Space = std::byte[]; // NOLINT(modernize-avoid-c-arrays)

struct DecompressorDeleter {
    void operator()(libdeflate_decompressor* decompressor) const
    {
        ::libdeflate_free_decompressor(decompressor);
    }
};

/// Ends zlib's state however the function that uses it is left.
struct Inflation {
    z_stream stream{};
    bool ready{::inflateInit(&stream) == Z_OK};

    Inflation() = default;
    ~Inflation()
    {
        if (ready) ::inflateEnd(&stream);
    }
    Inflation(const Inflation&) = delete;
    Inflation& operator=(const Inflation&) = delete;
};

/// zlib takes twice as long as libdeflate, but it needs no guess about the size, and keeps what it
/// has when the data turn out to be damaged.
Bytes inflatePiecewise(std::span<const std::byte> raw, std::size_t limit)
{
    constexpr std::size_t firstSpace = std::size_t{16} << 10U;
    Bytes bytes;
    Inflation inflation;
    auto& stream = inflation.stream;
    if (!inflation.ready || raw.size() > std::numeric_limits<uInt>::max()) return bytes;
    // A wrong check sum is damage behind the last byte, so it need not even be computed.
    ::inflateValidate(&stream, 0);
    // zlib does not write through next_in; the parameter is only const with a build option.
    stream.next_in = const_cast<Bytef*>(reinterpret_cast<const Bytef*>(raw.data()));
    stream.avail_in = static_cast<uInt>(raw.size());
    std::size_t used = 0;
    bool more = true;
    while (more) {
        bytes.resize(std::min(limit + 1, std::max(2 * used, firstSpace)));
        const auto space = std::span(bytes).subspan(used);
        stream.next_out = reinterpret_cast<Bytef*>(space.data());
        stream.avail_out = static_cast<uInt>(space.size());
        const int status = ::inflate(&stream, Z_SYNC_FLUSH);
        used += space.size() - stream.avail_out;
        more = status == Z_OK && stream.avail_out == 0 && used <= limit;
    }
    bytes.resize(used);
    return bytes;
}

} // namespace

struct Inflater::Implementation {
    std::unique_ptr<libdeflate_decompressor, DecompressorDeleter> decompressor{
        ::libdeflate_alloc_decompressor()};
    std::unique_ptr<Space> space;
    std::size_t size{};

    /// Absent for damaged data and for data that need more space than was guessed.
    std::optional<Bytes> inflateAtOnce(std::span<const std::byte> raw, std::size_t limit)
    {
        constexpr std::size_t ratio = 8; // fonts and objects are below it
        const std::size_t wanted = std::min(limit + 1, ratio * raw.size());
        if (!decompressor) return std::nullopt;
        if (size < wanted) {
            space = std::make_unique_for_overwrite<Space>(wanted);
            size = wanted;
        }
        std::size_t used = 0;
        if (::libdeflate_zlib_decompress(decompressor.get(), raw.data(), raw.size(), space.get(),
                                         wanted, &used) != LIBDEFLATE_SUCCESS)
            return std::nullopt;
        const std::span<const std::byte> result(space.get(), used);
        return Bytes(result.begin(), result.end());
    }

    void releaseSpace()
    {
        space.reset();
        size = 0;
    }
};

Inflater::Inflater() : m_implementation(std::make_unique<Implementation>()) {}

Inflater::~Inflater() = default;

Bytes Inflater::inflate(std::span<const std::byte> raw, std::size_t limit)
{
    if (auto bytes = m_implementation->inflateAtOnce(raw, limit)) return *std::move(bytes);
    // Data that defeat the guess may be made to cost memory: they are not held twice.
    m_implementation->releaseSpace();
    return inflatePiecewise(raw, limit);
}

} // namespace quillmark::PDF
