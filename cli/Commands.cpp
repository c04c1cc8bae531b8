#include "cli/Commands.h"

#include "cli/Inputs.h"
#include "library/AbsolutePath.h"
#include "library/FolderWalk.h"
#include "library/FontIndex.h"
#include "library/FontLibrary.h"
#include "library/LicenseFile.h"
#include "library/Parallel.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <memory>
#include <optional>
#include <utility>
#include <variant>

namespace quillmark::cli {
namespace {

namespace fs = std::filesystem;

/// One run of a command.
class Run {
public:
    Run(const Options& options, const Environment& environment, Console& console,
        const TakeList& take)
        : m_options(options), m_environment(environment), m_console(console), m_take(take)
    {
    }

    void installed();
    void scan();
    void check();
    std::vector<InputError> takeErrors() { return std::move(m_errors); }

private:
    std::vector<FontFacts> installedFonts();
    std::vector<FontFacts> fontsOfFolder(const fs::path& folder);
    std::optional<FontList> scanned(const fs::path& input);
    const LicenseFile::Candidates& licensesIn(const fs::path& folder);
    std::vector<fs::path> readableFontFolders();
    FontIndex makeIndex(const std::vector<fs::path>& folders);
    std::optional<FontList> checked(const fs::path& path, const PDFFontScanner::Lookup& lookup);
    const Collator& order();
    void report(const fs::path& input, const std::string& reason);

