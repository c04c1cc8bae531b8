#include "library/WOFF2.h"

#include "fontfile/ByteReader.h"
#include "library/Limits.h"
#include "library/SfntTags.h"
#include "library/WOFF2Directory.h"

#include <algorithm>
#include <array>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <utility>

#include <brotli/decode.h>

namespace quillmark {
namespace {

using Table = std::vector<std::byte>;

/// A stretch of the decoded stream that is kept; `bytes` grows with what really comes out.
struct Stretch {
    std::uint64_t begin{};
    std::uint64_t end{};
    Table bytes;
};

/// Decodes one Brotli stream (RFC 7932) and keeps stretches of it.
class Decoder {
public:
    /// `stretches` must be in the order of the stream and must not overlap.
    explicit Decoder(std::vector<Stretch> stretches) : m_stretches(std::move(stretches)) {}

    /// Decodes until the last stretch is complete or the stream ends, well or not.
    void run(const ByteSource& source, std::uint64_t at, std::uint64_t length)
    {
        constexpr std::size_t pieceSize = 16384;
        const std::unique_ptr<BrotliDecoderState, DestroyState> state(
            ::BrotliDecoderCreateInstance(nullptr, nullptr, nullptr));
        if (!state) return;
        std::array<std::byte, pieceSize> input{};
        std::size_t inputSize = 0;
        const std::uint8_t* next = nullptr;
        while (m_current < m_stretches.size()) {
            // The output stays in the decoder's window, where it is looked at but not copied.
            std::size_t noOutput = 0;
            const auto result = ::BrotliDecoderDecompressStream(state.get(), &inputSize, &next,
                                                                &noOutput, nullptr, nullptr);
            while (::BrotliDecoderHasMoreOutput(state.get()) == BROTLI_TRUE) {
                std::size_t size = 0; // as much as there is
                const std::uint8_t* output = ::BrotliDecoderTakeOutput(state.get(), &size);
                if (size == 0) return;
                take(std::as_bytes(std::span(output, size)));
            }
            if (result == BROTLI_DECODER_RESULT_ERROR || result == BROTLI_DECODER_RESULT_SUCCESS)
                return;
            if (result != BROTLI_DECODER_RESULT_NEEDS_MORE_INPUT) continue;
            const auto wanted =
                static_cast<std::size_t>(std::min<std::uint64_t>(length, pieceSize));
            inputSize = source.read(at, std::span(input).first(wanted));
            if (inputSize == 0) return;
            next = reinterpret_cast<const std::uint8_t*>(input.data());
            at += inputSize;
            length -= inputSize;
        }
    }

    /// The number of stretches that are complete; always the first ones.
    [[nodiscard]] std::size_t completeCount() const { return m_current; }
    [[nodiscard]] const Table& bytes(std::size_t stretch) const
    {
        return m_stretches[stretch].bytes;
    }

private:
    struct DestroyState {
        void operator()(BrotliDecoderState* state) const { ::BrotliDecoderDestroyInstance(state); }
    };

    void take(std::span<const std::byte> output)
    {
        const std::uint64_t outputEnd = m_position + output.size();
        for (; m_current < m_stretches.size(); ++m_current) {
            Stretch& stretch = m_stretches[m_current];
            const std::uint64_t begin = std::max(stretch.begin, m_position);
            const std::uint64_t end = std::min(stretch.end, outputEnd);
            if (begin < end) {
                const auto kept = output.subspan(static_cast<std::size_t>(begin - m_position),
                                                 static_cast<std::size_t>(end - begin));
                stretch.bytes.insert(stretch.bytes.end(), kept.begin(), kept.end());
            }
            if (stretch.end > outputEnd) break;
        }
        m_position = outputEnd;
    }

    std::vector<Stretch> m_stretches;
    std::size_t m_current{}; // the first one that is not complete
    std::uint64_t m_position{};
};

/// The wanted tables of a file's faces.
class Tables {
public:
    Tables(const HeadedSource& file, const WOFF2Directory& directory, Faces which)
    {
        for (const auto& face : directory.faces) {
            if (which == Faces::variable && !face.fvar) continue;
            for (const auto& table : {face.name, face.os2})
                if (table) m_places.try_emplace(*table);
            if (which == Faces::variable) m_places.try_emplace(*face.fvar);
        }
        // Tables follow one another in the stream, so their order is that of their indices.
        std::vector<Stretch> stretches;
        std::erase_if(m_places, [&directory](const auto& place) {
            const auto& table = directory.tables[place.first];
            return table.offset + table.length > Limits::decodedBytes;
        });
        for (auto& [table, place] : m_places) {
            place = stretches.size();
            const auto& range = directory.tables[table];
            stretches.push_back({range.offset, range.offset + range.length, {}});
        }
        m_decoder.emplace(std::move(stretches));
        m_decoder->run(file.source(), directory.streamOffset, directory.streamLength);
    }

    /// A copy: the faces of a collection share tables.
    [[nodiscard]] std::optional<Table> read(const std::optional<std::size_t>& table)
    {
        if (!table) return std::nullopt;
        const auto place = m_places.find(*table);
        if (place == m_places.end() || place->second >= m_decoder->completeCount())
            return std::nullopt;
        const Table& bytes = m_decoder->bytes(place->second);
        if (bytes.size() > m_left) return std::nullopt;
        m_left -= bytes.size();
        return bytes;
    }

private:
    std::map<std::size_t, std::size_t> m_places; // by table: its stretch
    std::optional<Decoder> m_decoder;
    std::uint64_t m_left{Limits::tableBytes};
};

} // namespace

namespace WOFF2 {

bool isOne(const HeadedSource& file)
{
    return ByteReader(file.head()).u32(0) == sfntTag("wOF2");
}

std::vector<PlatformFont> faces(const HeadedSource& file, Faces which)
{
    std::vector<PlatformFont> found;
    const auto directory = WOFF2Directory::read(file);
    if (!directory) return found;
    Tables tables(file, *directory, which);
    for (const auto& face : directory->faces) {
        if (which == Faces::variable && !face.fvar) continue;
        PlatformFont& font = found.emplace_back();
        font.index = face.index;
        font.name = tables.read(face.name);
        font.os2 = tables.read(face.os2);
        if (which == Faces::variable) font.fvar = tables.read(face.fvar);
    }
    return found;
}

} // namespace WOFF2
} // namespace quillmark
