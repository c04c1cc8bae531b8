#include "cli/Commands.h"

#include "cli/FontNames.h"
#include "cli/Inputs.h"
#include "cli/RowSelection.h"
#include "library/AbsolutePath.h"
#include "library/FolderWalk.h"
#include "library/FontIndex.h"
#include "library/FontLibrary.h"
#include "library/LicenseFile.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <memory>
#include <optional>
#include <system_error>
#include <utility>
#include <variant>

namespace quillmark::cli {
namespace {

namespace fs = std::filesystem;

/// One run of a command, for a report that wants its fonts as a `Row`.
template <typename Row>
class Run {
public:
    Run(const Options& options, const Environment& environment, Console& console,
        const Receiver<Row>& receiver)
        : m_options(options), m_environment(environment), m_console(console), m_receiver(receiver),
          m_selection(options, environment.locale)
    {
    }

    void installed();
    void scan();
    void check();
    void show();
    std::vector<InputError> takeErrors() { return std::move(m_errors); }

private:
    using List = FontList<Row>;

    std::vector<FontLibrary::FontPlace> readInstalledFonts(FontLibrary::FontSink& sink);
    std::vector<FontLibrary::FontPlace> readFolder(const fs::path& folder,
                                                   FontLibrary::FontSink& sink);
    /// What the report needs of a font, if it is one of those that are wanted.
    struct Judged {
        std::optional<Row> row;
        std::string key; // to sort by
    };
    [[nodiscard]] Judged judged(AuditRow&& row) const;
    [[nodiscard]] Judged judged(FontFacts&& facts) const
    {
        return judged(auditRow(std::move(facts)));
    }
    void put(std::vector<Judged>&& found, List& list) const;
    std::optional<List> scanned(const fs::path& input);
    std::optional<List> named(const fs::path& input);
    const std::vector<FontFacts>& installedFonts();
    const LicenseFile::Candidates& licensesIn(const fs::path& folder);
    std::vector<fs::path> readableFontFolders();
    FontIndex makeIndex(const std::vector<fs::path>& folders);
    std::optional<List> checked(const fs::path& path, const PDFFontScanner::Lookup& lookup);
    const Collator& order();
    void report(const fs::path& input, const std::string& reason);