    const Options& m_options;
    const Environment& m_environment;
    Console& m_console;
    const TakeList& m_take;
    std::unique_ptr<Collator> m_order;
    std::vector<InputError> m_errors;
    fs::path m_licenseFolder; // the folder that m_licenses are from
    LicenseFile::Candidates m_licenses{{}};
};

std::vector<AuditRow> judged(std::vector<FontFacts> fonts)
{
    std::vector<AuditRow> rows(fonts.size());
    forEachIndex(rows.size(), [&](std::size_t i) { rows[i] = auditRow(std::move(fonts[i])); });
    return rows;
}

void append(std::vector<FontFacts>& fonts, std::vector<FontFacts> more)
{
    std::ranges::move(more, std::back_inserter(fonts));
}

/// Made when it is first needed: a check of documents that do not open sorts nothing.
const Collator& Run::order()
{
    if (!m_order) m_order = std::make_unique<Collator>(m_environment.locale);
    return *m_order;
}

void Run::report(const fs::path& input, const std::string& reason)
{
    m_console.message(input.native() + ": " + reason);
    m_errors.push_back({shownPath(absolutePath(input)), reason});
}

std::vector<FontFacts> Run::installedFonts()
{
    const std::string activity = "Reading every installed font…";
    m_console.showProgress(activity);
    return FontLibrary::installedFonts(
        m_environment.fonts, order(), [&](std::size_t done, std::size_t total) {
            m_console.showProgress(activity + ' ' + std::to_string(done) + " of " +
                                   std::to_string(total));
        });
}

std::vector<FontFacts> Run::fontsOfFolder(const fs::path& folder)
{
    m_console.showProgress("Scanning " + shownName(folder) + "…");
    return FontLibrary::scanFolder(m_environment.fonts, order(), folder);
}

void Run::installed()
{
    FontList list;
    list.kind = FontList::Kind::installed;
    list.title = "Installed fonts";
    list.subtitle = "Every font installed on this computer";
    list.rows = judged(installedFonts());
    m_take(std::move(list));
}

void Run::scan()
{
    for (const fs::path& input : m_options.inputs) {
        std::optional<FontList> list = scanned(input);
        if (list && !m_take(*std::move(list))) return;
    }
}

std::optional<FontList> Run::scanned(const fs::path& input)
{
    const auto inspected = inspect(input);
    if (const auto* failure = std::get_if<ReadFailure>(&inspected)) {
        report(input, failure->reason);
        return std::nullopt;
    }
    const fs::path path = absolutePath(input);
    FontList list;
    list.title = shownName(path);
    list.subtitle = shownPath(path);
    list.path = list.subtitle;
    if (std::get<InputKind>(inspected) == InputKind::folder) {
        list.kind = FontList::Kind::folder;
        list.rows = judged(fontsOfFolder(path));
        return list;
    }
    list.kind = FontList::Kind::file;
    list.rows = judged(
        FontLibrary::scanFile(m_environment.fonts, order(), path, licensesIn(path.parent_path())));
    if (list.rows.empty()) {
        report(input, "Holds no font that can be read");
        return std::nullopt;
    }
    return list;
}

/// Kept for the next file: thousands of files can be named that lie in one folder.
const LicenseFile::Candidates& Run::licensesIn(const fs::path& folder)
{
    if (folder != m_licenseFolder) {
        m_licenses = LicenseFile::Candidates(licenseCandidates(folder));
        m_licenseFolder = folder;
    }
    return m_licenses;
}

void Run::check()
{
    const std::vector<fs::path> folders = readableFontFolders();
    std::string activity;
    std::optional<FontIndex> index;
    // The fonts to match are read when the first document asks: none does if none can be opened.
    const PDFFontScanner::Lookup lookup = [&](std::string_view name) {
        if (!index) {
            index.emplace(makeIndex(folders));
            m_console.showProgress(activity);
        }
        return index->lookup(name, m_environment.fonts);
    };
    const std::size_t count = m_options.inputs.size();
    for (std::size_t i = 0; i < count; ++i) {
        const fs::path path = absolutePath(m_options.inputs[i]);
        activity = "Checking " + shownName(path) + "…";
        if (count > 1) activity += ' ' + std::to_string(i + 1) + " of " + std::to_string(count);
        m_console.showProgress(activity);
        std::optional<FontList> list = checked(path, lookup);
        if (list && !m_take(*std::move(list))) return;
    }
}

std::vector<fs::path> Run::readableFontFolders()
{
    std::vector<fs::path> folders;
    for (const fs::path& folder : m_options.fontFolders) {
        const auto inspected = inspect(folder);
        if (const auto* failure = std::get_if<ReadFailure>(&inspected))
            report(folder, failure->reason);
        else if (std::get<InputKind>(inspected) != InputKind::folder)
            report(folder, "Not a folder");
        else
            folders.push_back(absolutePath(folder));
    }
    return folders;
}

FontIndex Run::makeIndex(const std::vector<fs::path>& folders)
{
    std::vector<FontFacts> fonts;
    if (m_options.matchInstalled) fonts = installedFonts();
    for (const fs::path& folder : folders)
        append(fonts, fontsOfFolder(folder));
    const auto instances = FontLibrary::namedInstances(m_environment.fonts, fonts);
    return {fonts, m_options.matchInstalled, instances};
}

std::optional<FontList> Run::checked(const fs::path& path, const PDFFontScanner::Lookup& lookup)
{
    auto result = PDFFontScanner::audit(path, lookup, m_environment.clock);
    if (const auto* error = std::get_if<PDFCheckError>(&result)) {
        m_console.message(error->message());
        m_errors.push_back({shownPath(path), error->message()});
        return std::nullopt;
    }
    auto& audit = std::get<DocumentAudit>(result);
    FontList list;
    list.kind = FontList::Kind::document;
    list.title = audit.fileName;
    list.subtitle =
        "Fonts in " + audit.fileName + " (" + std::to_string(audit.pageCount) + " pages)";
    list.path = std::move(audit.path);
    list.document = FontList::Document{std::move(audit.fileName), audit.pageCount, audit.checkedAt};
    list.rows = std::move(audit.rows);
    return list;
}

} // namespace

std::vector<InputError> execute(const Options& options, const Environment& environment,
                                Console& console, const TakeList& take)
{
    Run run(options, environment, console, take);
    switch (options.command) {
    case Command::installed:
        run.installed();
        break;
    case Command::scan:
        run.scan();
        break;
    case Command::check:
        run.check();
        break;
    }
    return run.takeErrors();
}

} // namespace quillmark::cli
