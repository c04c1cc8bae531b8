#include "pdf/StreamFilters.h"

#include "pdf/Predictors.h"

#include <algorithm>
#include <array>
#include <utility>

namespace quillmark::PDF {

namespace {

/// Collects what a filter puts out: at most one byte more than the limit, which shows that there
/// was more.
class Output {
public:
    explicit Output(std::size_t limit) : m_capacity(limit + 1) {}

    void put(std::byte byte)
    {
        if (!full()) m_bytes.push_back(byte);
    }
    void put(std::span<const std::byte> bytes)
    {
        const auto fitting = bytes.first(std::min(bytes.size(), m_capacity - m_bytes.size()));
        m_bytes.insert(m_bytes.end(), fitting.begin(), fitting.end());
    }
    [[nodiscard]] bool full() const { return m_bytes.size() == m_capacity; }
    [[nodiscard]] const Bytes& bytes() const { return m_bytes; }
    [[nodiscard]] Bytes take() { return std::move(m_bytes); }

private:
    Bytes m_bytes;
    std::size_t m_capacity;
};

bool isWhiteSpace(unsigned character)
{
    return character == 0 || character == '\t' || character == '\n' || character == '\f' ||
           character == '\r' || character == ' ';
}

/// Codes of a width that changes, at most 24 bits, the most significant bit first.
class CodeReader {
public:
    explicit CodeReader(std::span<const std::byte> raw) : m_raw(raw) {}

    /// Absent when fewer bits than `width` are left.
    [[nodiscard]] std::optional<unsigned> next(unsigned width)
    {
        while (m_available < width) {
            if (m_at == m_raw.size()) return std::nullopt;
            m_bits = (m_bits << 8U) | std::to_integer<std::uint32_t>(m_raw[m_at++]);
            m_available += 8;
        }
        m_available -= width;
        return (m_bits >> m_available) & ((1U << width) - 1U);
    }

private:
    std::span<const std::byte> m_raw;
    std::size_t m_at{};
    std::uint32_t m_bits{};
    unsigned m_available{}; // of the bits
};

/// Variable-width codes, most significant bit first (TIFF 6.0, section 13, without its byte order).
Bytes lzw(std::span<const std::byte> raw, bool earlyChange, std::size_t limit)
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
    Output output(limit);
    std::array<Piece, maximum> table{};
    unsigned next = first;
    unsigned width = 9;
    std::optional<Piece> previous;
    CodeReader codes(raw);
    const unsigned early = earlyChange ? 1 : 0;

    while (const auto read = codes.next(width)) {
        const unsigned code = *read;
        if (code == end) break;
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
            // first byte, which is what follows that piece. Behind a full table there is none.
            const bool pending = code == next && previous;
            if (!pending && code >= next) break;
            const Piece piece = pending ? Piece{previous->at, previous->length + 1} : table[code];
            for (std::size_t i = 0; i < piece.length && !output.full(); ++i)
                output.put(bytes[piece.at + i]);
        }
        if (output.full()) break;
        if (previous && next < maximum) table[next++] = {previous->at, previous->length + 1};
        previous = Piece{at, bytes.size() - at};
        if (next + early >= (1U << width) && width < 12) ++width;
    }
    return output.take();
}

Bytes asciiHex(std::span<const std::byte> raw, std::size_t limit)
{
    Output output(limit);
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
    return output.take();
}

Bytes ascii85(std::span<const std::byte> raw, std::size_t limit)
{
    Output output(limit);
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
    return output.take();
}

Bytes runLength(std::span<const std::byte> raw, std::size_t limit)
{
    Output output(limit);
    constexpr unsigned end = 128;
    std::size_t at = 0;
    while (at < raw.size() && !output.full()) {
        const auto length = std::to_integer<unsigned>(raw[at++]);
        if (length == end) break;
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
    return output.take();
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

Bytes StreamDecoder::apply(const Filter& filter, Bytes raw, std::size_t limit)
{
    switch (filter.kind) {
    case Filter::Kind::flate:
        return m_inflater.inflate(raw, limit);
    case Filter::Kind::lzw:
        return lzw(raw, filter.earlyChange, limit);
    case Filter::Kind::asciiHex:
        return asciiHex(raw, limit);
    case Filter::Kind::ascii85:
        return ascii85(raw, limit);
    case Filter::Kind::runLength:
        return runLength(raw, limit);
    case Filter::Kind::crypt:
        return raw;
    }
    return {};
}

std::optional<Bytes> StreamDecoder::decode(Bytes raw, std::span<const Filter> filters,
                                           std::size_t limit)
{
    Bytes layer = std::move(raw);
    if (layer.size() > limit || layer.size() > m_budget) return std::nullopt;
    m_budget -= layer.size();
    for (const auto& filter : filters) {
        const auto allowed = static_cast<std::size_t>(std::min<std::uint64_t>(limit, m_budget));
        const bool empty = layer.empty();
        layer = apply(filter, std::move(layer), allowed);
        m_budget -= std::min<std::uint64_t>(m_budget, layer.size());
        if (layer.size() > allowed || (layer.empty() && !empty)) return std::nullopt;
        if (hasPredictor(filter) && !undoPredictor(filter.predictor, layer)) return std::nullopt;
    }
    return layer;
}

} // namespace quillmark::PDF
