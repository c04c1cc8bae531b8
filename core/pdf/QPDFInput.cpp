#include "pdf/QPDFInput.h"

#include "pdf/Limits.h"

#include <algorithm>
#include <span>
#include <stdexcept>
#include <string_view>
#include <utility>

#include <cstdio>
#include <cstring>

namespace quillmark::PDF {
namespace {

/// The longest piece that libqpdf reads of anything but stream data: it searches in blocks of 1024
/// bytes.
constexpr std::size_t longestSearch = 1100;

/// The longest piece that it reads of a token.
constexpr std::size_t longestToken = 128;

bool isLineEnd(std::byte byte)
{
    return byte == std::byte{'\r'} || byte == std::byte{'\n'};
}

/// Where the first line end is; the number of bytes when there is none. Searching for each of the
/// two in short pieces is several times as fast as looking at each byte, which is what repairing a
/// large file mostly takes.
std::size_t firstLineEnd(std::span<const std::byte> bytes)
{
    constexpr std::size_t pieceSize = 1024;
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    for (std::size_t at = 0; at < text.size(); at += pieceSize) {
        const std::string_view piece = text.substr(at, pieceSize);
        const std::size_t lineFeed = std::min(piece.find('\n'), piece.size());
        const std::size_t found = std::min(piece.substr(0, lineFeed).find('\r'), lineFeed);
        if (found < piece.size()) return at + found;
    }
    return text.size();
}

} // namespace

QPDFInput::QPDFInput(std::unique_ptr<ByteSource> source)
    : m_source(std::move(source)),
      m_bytesLeft(Limits::readBytes + Limits::readings * m_source->size())
{
}

qpdf_offset_t QPDFInput::size() const
{
    return static_cast<qpdf_offset_t>(m_source->size());
}

void QPDFInput::seek(qpdf_offset_t offset, int whence)
{
    qpdf_offset_t base = 0;
    if (whence == SEEK_CUR) base = m_position;
    if (whence == SEEK_END) base = size();
    qpdf_offset_t target = 0;
    if (__builtin_add_overflow(base, offset, &target) || target < 0)
        throw std::runtime_error("seek outside the file");
    m_position = target;
}

bool QPDFInput::isInTooLongAnObject(std::size_t length)
{
    if (length > longestToken) return false;
    if (m_position < m_tokens.begin || m_position > m_tokens.end)
        m_tokens = {m_position, m_position};
    m_tokens.end = std::max(m_tokens.end, m_position + static_cast<qpdf_offset_t>(length));
    return m_tokens.end - m_tokens.begin > static_cast<qpdf_offset_t>(Limits::foreignObjectText);
}

std::size_t QPDFInput::read(char* target, std::size_t length)
{
    setLastOffset(std::min(m_position, size()));
    if (length > m_bytesLeft || (length > longestSearch && !m_streamsAllowed)) return 0;
    if (isInTooLongAnObject(length)) return 0;
    m_bytesLeft -= length;
    std::size_t done = 0;
    while (done < length) {
        const auto bytes = m_source->at(static_cast<std::uint64_t>(m_position));
        if (bytes.empty()) break;
        const std::size_t count = std::min(bytes.size(), length - done);
        std::memcpy(target + done, bytes.data(), count);
        done += count;
        m_position += static_cast<qpdf_offset_t>(count);
    }
    return done;
}

void QPDFInput::unreadCh(char /*character*/)
{
    if (m_position > 0) --m_position;
}

qpdf_offset_t QPDFInput::findAndSkipNextEOL()
{
    qpdf_offset_t lineEnd = -1;
    for (;;) {
        const auto bytes = m_source->at(static_cast<std::uint64_t>(m_position));
        if (bytes.empty()) return lineEnd < 0 ? m_position : lineEnd;
        std::size_t at = 0;
        if (lineEnd < 0) {
            at = firstLineEnd(bytes);
            if (at < bytes.size()) lineEnd = m_position + static_cast<qpdf_offset_t>(at);
        }
        while (at < bytes.size() && isLineEnd(bytes[at]))
            ++at;
        m_position += static_cast<qpdf_offset_t>(at);
        // It goes from line to line in tables, and where it searches.
        beginObject();
        if (lineEnd >= 0 && at < bytes.size()) return lineEnd;
    }
}

} // namespace quillmark::PDF
