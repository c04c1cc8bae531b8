#include "support/PDFEncoders.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

#include <zlib.h>

namespace quillmark::test {
namespace {

/// Writes codes of changing width, most significant bit first.
class CodeWriter {
public:
    void put(unsigned code, unsigned width)
    {
        m_bits = (m_bits << width) | code;
        m_count += width;
        while (m_count >= 8) {
            m_count -= 8;
            m_bytes.push_back(static_cast<std::byte>(m_bits >> m_count));
        }
    }
    [[nodiscard]] Bytes finish()
    {
        if (m_count > 0) m_bytes.push_back(static_cast<std::byte>(m_bits << (8 - m_count)));
        return m_bytes;
    }

private:
    std::uint64_t m_bits{};
    unsigned m_count{};
    Bytes m_bytes;
};

} // namespace

Bytes lzw(std::span<const std::byte> data, bool earlyChange)
{
    constexpr unsigned clear = 256;
    constexpr unsigned end = 257;
    constexpr unsigned full = 4094;
    const unsigned early = earlyChange ? 1 : 0;
    // The code of a piece that is one byte longer than the piece of another code.
    std::map<std::pair<unsigned, std::byte>, unsigned> table;
    CodeWriter writer;
    unsigned next = 0;
    unsigned width = 0;
    const auto restart = [&] {
        table.clear();
        next = 258;
        width = 9;
    };
    restart();
    writer.put(clear, width);
    std::optional<unsigned> piece;
    for (const std::byte byte : data) {
        if (!piece) {
            piece = std::to_integer<unsigned>(byte);
            continue;
        }
        if (const auto longer = table.find({*piece, byte}); longer != table.end()) {
            piece = longer->second;
            continue;
        }
        writer.put(*piece, width);
        table[{*piece, byte}] = next++;
        // The decoder is one entry behind.
        if (next + early > (1U << width)) ++width;
        if (next == full) {
            writer.put(clear, width);
            restart();
        }
        piece = std::to_integer<unsigned>(byte);
    }
    if (piece) {
        writer.put(*piece, width);
        ++next;
        if (next + early > (1U << width) && width < 12) ++width;
    }
    writer.put(end, width);
    return writer.finish();
}

Bytes asciiHex(std::span<const std::byte> data)
{
    static constexpr std::array<char, 17> digits{"0123456789abcdef"};
    std::string text;
    for (const std::byte byte : data) {
        text += digits[std::to_integer<unsigned>(byte) / 16];
        text += digits[std::to_integer<unsigned>(byte) % 16];
    }
    return ascii(text + ">");
}

Bytes ascii85(std::span<const std::byte> data)
{
    std::string text;
    for (std::size_t at = 0; at < data.size(); at += 4) {
        const std::size_t count = std::min<std::size_t>(4, data.size() - at);
        std::uint32_t group = 0;
        for (std::size_t i = 0; i < 4; ++i)
            group = group * 256 + (i < count ? std::to_integer<std::uint32_t>(data[at + i]) : 0);
        if (group == 0 && count == 4) {
            text += 'z';
            continue;
        }
        std::string characters(5, '!');
        for (std::size_t i = 5; i-- > 0; group /= 85)
            characters[i] = static_cast<char>('!' + group % 85);
        text += characters.substr(0, count + 1);
    }
    return ascii(text + "~>");
}

Bytes runLength(std::span<const std::byte> data)
{
    Bytes bytes;
    for (std::size_t at = 0; at < data.size();) {
        std::size_t run = 1;
        while (at + run < data.size() && run < 128 && data[at + run] == data[at])
            ++run;
        if (run >= 3) {
            bytes.push_back(static_cast<std::byte>(257 - run));
            bytes.push_back(data[at]);
        } else {
            run = 1;
            bytes.push_back(std::byte{0});
            bytes.push_back(data[at]);
        }
        at += run;
    }
    bytes.push_back(std::byte{128});
    return bytes;
}

Bytes flatedZeros(std::size_t megabytes)
{
    // Flushed pieces of a stream do not depend on what comes before, so one is made and repeated.
    Bytes zeros(1'000'000);
    Bytes piece(10'000);
    z_stream stream{};
    if (::deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, -MAX_WBITS, 8,
                       Z_DEFAULT_STRATEGY) != Z_OK)
        throw std::runtime_error("zlib");
    stream.next_in = reinterpret_cast<Bytef*>(zeros.data());
    stream.avail_in = static_cast<uInt>(zeros.size());
    stream.next_out = reinterpret_cast<Bytef*>(piece.data());
    stream.avail_out = static_cast<uInt>(piece.size());
    const int status = ::deflate(&stream, Z_FULL_FLUSH);
    piece.resize(stream.total_out);
    const bool complete = status == Z_OK && stream.avail_in == 0 && stream.avail_out > 0;
    ::deflateEnd(&stream);
    if (!complete) throw std::runtime_error("zlib");

    Bytes all = ascii("\x78\x9C");
    for (std::size_t i = 0; i < megabytes; ++i)
        all.insert(all.end(), piece.begin(), piece.end());
    all.push_back(std::byte{3}); // an empty last block; nobody looks at the check sum behind it
    all.push_back(std::byte{0});
    return all;
}

Bytes pngUp(std::span<const std::byte> data, std::size_t columns)
{
    constexpr std::byte up{2};
    Bytes bytes;
    for (std::size_t i = 0; i < data.size(); ++i) {
        if (i % columns == 0) bytes.push_back(up);
        const auto above = i >= columns ? std::to_integer<unsigned>(data[i - columns]) : 0;
        bytes.push_back(static_cast<std::byte>(std::to_integer<unsigned>(data[i]) - above));
    }
    return bytes;
}

} // namespace quillmark::test
