// Checking one PDF: which fonts it uses, where they came from, whether they may ship.
#pragma once

#include "fontfile/FontFacts.h"
#include "pdf/AuditRow.h"
#include "pdf/DocumentFonts.h"
#include "pdf/PDFCheckError.h"

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace quillmark {

/// The result of checking one PDF.
struct DocumentAudit {
    std::string path;     // the document's path, or the given file name for a document in memory
    std::string fileName; // its last component
    int pageCount{};      // as the PDF reports it; may be 0
    std::chrono::system_clock::time_point checkedAt;
    std::vector<AuditRow> rows; // restricted, unknown, likely OK; within these by display name
    bool operator==(const DocumentAudit&) const = default;
};

namespace PDFFontScanner {

/// Finds a known font by a name without subset prefix. Called on the checking thread only.
using Lookup = std::function<std::optional<FontFacts>(std::string_view name)>;

/// Tells the time at which a check ended.
using Clock = std::function<std::chrono::system_clock::time_point()>;

using Result = std::variant<DocumentAudit, PDFCheckError>;

/// A document's fonts, or why it does not open.
using Reading = std::variant<DocumentFonts, PDFCheckError::Kind>;

/// Reads a document's fonts, here or elsewhere.
using Read = std::function<Reading(const std::filesystem::path&)>;

/// Reads the document at `path` in this process.
[[nodiscard]] Reading read(const std::filesystem::path& path);

/// Checks the document at `path`. Only opening can fail; afterwards what cannot be read
/// contributes nothing.
[[nodiscard]] Result audit(const std::filesystem::path& path, const Lookup& lookup,
                           const Clock& clock = std::chrono::system_clock::now);

/// The same, with the document read by `read`.
[[nodiscard]] Result audit(const std::filesystem::path& path, const Read& read,
                           const Lookup& lookup, const Clock& clock);

/// Checks a document in memory. `fileName` stands in for its path.
[[nodiscard]] Result audit(std::span<const std::byte> data, std::string_view fileName,
                           const Lookup& lookup,
                           const Clock& clock = std::chrono::system_clock::now);

/// The classifier's assessment of `facts`, adjusted to how a PDF uses the font.
[[nodiscard]] Assessment assess(const FontFacts& facts, const std::optional<PDFFontInfo>& pdf);

} // namespace PDFFontScanner
} // namespace quillmark
