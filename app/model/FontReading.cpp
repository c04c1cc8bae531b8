#include "model/FontReading.h"

#include "library/FontLibrary.h"
#include "text/Collation.h"

#include <utility>

namespace quillmark {
namespace {

constexpr auto asRow = [](FontFacts&& facts) { return auditRow(std::move(facts)); };

/// A list that can be shown at once.
RowList prepared(std::vector<AuditRow> rows)
{
    RowList list(std::move(rows));
    list.prepare();
    return list;
}

} // namespace

RowList readInstalledRows(const FontService& service, const std::string& locale)
{
    FontLibrary::MadeOfFonts rows(asRow);
    const auto places = FontLibrary::readInstalledFonts(service, Collator(locale), rows);
    return prepared(rows.itemsAt(places));
}

RowList readFolderRows(const FontService& service, const std::string& locale,
                       const std::filesystem::path& folder)
{
    FontLibrary::MadeOfFonts rows(asRow);
    const auto places = FontLibrary::readFolder(service, Collator(locale), folder, rows);
    return prepared(rows.itemsAt(places));
}

DocumentCheck::DocumentCheck(std::shared_ptr<const FontService> service, std::vector<RowList> known,
                             PDFFontScanner::Read read, PDFFontScanner::Clock clock)
    : m_service(std::move(service)), m_known(std::move(known)), m_read(std::move(read)),
      m_clock(std::move(clock))
{
}

PDFFontScanner::Result DocumentCheck::check(const std::filesystem::path& document)
{
    const auto lookup = [this](std::string_view name) { return index().lookup(name, *m_service); };
    return PDFFontScanner::audit(document, m_read, lookup, m_clock);
}

const FontIndex& DocumentCheck::index()
{
    if (!m_index) {
        std::vector<FontFacts> fonts;
        for (const RowList& rows : m_known)
            for (const AuditRow& row : rows.span())
                fonts.push_back(row.facts);
        const auto instances = FontLibrary::namedInstances(*m_service, fonts);
        constexpr bool useCoreText = true; // fonts are also found under the system's names for them
        m_index.emplace(fonts, useCoreText, instances);
        m_known.clear();
    }
    return *m_index;
}

} // namespace quillmark
