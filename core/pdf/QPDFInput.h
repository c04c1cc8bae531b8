// Lets libqpdf read from one of our byte sources, within limits. Part of what stands behind
// QPDFFile.h; only these sources include libqpdf's headers.
#pragma once

#include "pdf/ByteSource.h"
#include "pdf/QPDFHeaders.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace quillmark::PDF {

/// libqpdf reads a token or a line at a time, and stream data in long pieces. Denying the long ones
/// keeps it from unpacking object streams on its own, where it would parse every object and where
/// objects that overlap cost any amount of time. Counting all bytes keeps it from searching the
/// same stretch of a damaged file again and again. An object that libqpdf reads by itself may be
/// only so long. What is denied looks like the end of the file.
class QPDFInput final : public InputSource {
public:
    explicit QPDFInput(std::unique_ptr<ByteSource> source);

    [[nodiscard]] ByteSource& source() { return *m_source; }
    /// Whether stream data may be read. They may at first.
    void allowStreams(bool allowed) { m_streamsAllowed = allowed; }
    /// What is read from here on is another object, even if it follows on the last one.
    void beginObject() { m_tokens = {m_position, m_position}; }
    /// Counts work that was done on behalf of damage as if it were bytes read.
    void charge(std::uint64_t bytes) { m_bytesLeft -= bytes < m_bytesLeft ? bytes : m_bytesLeft; }

    qpdf_offset_t findAndSkipNextEOL() override;
    std::string const& getName() const override { return m_name; }
    qpdf_offset_t tell() override { return m_position; }
    /// Throws std::runtime_error for a position before the beginning, as libqpdf expects.
    void seek(qpdf_offset_t offset, int whence) override;
    void rewind() override { m_position = 0; }
    std::size_t read(char* target, std::size_t length) override;
    void unreadCh(char character) override;

private:
    [[nodiscard]] qpdf_offset_t size() const;
    [[nodiscard]] bool isInTooLongAnObject(std::size_t length);

    std::unique_ptr<ByteSource> m_source;
    std::string m_name; // would stand in warnings, which nobody sees
    qpdf_offset_t m_position{};
    std::uint64_t m_bytesLeft;
    /// What has been read of one object so far, or of what may be one: tokens in pieces that follow
    /// on one another.
    struct Run {
        qpdf_offset_t begin{};
        qpdf_offset_t end{};
    } m_tokens;
    bool m_streamsAllowed{true};
};

} // namespace quillmark::PDF
