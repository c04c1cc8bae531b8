// A small PDF with fonts on its pages.
#pragma once

#include "support/FontBytes.h"

#include <optional>
#include <string>
#include <vector>

namespace quillmark::test {

struct DocumentFont {
    std::string name;             // BaseFont as it is written, with #-escapes
    std::vector<int> pages;       // 1-based
    std::optional<Bytes> program; // embedded as TrueType; absent: not embedded
};

/// A PDF of `pageCount` pages.
[[nodiscard]] std::string sampleDocument(int pageCount, const std::vector<DocumentFont>& fonts);

} // namespace quillmark::test
