#include "pdf/StreamFilters.h"

#include "pdf/Predictors.h"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

#include <zlib.h>

namespace quillmark::PDF {
namespace {

/// Collects what a filter puts out, up to a limit.
class Output {
public:
    explicit Output(std::size_t limit) : m_limit(limit) {}

    void put(std::byte byte)
    {
        if (m_bytes.size() == m_limit)
            m_full = true;
        else
            m_bytes.push_back(byte);
    }
    void put(std::span<const std::byte> bytes)
    {
        if (bytes.size() > m_limit - m_bytes.size())
            m_full = true;
        else
            m_bytes.insert(m_bytes.end(), bytes.begin(), bytes.end());
    }
    [[nodiscard]] bool full() const { return m_full; } // something did not fit
    [[nodiscard]] const Bytes& bytes() const { return m_bytes; }
    [[nodiscard]] Bytes take() { return std::move(m_bytes); }

    /// Space behind the first `used` bytes, some `wanted` of it, for a filter that writes by
    /// itself. One byte over the limit can be had, which shows that something did not fit.
    [[nodiscard]] std::span<std::byte> space(std::size_t used, std::size_t wanted)
    {
        m_bytes.resize(std::min(used + wanted, m_limit + 1));
        return std::span(m_bytes).subspan(used);
    }
    /// Ends writing into the space; `used` is all that was written.
    void finish(std::size_t used)
    {
        m_full = used > m_limit;
        m_bytes.resize(std::min(used, m_limit));
    }

private:
    Bytes m_bytes;
    std::size_t m_limit;
    bool m_full{};
};

bool isWhiteSpace(unsigned character)
{
    return character == 0 || character == '\t' || character == '\n' || character == '\f' ||
           character == '\r' || character == ' ';
}

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

void flate(std::span<const std::byte> raw, Output& output)
{
    constexpr std::size_t step = std::size_t{4} << 10U;
    Inflation inflation;
    auto& stream = inflation.stream;
    if (!inflation.ready || raw.size() > std::numeric_limits<uInt>::max()) return;
    // Data with a wrong check sum are used like other damaged data, so it need not be computed.
    ::inflateValidate(&stream, 0);
    // zlib does not write through next_in; the parameter is only const with a build option.
    stream.next_in = const_cast<Bytef*>(reinterpret_cast<const Bytef*>(raw.data()));
    stream.avail_in = static_cast<uInt>(raw.size());
    // Mostly the first space is enough, and then zlib needs no window of its own.
    std::size_t used = 0;
    bool more = true;
    while (more) {
        const auto space = output.space(used, std::max(3 * raw.size(), used) + step);
        stream.next_out = reinterpret_cast<Bytef*>(space.data());
        stream.avail_out = static_cast<uInt>(space.size());
        const int status = ::inflate(&stream, Z_FINISH);
        used += space.size() - stream.avail_out;
        const bool undamaged = status == Z_OK || status == Z_BUF_ERROR;
        more = undamaged && stream.avail_out == 0 && !space.empty();
    }
    output.finish(used);
}

/// Variable-width codes, most significant bit first (TIFF 6.0, section 13, without its byte order).
void lzw(std::span<const std::byte> raw, bool earlyChange, Output& output)
{
    constexpr unsigned clear = 256;
    constexpr unsigned end = 257;
    constexpr unsigned first = 258;
    constexpr unsigned maximum = 4096;
    // A table entry repeats an earlier piece of the output and the byte that follows it.
    struct Piece {
        std::size_t at{};
        std::size_t length{};
    };
    std::array<Piece, maximum> table;
    unsigned next = first;
    unsigned width = 9;
    std::optional<Piece> previous;
    std::uint32_t bits = 0;
    unsigned available = 0;

    for (const std::byte byte : raw) {
        bits = (bits << 8U) | std::to_integer<std::uint32_t>(byte);
        available += 8;
        if (available < width) continue;
        available -= width;
        const unsigned code = (bits >> available) & ((1U << width) - 1U);
        if (code == end) return;
        if (code == clear) {
            next = first;
            width = 9;
            previous.reset();
            continue;
        }
        const auto& bytes = output.bytes();
        const std::size_t at = bytes.size();
        if (code < clear) {
            output.put(static_cast<std::byte>(code));
        } else {
            // The one code that is not yet in the table stands for the previous piece and its own
            // first byte, which is what follows that piece.
            const bool pending = code == next && previous && next < maximum;
            if (!pending && code >= next) return;
            const Piece piece = pending ? Piece{previous->at, previous->length + 1} : table[code];
            for (std::size_t i = 0; i < piece.length && !output.full(); ++i)
                output.put(bytes[piece.at + i]);
        }
        if (output.full()) return;
        if (previous && next < maximum) table[next++] = {previous->at, previous->length + 1};
        previous = Piece{at, bytes.size() - at};
        const unsigned early = earlyChange ? 1 : 0;
        if (next + early >= (1U << width) && width < 12) ++width;
    }
}

void asciiHex(std::span<const std::byte> raw, Output& output)
{
    std::optional<unsigned> high;
    for (const std::byte byte : raw) {
        const auto character = std::to_integer<unsigned>(byte);
        unsigned digit = 0;
        if (character >= '0' && character <= '9')
            digit = character - '0';
        else if (character >= 'A' && character <= 'F')
            digit = character - 'A' + 10;
        else if (character >= 'a' && character <= 'f')
            digit = character - 'a' + 10;
        else if (isWhiteSpace(character))
            continue;
        else
            break; // the end mark, or damage
        if (high) {
            output.put(static_cast<std::byte>(*high * 16 + digit));
            high.reset();
        } else {
            high = digit;
        }
    }
    if (high) output.put(static_cast<std::byte>(*high * 16));
}

void ascii85(std::span<const std::byte> raw, Output& output)
{
    std::uint64_t group = 0;
    unsigned count = 0;
    // Writes the group's upper bytes; it is complete, or filled up with the highest digit.
    const auto flush = [&](unsigned bytes) {
        for (unsigned i = 0; i < bytes; ++i)
            output.put(static_cast<std::byte>(group >> (24U - 8U * i)));
        group = 0;
        count = 0;
    };
    for (const std::byte byte : raw) {
        const auto character = std::to_integer<unsigned>(byte);
        if (isWhiteSpace(character)) continue;
        if (character == 'z' && count == 0) {
            flush(4);
        } else if (character >= '!' && character <= 'u') {
            group = group * 85 + (character - '!');
            if (++count == 5) flush(4);
        } else {
            break; // the end mark, or damage
        }
    }
    if (count > 1) {
        const unsigned bytes = count - 1;
        for (; count < 5; ++count)
            group = group * 85 + 84;
        flush(bytes);
    }
}

void runLength(std::span<const std::byte> raw, Output& output)
{
    constexpr unsigned end = 128;
    std::size_t at = 0;
    while (at < raw.size() && !output.full()) {
        const auto length = std::to_integer<unsigned>(raw[at++]);
        if (length == end) return;
        if (length < end) {
            const std::size_t count = std::min<std::size_t>(length + 1, raw.size() - at);
            output.put(raw.subspan(at, count));
            at += count;
        } else if (at < raw.size()) {
            const std::byte repeated = raw[at++];
            for (unsigned i = 0; i < 257 - length; ++i)
                output.put(repeated);
        }
    }
}

void apply(const Filter& filter, std::span<const std::byte> raw, Output& output)
{
    switch (filter.kind) {
    case Filter::Kind::flate:
        return flate(raw, output);
    case Filter::Kind::lzw:
        return lzw(raw, filter.earlyChange, output);
    case Filter::Kind::asciiHex:
        return asciiHex(raw, output);
    case Filter::Kind::ascii85:
        return ascii85(raw, output);
    case Filter::Kind::runLength:
        return runLength(raw, output);
    case Filter::Kind::crypt:
        return output.put(raw);
    }
}

bool hasPredictor(const Filter& filter)
{
    return filter.kind == Filter::Kind::flate || filter.kind == Filter::Kind::lzw;
}

} // namespace

std::optional<Filter::Kind> filterKind(std::string_view name)
{
    struct Name {
        std::string_view name;
        std::string_view abbreviation; // meant for inline images, but readers take it everywhere
        Filter::Kind kind;
    };
    static constexpr auto names = std::to_array<Name>({
        {"FlateDecode", "Fl", Filter::Kind::flate},
        {"LZWDecode", "LZW", Filter::Kind::lzw},
        {"ASCIIHexDecode", "AHx", Filter::Kind::asciiHex},
        {"ASCII85Decode", "A85", Filter::Kind::ascii85},
        {"RunLengthDecode", "RL", Filter::Kind::runLength},
        {"Crypt", "Crypt", Filter::Kind::crypt},
    });
    const auto found = std::ranges::find_if(names, [name](const Name& candidate) {
        return candidate.name == name || candidate.abbreviation == name;
    });
    if (found == names.end()) return std::nullopt;
    return found->kind;
}

std::optional<Bytes> decode(std::span<const std::byte> raw, std::span<const Filter> filters,
                            std::size_t limit, DecodeBudget& budget)
{
    if (raw.size() > limit || raw.size() > budget.bytes) return std::nullopt;
    budget.bytes -= raw.size();
    Bytes layer(raw.begin(), raw.end());
    for (const auto& filter : filters) {
        const auto allowed = static_cast<std::size_t>(std::min<std::uint64_t>(limit, budget.bytes));
        Output output(allowed);
        apply(filter, layer, output);
        budget.bytes -= output.bytes().size();
        if (output.full() || (output.bytes().empty() && !layer.empty())) return std::nullopt;
        layer = output.take();
        if (hasPredictor(filter) && !undoPredictor(filter.predictor, layer)) return std::nullopt;
    }
    return layer;
}

} // namespace quillmark::PDF