    const Options& m_options;
    const Environment& m_environment;
    Console& m_console;
    const Receiver<Row>& m_receiver;
    RowSelection m_selection;
    std::unique_ptr<Collator> m_order;
    std::optional<std::vector<FontFacts>> m_installed;
    std::vector<InputError> m_errors;
    fs::path m_licenseFolder; // the folder that m_licenses are from
    LicenseFile::Candidates m_licenses{{}};
};

/// Made when it is first needed: a check of documents that do not open sorts nothing.
template <typename Row>
const Collator& Run<Row>::order()
{
    if (!m_order) m_order = std::make_unique<Collator>(m_environment.locale);
    return *m_order;
}

template <typename Row>
void Run<Row>::report(const fs::path& input, const std::string& reason)
{
    m_console.message(input.native() + ": " + reason);
    m_errors.push_back({shownPath(absolutePath(input)), reason});
}

template <typename Row>
typename Run<Row>::Judged Run<Row>::judged(AuditRow&& row) const
{
    if (!m_selection.admits(row)) return {};
    std::string key = m_selection.key(row);
    return {m_receiver.makeRow(std::move(row)), std::move(key)};
}

/// Puts what is wanted into the list, in the order that is wanted.
template <typename Row>
void Run<Row>::put(std::vector<Judged>&& found, List& list) const
{
    const std::size_t count = found.size();
    std::erase_if(found, [](const Judged& font) { return !font.row; });
    list.hidden = count - found.size();
    if (m_selection.sorts()) std::ranges::stable_sort(found, {}, &Judged::key);
    list.rows.reserve(found.size());
    for (Judged& font : found)
        list.rows.push_back(std::move(*font.row));
}

/// Reads the installed fonts into `sink`.
template <typename Row>
std::vector<FontLibrary::FontPlace> Run<Row>::readInstalledFonts(FontLibrary::FontSink& sink)
{
    const std::string activity = "Reading every installed font…";
    m_console.showProgress(activity);
    FontLibrary::Progress progress;
    if (m_console.showsProgress())
        progress = [&](std::size_t done, std::size_t total) {
            m_console.showProgress(activity + ' ' + std::to_string(done) + " of " +
                                   std::to_string(total));
        };
    return FontLibrary::readInstalledFonts(m_environment.fonts, order(), sink, progress);
}

/// Reads the fonts of a folder into `sink`.
template <typename Row>
std::vector<FontLibrary::FontPlace> Run<Row>::readFolder(const fs::path& folder,
                                                         FontLibrary::FontSink& sink)
{
    m_console.showProgress("Scanning " + shownName(folder) + "…");
    return FontLibrary::readFolder(m_environment.fonts, order(), folder, sink);
}

template <typename Row>
void Run<Row>::installed()
{
    List list;
    list.source.kind = ListSource::Kind::installed;
    list.source.title = "Installed fonts";
    list.source.subtitle = "Every font installed on this computer";
    const auto judge = [this](FontFacts&& facts) { return judged(std::move(facts)); };
    FontLibrary::MadeOfFonts rows(judge);
    put(rows.itemsAt(readInstalledFonts(rows)), list);
    m_receiver.take(std::move(list));
}

template <typename Row>
void Run<Row>::scan()
{
    for (const fs::path& input : m_options.inputs) {
        std::optional<List> list = scanned(input);
        if (list && !m_receiver.take(*std::move(list))) return;
    }
}

template <typename Row>
std::optional<FontList<Row>> Run<Row>::scanned(const fs::path& input)
{
    const auto inspected = inspect(input);
    if (const auto* failure = std::get_if<ReadFailure>(&inspected)) {
        report(input, failure->reason);
        return std::nullopt;
    }
    const fs::path path = absolutePath(input);
    List list;
    list.source.title = shownName(path);
    list.source.subtitle = shownPath(path);
    list.source.path = list.source.subtitle;
    if (std::get<InputKind>(inspected) == InputKind::folder) {
        list.source.kind = ListSource::Kind::folder;
        const auto judge = [this](FontFacts&& facts) { return judged(std::move(facts)); };
        FontLibrary::MadeOfFonts rows(judge);
        put(rows.itemsAt(readFolder(path, rows)), list);
        return list;
    }
    list.source.kind = ListSource::Kind::file;
    std::vector<Judged> found;
    for (FontFacts& facts :
         FontLibrary::scanFile(m_environment.fonts, order(), path, licensesIn(path.parent_path())))
        found.push_back(judged(std::move(facts)));
    if (found.empty()) {
        report(input, "Holds no font that can be read");
        return std::nullopt;
    }
    put(std::move(found), list);
    return list;
}

/// Kept for the next file: thousands of files can be named that lie in one folder.
template <typename Row>
const LicenseFile::Candidates& Run<Row>::licensesIn(const fs::path& folder)
{
    if (folder != m_licenseFolder) {
        m_licenses = LicenseFile::Candidates(licenseCandidates(folder));
        m_licenseFolder = folder;
    }
    return m_licenses;
}

template <typename Row>
void Run<Row>::check()
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
        std::optional<List> list = checked(path, lookup);
        if (list && !m_receiver.take(*std::move(list))) return;
    }
}

template <typename Row>
void Run<Row>::show()
{
    for (const fs::path& input : m_options.inputs) {
        // A name is a file's if there is one, and cannot be a font's when it leads into a folder.
        std::error_code ignored;
        const bool isFile = input.has_parent_path() || fs::exists(input, ignored);
        std::optional<List> list;
        if (fs::is_directory(input, ignored))
            report(input, "A folder; quillmark-cli scan lists its fonts");
        else
            list = isFile ? scanned(input) : named(input);
        if (list && !m_receiver.take(*std::move(list))) return;
    }
}

