// Decompresses Flate data: zlib's format (RFC 1950).
#pragma once

#include "pdf/PDFObjects.h"

#include <cstddef>
#include <memory>
#include <span>

namespace quillmark::PDF {

/// Decompresses one piece of data after the other, reusing its memory.
class Inflater {
public:
    Inflater();
    ~Inflater();
    Inflater(const Inflater&) = delete;
    Inflater& operator=(const Inflater&) = delete;

    /// What `raw` decompresses to, at most `limit` + 1 bytes. Damaged data give what comes out
    /// before the damage.
    [[nodiscard]] Bytes inflate(std::span<const std::byte> raw, std::size_t limit);

private:
    struct Implementation;
    std::unique_ptr<Implementation> m_implementation;
};

} // namespace quillmark::PDF
