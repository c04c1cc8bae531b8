// Lists of fonts as a report to print. Lists for other programs are AuditExport.h's.
#pragma once

#include "export/ReportFonts.h"
#include "notes/NotesBook.h"
#include "pdf/AuditRow.h"

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace quillmark::AuditExport {

/// Prints the line to standard output.
void printDiagnostic(std::string_view line);

/// What a report needs besides what it tells.
struct ReportSetting {
    std::filesystem::path fontFolder = reportFontFolder();
    Diagnostic diagnostic = printDiagnostic; // of the report's fonts
};

/// The rows as a PDF on US Letter pages, in the order given: a title with the counts and the
/// disclaimer, then a block for each font with its verdict, what it says about itself and the
/// user's note. The same arguments on the same system give the same bytes. Absent when neither the
/// report's own fonts nor any other are found on the system.
[[nodiscard]] std::optional<std::vector<std::byte>>
pdfReport(std::string_view title, std::string_view subtitle, std::span<const AuditRow> rows,
          const NotesBook& notes, std::chrono::system_clock::time_point date,
          const ReportSetting& setting = {});

} // namespace quillmark::AuditExport
