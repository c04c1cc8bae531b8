#include "model/AuditList.h"

#include "model/FileSentence.h"

#include <utility>

namespace quillmark {

AuditList AuditList::ofInstalled(RowList rows)
{
    return {
        .title = "Installed on This Mac",
        .subtitle = "Every font installed on this Mac, including the ones that came with macOS",
        .rows = std::move(rows),
        .document = nullptr,
    };
}

AuditList AuditList::ofFolder(const FolderScan& scan)
{
    return {
        .title = shownName(scan.path),
        .subtitle = shownPath(scan.path),
        .rows = scan.rows,
        .document = nullptr,
    };
}

AuditList AuditList::ofDocument(SharedAudit audit)
{
    return {
        .title = audit->fileName,
        .subtitle =
            "Fonts in " + audit->fileName + " (" + std::to_string(audit->pageCount) + " pages)",
        // The rows live in the audit, and keep it.
        .rows = RowList(std::shared_ptr<const std::vector<AuditRow>>(audit, &audit->rows)),
        .document = audit,
    };
}

bool AuditList::operator==(const AuditList& other) const
{
    const bool sameDocument =
        document == other.document || (document && other.document && *document == *other.document);
    return sameDocument && title == other.title && subtitle == other.subtitle && rows == other.rows;
}

} // namespace quillmark
