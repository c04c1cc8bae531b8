// The columns of the table of fonts, and what stands in them.
#pragma once

#include "pdf/AuditRow.h"
#include "text/RawValue.h"

#include <QString>

#include <array>
#include <span>
#include <string_view>

namespace quillmark {

/// What a list is of: fonts on this computer, or those of a document.
enum class ListKind { fonts, document };

/// Declared in the order in which they are shown.
enum class AuditColumn {
    font,
    verdict,
    license,
    embedding,
    pages, // of a document only
    source,
};

/// A name for each, which keeps tables by column in step.
template <>
inline constexpr auto rawValues<AuditColumn> = std::to_array<std::string_view>({
    "font",
    "verdict",
    "license",
    "embedding",
    "pages",
    "source",
});

/// In device-independent pixels.
struct ColumnWidths {
    int minimum{};
    int ideal{};
    int maximum{}; // 0: as wide as one likes
};

[[nodiscard]] std::span<const AuditColumn> columnsOf(ListKind kind);
[[nodiscard]] QString columnTitle(AuditColumn column, ListKind kind);
[[nodiscard]] ColumnWidths columnWidths(AuditColumn column);

/// What a cell says, on one line and safe to draw: control characters are replaced, and what nobody
/// could read in a table anyway is cut off.
[[nodiscard]] QString columnText(AuditColumn column, const AuditRow& row);

/// What stands beside the text in the secondary style; mostly empty.
[[nodiscard]] QString secondaryText(AuditColumn column, const AuditRow& row);

/// What a screen reader says for a cell.
[[nodiscard]] QString spokenText(AuditColumn column, const AuditRow& row);

/// A row for the clipboard: its cells in full words, on one line, with a tab between two of them,
/// so that a spreadsheet takes them for cells, and none for a formula.
[[nodiscard]] QString copiedText(ListKind kind, const AuditRow& row);

} // namespace quillmark
