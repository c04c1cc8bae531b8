// Replaces the decoders with which libqpdf unpacks cross-reference and object streams on its own:
// its own ones have no limit. Part of what stands behind QPDFFile.h.
#pragma once

#include "pdf/StreamFilters.h"

namespace quillmark::PDF {

/// While it lives, libqpdf decodes with `decoder` on this thread. Elsewhere, what others do with
/// libqpdf in this process has only the limit of a single stream.
class QPDFDecoding {
public:
    explicit QPDFDecoding(StreamDecoder& decoder);
    ~QPDFDecoding();
    QPDFDecoding(const QPDFDecoding&) = delete;
    QPDFDecoding& operator=(const QPDFDecoding&) = delete;

private:
    StreamDecoder* m_outer;
};

} // namespace quillmark::PDF
