// The walk over a document's pages, forms and annotations for every font they use. What becomes of
// the fonts found is in PDFFontScanner.h.
#pragma once

#include "pdf/EmbeddedProgram.h"
#include "pdf/PDFObjects.h"

#include <set>
#include <string>
#include <vector>

namespace quillmark::PDFFontScanner {

/// One font as the walk finds it.
struct Found {
    std::string baseName;           // without subset prefix
    std::set<std::string> pdfNames; // the names that the PDF gives it, prefix included
    std::string subtype;            // such as "TrueType", "Type0 / CIDFontType2" or "Unknown"
    EmbeddedProgram program{EmbeddedProgram::notEmbedded};
    bool subset{};          // a name carried a subset prefix
    std::vector<int> pages; // 1-based; ascending, each once
    PDF::SharedBytes data;  // the embedded program; null when absent or unreadable
};

/// The fonts of a document and the number of its pages.
struct Scan {
    std::vector<Found> fonts; // one per clean name and embedded or not, as first met
    int pageCount{};
};

/// Walks the whole document. Resources that were walked before only add the page to their fonts,
/// not to those of the forms in them; so a font that is reached through nested forms alone keeps
/// the page of their first meeting.
[[nodiscard]] Scan scan(const PDF::Document& document);

} // namespace quillmark::PDFFontScanner
