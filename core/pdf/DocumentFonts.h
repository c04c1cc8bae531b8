// What one PDF says about its fonts, before anything is matched or judged. Read and audited by
// PDFFontScanner.h.
#pragma once

#include "fontfile/FontFacts.h"
#include "pdf/EmbeddedProgram.h"

#include <optional>
#include <string>
#include <vector>

namespace quillmark {

/// One font of a document.
struct DocumentFont {
    std::string baseName;              // without subset prefix
    std::vector<std::string> pdfNames; // subset prefixes kept; ascending, each once
    std::string subtype;               // such as "TrueType" or "Type0 / CIDFontType2"
    EmbeddedProgram program{EmbeddedProgram::notEmbedded};
    bool subset{};                     // a name carried a subset prefix
    std::vector<int> pages;            // 1-based; ascending, each once
    std::optional<FontFacts> embedded; // what the embedded program says; absent without any
    bool operator==(const DocumentFont&) const = default;
};

/// The fonts of one document and the number of its pages.
struct DocumentFonts {
    int pageCount{};                 // as the PDF reports it; may be 0
    std::vector<DocumentFont> fonts; // one per clean name and embedded or not, as first met
    bool operator==(const DocumentFonts&) const = default;
};

} // namespace quillmark
