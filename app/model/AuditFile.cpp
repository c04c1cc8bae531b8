#include "model/AuditFile.h"

#include "export/AuditExport.h"
#include "export/PDFReport.h"
#include "files/DurableFile.h"
#include "library/FileName.h"

#include <algorithm>
#include <string_view>

namespace quillmark::AuditFile {
namespace {

std::string_view extension(ExportFormat format)
{
    switch (format) {
    case ExportFormat::csv:
        return ".csv";
    case ExportFormat::pdf:
        return ".pdf";
    }
    return {};
}

} // namespace

std::string suggestedName(const AuditList& list, ExportFormat format)
{
    std::string name =
        list.document ? FileName::stem(list.document->fileName) + " fonts" : list.title;
    std::ranges::replace(name, '/', '-'); // the root folder's title
    return name.append(extension(format));
}

std::optional<FileError> write(const std::filesystem::path& file, const AuditList& list,
                               ExportFormat format, const NotesBook& notes,
                               std::chrono::system_clock::time_point now, unsigned newMode)
{
    const auto rows = list.rows.span();
    if (format == ExportFormat::csv)
        return writeDurably(file, AuditExport::csv(rows, notes), newMode);

    const auto date = list.document ? list.document->checkedAt : now;
    const auto report = AuditExport::pdfReport("Font license audit: " + list.title, list.subtitle,
                                               rows, notes, date);
    if (!report) return FileError{0, "There is no font to write it in"};
    const std::string_view bytes(reinterpret_cast<const char*>(report->data()), report->size());
    return writeDurably(file, bytes, newMode);
}

} // namespace quillmark::AuditFile
