// Lets libqpdf read from one of our byte sources. Part of the reader behind PDFDocument.h; like
// QPDFDocument.cpp it includes libqpdf's headers, and nothing else does.
#pragma once

#include "pdf/ByteSource.h"

#include <qpdf/InputSource.hh>

#include <cstddef>
#include <memory>
#include <string>

namespace quillmark::PDF {

class QPDFInput final : public InputSource {
public:
    explicit QPDFInput(std::unique_ptr<ByteSource> source);

    qpdf_offset_t findAndSkipNextEOL() override;
    std::string const& getName() const override { return m_name; }
    qpdf_offset_t tell() override { return m_position; }
    /// Throws std::runtime_error for a position before the beginning, as libqpdf expects.
    void seek(qpdf_offset_t offset, int whence) override;
    void rewind() override { m_position = 0; }
    std::size_t read(char* target, std::size_t length) override;
    void unreadCh(char) override;

private:
    [[nodiscard]] qpdf_offset_t size() const;

    std::unique_ptr<ByteSource> m_source;
    std::string m_name; // would appear in warnings, which nobody sees
    qpdf_offset_t m_position{};
};

} // namespace quillmark::PDF
