// Checking documents that were built for a test.
#pragma once

#include "pdf/FontWalk.h"
#include "pdf/PDFDocument.h"
#include "pdf/PDFFontScanner.h"
#include "support/PDFBytes.h"

#include <gtest/gtest.h>

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace quillmark::test {

/// The walk's result; the test fails when the document does not open.
[[nodiscard]] PDFFontScanner::Scan scanned(const Bytes& pdf);
[[nodiscard]] PDFFontScanner::Scan scanned(const PDFBytes& pdf);

/// Why a document does not open; absent when it does.
[[nodiscard]] std::optional<PDFCheckError::Kind> openingError(const Bytes& pdf);

/// One line for each font found: clean name, type, program, "subset" if it is one, pages, and the
/// size of the data if there are any. "Foo TrueType trueType subset [1 3-5] 12 bytes".
[[nodiscard]] std::string lines(const PDFFontScanner::Scan& scan);
/// The clean names only, with their pages.
[[nodiscard]] std::string namesAndPages(const PDFFontScanner::Scan& scan);

/// The time at which every check in tests ends.
[[nodiscard]] std::chrono::system_clock::time_point checkTime();

/// Known fonts by the name they are asked for.
using KnownFonts = std::map<std::string, FontFacts, std::less<>>;

/// The audit of a document in memory called "book.pdf"; the test fails when it does not open.
[[nodiscard]] DocumentAudit audited(const Bytes& pdf, const KnownFonts& known = {});
[[nodiscard]] DocumentAudit audited(const PDFBytes& pdf, const KnownFonts& known = {});
/// The same for a document with exactly one font.
[[nodiscard]] AuditRow auditedFont(const PDFBytes& pdf, const KnownFonts& known = {});

} // namespace quillmark::test
