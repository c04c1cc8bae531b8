// The list of fonts that the main window shows.
#pragma once

#include "model/FolderScan.h"
#include "model/RowList.h"
#include "pdf/PDFFontScanner.h"

#include <memory>
#include <string>

namespace quillmark {

/// A checked document, shared by all who show or export it. Never null where a document is asked
/// for.
using SharedAudit = std::shared_ptr<const DocumentAudit>;

struct AuditList {
    std::string title;
    std::string subtitle;
    RowList rows;
    SharedAudit document; // null but for a document's list

    [[nodiscard]] static AuditList ofInstalled(RowList rows);
    [[nodiscard]] static AuditList ofFolder(const FolderScan& scan);
    [[nodiscard]] static AuditList ofDocument(SharedAudit audit);

    bool operator==(const AuditList& other) const;
};

} // namespace quillmark