/// Read once, when a name turns out to be no PostScript name.
template <typename Row>
const std::vector<FontFacts>& Run<Row>::installedFonts()
{
    if (m_installed) return *m_installed;
    FontLibrary::MadeOfFonts facts(FontLibrary::asTheyAre);
    const auto places = readInstalledFonts(facts);
    return m_installed.emplace(facts.itemsAt(places));
}

template <typename Row>
std::optional<FontList<Row>> Run<Row>::named(const fs::path& input)
{
    const std::string name = shownPath(input);
    std::vector<FontFacts> fonts;
    if (auto font = FontLibrary::installedFont(m_environment.fonts, name))
        fonts.push_back(*std::move(font));
    else
        fonts = fontsCalled(name, installedFonts(), m_environment.locale);
    if (fonts.empty()) {
        std::string reason = "No installed font has this name";
        if (const auto near = fontNameNear(name, installedFonts(), m_environment.locale))
            reason += "; did you mean \"" + *near + "\"?";
        m_console.message(name + ": " + reason);
        m_errors.push_back({name, reason});
        return std::nullopt;
    }
    List list;
    list.source.kind = ListSource::Kind::named;
    list.source.title = name;
    list.source.subtitle = "Installed fonts called " + name;
    std::vector<Judged> found;
    found.reserve(fonts.size());
    for (FontFacts& font : fonts)
        found.push_back(judged(std::move(font)));
    put(std::move(found), list);
    return list;
}

template <typename Row>
std::vector<fs::path> Run<Row>::readableFontFolders()
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

template <typename Row>
FontIndex Run<Row>::makeIndex(const std::vector<fs::path>& folders)
{
    std::vector<FontFacts> fonts;
    const auto read = [&fonts](auto reading) {
        FontLibrary::MadeOfFonts facts(FontLibrary::asTheyAre);
        std::ranges::move(facts.itemsAt(reading(facts)), std::back_inserter(fonts));
    };
    if (m_options.matchInstalled)
        read([this](FontLibrary::FontSink& sink) { return readInstalledFonts(sink); });
    for (const fs::path& folder : folders)
        read([&](FontLibrary::FontSink& sink) { return readFolder(folder, sink); });
    const auto instances = FontLibrary::namedInstances(m_environment.fonts, fonts);
    return {fonts, m_options.matchInstalled, instances};
}

template <typename Row>
std::optional<FontList<Row>> Run<Row>::checked(const fs::path& path,
                                               const PDFFontScanner::Lookup& lookup)
{
    auto result =
        PDFFontScanner::audit(path, m_environment.readDocument, lookup, m_environment.clock);
    if (const auto* error = std::get_if<PDFCheckError>(&result)) {
        m_console.message(error->message());
        m_errors.push_back({shownPath(path), error->message()});
        return std::nullopt;
    }
    auto& audit = std::get<DocumentAudit>(result);
    List list;
    list.source.kind = ListSource::Kind::document;
    list.source.title = audit.fileName;
    list.source.subtitle =
        "Fonts in " + audit.fileName + " (" + std::to_string(audit.pageCount) + " pages)";
    list.source.path = std::move(audit.path);
    list.source.document =
        ListSource::Document{std::move(audit.fileName), audit.pageCount, audit.checkedAt};
    std::vector<Judged> found;
    found.reserve(audit.rows.size());
    for (AuditRow& row : audit.rows)
        found.push_back(judged(std::move(row)));
    put(std::move(found), list);
    return list;
}

} // namespace

template <typename Row>
std::vector<InputError> execute(const Options& options, const Environment& environment,
                                Console& console, const Receiver<Row>& receiver)
{
    Run<Row> run(options, environment, console, receiver);
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
    case Command::show:
        run.show();
        break;
    case Command::notes:
    case Command::explain:
    case Command::completion:
        break; // have no fonts
    }
    return run.takeErrors();
}

template std::vector<InputError> execute<AuditRow>(const Options&, const Environment&, Console&,
                                                   const Receiver<AuditRow>&);
template std::vector<InputError> execute<TextRow>(const Options&, const Environment&, Console&,
                                                  const Receiver<TextRow>&);

} // namespace quillmark::cli
