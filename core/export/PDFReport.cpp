#include "export/PDFReport.h"

#include "export/ReportPages.h"
#include "export/ReportText.h"
#include "text/Characters.h"
#include "text/DateText.h"
#include "text/Printable.h"

#include <array>
#include <cstdio>
#include <ctime>
#include <string>

namespace quillmark::AuditExport {
namespace {

/// Behind the headline and the first line of the first reason.
constexpr std::size_t keptOfBlock = 2;

/// As a PDF has dates (ISO 32000-1, 7.9.4), in UTC.
std::string pdfDate(std::chrono::system_clock::time_point date)
{
    const std::time_t seconds = std::chrono::system_clock::to_time_t(date);
    std::tm parts{};
    std::array<char, 64> text{};
    if (::gmtime_r(&seconds, &parts) == nullptr) return {};
    return {text.data(), std::strftime(text.data(), text.size(), "D:%Y%m%d%H%M%SZ", &parts)};
}

/// The start of a name, as much of it as an outline can show.
std::string outlineTitle(const AuditRow& row)
{
    constexpr std::size_t longestTitle = 200; // characters
    const std::string name = row.facts.displayName();
    std::string title;
    for (const std::string_view character : userCharacters(name, longestTitle))
        title += character;
    return printable(title);
}

} // namespace

void printDiagnostic(std::string_view line)
{
    std::fwrite(line.data(), 1, line.size(), stdout);
    std::fputc('\n', stdout);
}

std::optional<std::vector<std::byte>> pdfReport(std::string_view title, std::string_view subtitle,
                                                std::span<const AuditRow> rows,
                                                const NotesBook& notes,
                                                std::chrono::system_clock::time_point date,
                                                const ReportSetting& setting)
{
    ReportPages pages(ReportFonts::load(setting.fontFolder, setting.diagnostic),
                      setting.diagnostic);
    if (!pages.isReady()) return std::nullopt;
    const auto checked = dateText(std::chrono::floor<std::chrono::seconds>(date));
    const auto heading = ReportText::heading(title, subtitle, checked, AuditSummary::of(rows));
    pages.add(heading, heading.size() - 1);
    for (const AuditRow& row : rows) {
        pages.addOutlineEntry(row.assessment.verdict, outlineTitle(row));
        pages.add(ReportText::block(row, notes.note(row.facts.postScriptName)), keptOfBlock);
    }
    return pages.finish(printable(title), pdfDate(date));
}

} // namespace quillmark::AuditExport
