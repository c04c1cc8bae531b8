// The slow work behind the model's lists: fonts and documents are read here, on threads of the
// background, from plain values into plain values.
#pragma once

#include "library/FontIndex.h"
#include "library/FontService.h"
#include "model/RowList.h"
#include "pdf/PDFFontScanner.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace quillmark {

/// Every installed font with its assessment, sorted as people of `locale` expect.
[[nodiscard]] RowList readInstalledRows(const FontService& service, const std::string& locale);

/// The same for the fonts of a folder and its subfolders.
[[nodiscard]] RowList readFolderRows(const FontService& service, const std::string& locale,
                                     const std::filesystem::path& folder);

/// Checks documents against the fonts that were known when it was made. Its documents are checked
/// one after the other, on whatever threads.
class DocumentCheck {
public:
    /// `known` are the lists whose fonts are matched, later ones taking the place of earlier ones.
    DocumentCheck(std::shared_ptr<const FontService> service, std::vector<RowList> known,
                  PDFFontScanner::Read read, PDFFontScanner::Clock clock);

    [[nodiscard]] PDFFontScanner::Result check(const std::filesystem::path& document);

private:
    [[nodiscard]] const FontIndex& index();

    std::shared_ptr<const FontService> m_service;
    std::vector<RowList> m_known;
    PDFFontScanner::Read m_read;
    PDFFontScanner::Clock m_clock;
    std::optional<FontIndex> m_index; // made when the first document names a font
};

} // namespace quillmark
