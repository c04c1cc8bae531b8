#include "model/AppModel.h"

#include "files/DurableFile.h"
#include "library/AbsolutePath.h"
#include "library/FileName.h"
#include "model/AuditFile.h"
#include "model/FileSentence.h"
#include "model/FontReading.h"
#include "model/Preferences.h"
#include "model/QtText.h"
#include "text/WebLink.h"

#include <QPointer>
#include <QThread>

#include <algorithm>
#include <cstddef>
#include <exception>
#include <new>
#include <system_error>
#include <type_traits>
#include <utility>
#include <variant>

namespace quillmark {
namespace {

namespace fs = std::filesystem;

constexpr auto noDocuments =
    "Drop a PDF file. (Other documents: export or print them to PDF first, "
    "then check the PDF.)";

constexpr auto nothingToExport = "There's nothing to export in this view yet.";

constexpr auto noProgram = "No program for it was found";

/// Work that could not be finished.
struct BackgroundFailure {
    std::string reason; // without a full stop
};

/// Why work that may fail with a FileError did not succeed; absent when it did.
std::optional<std::string>
failureReason(const std::variant<std::optional<FileError>, BackgroundFailure>& outcome)
{
    if (const auto* failed = std::get_if<BackgroundFailure>(&outcome)) return failed->reason;
    const auto& error = std::get<std::optional<FileError>>(outcome);
    return error ? std::optional(error->reason) : std::nullopt;
}

bool isPDF(const fs::path& file)
{
    return FileName::extension(FileName::ofPath(file.native())) == "pdf";
}

} // namespace

/// The files of one request, and how far it has come.
struct AppModel::CheckedFiles {
    std::vector<fs::path> files;
    std::size_t next{};
    RunningWork::Ticket ticket{}; // of the file being checked
    std::shared_ptr<DocumentCheck> check;
};

AppModel::AppModel(AppEnvironment environment, Persistence persistence)
    : m_environment(std::move(environment)), m_persistence(persistence),
      m_fonts(m_environment.fontService()), m_attachments(m_environment.places.attachments()),
      m_newFileMode(newFileMode()),
      m_notes(persist() ? std::optional(m_environment.places.notesFile()) : std::nullopt,
              m_attachments)
{
    m_list = listForSelection();
    for (const auto changed : {&AppModel::installedChanged, &AppModel::foldersChanged,
                               &AppModel::documentsChanged, &AppModel::selectionChanged})
        connect(this, changed, this, &AppModel::updateList);
}

AppModel::~AppModel() = default;

template <typename Value, typename Signal>
void AppModel::set(Value& property, Value value, Signal changed)
{
    Q_ASSERT(thread() == QThread::currentThread());
    if (property == value) return;
    property = std::move(value);
    Q_EMIT(this->*changed)();
}

/// Calls `then` with what `work` returns, or with a BackgroundFailure, in a variant; not at all
/// when the model is gone by then. `work` holds no part of the model.
template <typename Do, typename Then>
void AppModel::inBackground(Work kind, Do work, Then then)
{
    using Outcome = std::variant<std::invoke_result_t<Do&>, BackgroundFailure>;
    const auto outcome = std::make_shared<Outcome>(BackgroundFailure{});
    const auto run = kind == Work::reads ? &BackgroundRunner::run : &BackgroundRunner::runToEnd;
    (m_environment.background.*run)(
        [work = std::move(work), outcome]() mutable {
            try {
                *outcome = work();
            } catch (const std::bad_alloc&) {
                *outcome = BackgroundFailure{"There is not enough memory"};
            } catch (const std::exception& error) {
                *outcome = BackgroundFailure{error.what()};
            }
        },
        [model = QPointer<AppModel>(this), then = std::move(then), outcome] {
            if (model) then(std::move(*outcome));
        });
}

void AppModel::setSelection(std::optional<SidebarItem> selection)
{
    set(m_selection, std::move(selection), &AppModel::selectionChanged);
}

void AppModel::setShowHelp(bool show)
{
    set(m_showHelp, show, &AppModel::showHelpChanged);
}

void AppModel::setAlert(std::optional<std::string> alert)
{
    set(m_alert, std::move(alert), &AppModel::alertChanged);
}

std::optional<AuditList> AppModel::listForSelection() const
{
    if (!m_selection) return std::nullopt;
    switch (m_selection->kind) {
    case SidebarItem::Kind::installed:
        return AuditList::ofInstalled(m_installed);
    case SidebarItem::Kind::folder: {
        const auto found = std::ranges::find(folders(), m_selection->path, &FolderScan::path);
        if (found == folders().end()) return std::nullopt;
        return AuditList::ofFolder(*found);
    }
    case SidebarItem::Kind::document: {
        const auto found = std::ranges::find(
            m_documents, m_selection->path,
            [](const SharedAudit& audit) -> const std::string& { return audit->path; });
        if (found == m_documents.end()) return std::nullopt;
        return AuditList::ofDocument(*found);
    }
    case SidebarItem::Kind::checkDocument:
        return std::nullopt;
    }
    return std::nullopt;
}

void AppModel::updateList()
{
    set(m_list, listForSelection(), &AppModel::listChanged);
}

void AppModel::start()
{
    if (!persist()) return;
    m_notes.load();
    if (m_notes.book() != NotesBook()) Q_EMIT notesChanged();
    scanInstalled();
    m_savedFolders = Preferences::fontFolders(m_environment.places.settingsFile);
    for (const std::string& path : m_savedFolders) {
        std::error_code ignored;
        if (!path.empty() && fs::exists(path, ignored))
            m_folders.expect(absolutePath(path).native());
    }
    for (const std::string& path : std::vector(m_folders.paths()))
        scanFolder(path, Select::no);
}

void AppModel::scanInstalled()
{
    const auto ticket = m_installedScans.begin({}, {});
    set(m_scanningInstalled, true, &AppModel::scanningInstalledChanged);
    const auto fonts = m_environment.fontService();
    inBackground(
        Work::reads,
        [fonts, locale = m_environment.locale] { return readInstalledRows(*fonts, locale); },
        [this, fonts, ticket](auto outcome) {
            const bool counts = m_installedScans.end(ticket);
            auto* rows = std::get_if<RowList>(&outcome);
            if (rows != nullptr && counts) {
                m_fonts = fonts;
                set(m_installed, std::move(*rows), &AppModel::installedChanged);
            }
            set(m_scanningInstalled, m_installedScans.latest().has_value(),
                &AppModel::scanningInstalledChanged);
            set(m_installedScanned, true, &AppModel::installedScannedChanged);
            if (rows == nullptr)
                setAlert(failureSentence("The installed fonts", "read",
                                         std::get<BackgroundFailure>(outcome).reason));
        });
}

void AppModel::chooseFolder()
{
    m_environment.prompts.open(
        {
            .choice = OpenPanel::Choice::folder,
            .prompt = "Scan Folder",
            .message = "Choose a folder with font files (.ttf, .otf, .ttc, .woff). Subfolders are "
                       "included.",
        },
        [model = QPointer<AppModel>(this)](const std::vector<fs::path>& chosen) {
            if (model && !chosen.empty()) model->scanFolder(chosen.front(), Select::yes);
        });
}

void AppModel::scanFolder(const fs::path& folder, Select select)
{
    const std::string path = absolutePath(folder).native();
    const bool refreshes = select == Select::no && m_folders.contains(path);
    const auto ticket = m_folderScans.begin(path, path);
    set(m_scanningFolder, m_folderScans.latest(), &AppModel::scanningFolderChanged);
    inBackground(
        Work::reads,
        [fonts = m_fonts, locale = m_environment.locale, path] {
            return readFolderRows(*fonts, locale, path);
        },
        [this, path, select, refreshes, ticket](auto outcome) {
            const bool counts = m_folderScans.end(ticket);
            set(m_scanningFolder, m_folderScans.latest(), &AppModel::scanningFolderChanged);
            auto* rows = std::get_if<RowList>(&outcome);
            if (rows == nullptr) {
                setAlert(
                    failureSentence(path, "read", std::get<BackgroundFailure>(outcome).reason));
                return;
            }
            const bool wasRemoved = refreshes && !m_folders.contains(path);
            if (counts && !wasRemoved) finishFolderScan(path, std::move(*rows), select);
        });
}

void AppModel::finishFolderScan(const std::string& path, RowList rows, Select select)
{
    const bool isEmpty = rows.empty();
    if (m_folders.put(path, std::move(rows))) Q_EMIT foldersChanged();
    saveFolders();
    if (select == Select::no) return;
    setSelection(SidebarItem::folder(path));
    if (isEmpty) setAlert("No font files were found in " + shownName(path) + ".");
}

void AppModel::rescanAll()
{
    scanInstalled();
    for (const FolderScan& folder : std::vector(folders()))
        scanFolder(folder.path, Select::no);
}

void AppModel::removeFolder(const std::string& path)
{
    if (m_folders.remove(path)) Q_EMIT foldersChanged();
    if (m_selection == SidebarItem::folder(path)) setSelection(SidebarItem::installed());
    saveFolders();
}

void AppModel::saveFolders()
{
    if (!persist() || m_folders.paths() == m_savedFolders) return;
    const fs::path& file = m_environment.places.settingsFile;
    if (Preferences::setFontFolders(file, m_folders.paths()))
        m_savedFolders = m_folders.paths();
    else
        setAlert(shownPath(file.native()) + " could not be written.");
}

void AppModel::chooseDocuments()
{
    m_environment.prompts.open(
        {
            .choice = OpenPanel::Choice::pdfs,
            .prompt = "Check",
            .message = "Choose PDFs to list the fonts embedded in them. The files are only read, "
                       "never changed.",
        },
        [model = QPointer<AppModel>(this)](const std::vector<fs::path>& chosen) {
            if (model) model->checkDocuments(chosen);
        });
}

void AppModel::checkDocuments(const std::vector<fs::path>& files)
{
    auto checked = std::make_shared<CheckedFiles>();
    std::ranges::copy_if(files, std::back_inserter(checked->files), isPDF);
    if (checked->files.empty()) {
        setAlert(noDocuments);
        return;
    }
    std::vector<RowList> known{m_installed};
    for (const FolderScan& folder : folders())
        known.push_back(folder.rows);
    checked->check = std::make_shared<DocumentCheck>(
        m_fonts, std::move(known), m_environment.readDocument, m_environment.clock);
    checkNext(checked);
}

void AppModel::checkNext(const std::shared_ptr<CheckedFiles>& files)
{
    const fs::path file = absolutePath(files->files[files->next]);
    files->ticket = m_checks.begin(file.native(), shownName(file.native()));
    set(m_checkingDocument, m_checks.latest(), &AppModel::checkingDocumentChanged);
    inBackground(
        Work::reads, [check = files->check, file] { return check->check(file); },
        [this, files, file](auto outcome) {
            const bool counts = m_checks.end(files->ticket);
            auto* result = std::get_if<PDFFontScanner::Result>(&outcome);
            if (result == nullptr)
                setAlert(failureSentence(file.native(), "checked",
                                         std::get<BackgroundFailure>(outcome).reason));
            else if (const auto* error = std::get_if<PDFCheckError>(result))
                setAlert(error->message());
            else if (counts)
                finishCheck(file, std::get<DocumentAudit>(std::move(*result)));
            if (++files->next < files->files.size())
                checkNext(files);
            else
                set(m_checkingDocument, m_checks.latest(), &AppModel::checkingDocumentChanged);
        });
}

void AppModel::finishCheck(const fs::path& file, DocumentAudit audit)
{
    const std::string path = audit.path;
    const auto shared = std::make_shared<const DocumentAudit>(std::move(audit));
    const auto found = std::ranges::find_if(
        m_documents, [&](const SharedAudit& document) { return document->path == path; });
    m_documentFiles[path] = file;
    if (found == m_documents.end()) {
        m_documents.push_back(shared);
        Q_EMIT documentsChanged();
    } else if (**found != *shared) {
        *found = shared;
        Q_EMIT documentsChanged();
    }
    setSelection(SidebarItem::document(path));
}

void AppModel::recheck(const DocumentAudit& document)
{
    const auto file = m_documentFiles.find(document.path);
    checkDocuments({file == m_documentFiles.end() ? fs::path(document.path) : file->second});
}

void AppModel::removeDocument(const std::string& path)
{
    if (std::erase_if(m_documents, [&](const SharedAudit& audit) { return audit->path == path; }))
        Q_EMIT documentsChanged();
    m_documentFiles.erase(path);
    if (m_selection == SidebarItem::document(path)) setSelection(SidebarItem::checkDocument());
}

std::chrono::sys_seconds AppModel::now() const
{
    return std::chrono::floor<std::chrono::seconds>(m_environment.clock());
}

/// Makes a change to the notes, tells others about it, and begins to save it.
template <typename Change>
void AppModel::changeNote(const std::string& key, Change change)
{
    const auto kept = [&] {
        const LicenseNote* note = notes().note(key);
        return note == nullptr ? std::nullopt : std::optional(*note);
    };
    const auto before = kept();
    change();
    if (kept() != before) Q_EMIT notesChanged();
    saveNotes();
}

/// Goes on until all is saved that is changed meanwhile.
void AppModel::saveNotes()
{
    const auto save = m_notes.beginSave(now());
    if (!save) return;
    inBackground(
        Work::writes, [save] { return save->run(); },
        [this](const auto& outcome) {
            NotesSave::Result result;
            if (const auto* failed = std::get_if<BackgroundFailure>(&outcome))
                result.failure = failureSentence(m_environment.places.notesFile().native(),
                                                 "written", failed->reason);
            else
                result = std::get<NotesSave::Result>(outcome);
            auto ended = m_notes.endSave(result);
            if (ended.changed) Q_EMIT notesChanged();
            if (ended.failure) setAlert(std::move(ended.failure));
            saveNotes();
        });
}

void AppModel::saveNote(const LicenseNote& note, const std::string& key)
{
    changeNote(key, [&] { m_notes.edit(note, key, now()); });
}

void AppModel::attachFile(const std::string& key)
{
    m_environment.prompts.open(
        {
            .choice = OpenPanel::Choice::file,
            .prompt = "Attach",
            .message = "Choose the license, receipt or invoice for this font. A copy is kept with "
                       "your notes.",
        },
        [model = QPointer<AppModel>(this), key](const std::vector<fs::path>& chosen) {
            if (model && !chosen.empty()) model->attach(chosen.front(), key);
        });
}

void AppModel::attach(const fs::path& file, const std::string& key)
{
    const std::string fileName = shownName(file.native());
    const std::string copy = m_attachments.newName(m_environment.makeUUID, fileName);
    inBackground(
        Work::writes,
        [attachments = m_attachments, file, copy] { return attachments.copy(file, copy); },
        [this, file, fileName, copy, key](const auto& outcome) {
            if (const auto reason = failureReason(outcome))
                setAlert(failureSentence(file.native(), "attached", *reason));
            else
                m_notes.attach(copy, fileName, key, now());
            saveNotes();
        });
}

void AppModel::openAttachment(const std::string& key)
{
    const LicenseNote note = m_notes.note(key);
    if (!note.attachment) return;
    const std::string name = note.attachmentName.value_or(*note.attachment);
    const auto copy = m_attachments.find(*note.attachment);
    if (const auto* error = std::get_if<FileError>(&copy))
        setAlert(failureSentence(name, "opened", error->reason));
    else if (!m_environment.prompts.openURL(fileURL(std::get<fs::path>(copy).native())))
        setAlert(failureSentence(name, "opened", noProgram));
}

void AppModel::removeAttachment(const std::string& key)
{
    changeNote(key, [&] { m_notes.detach(key, now()); });
}

void AppModel::export_(ExportFormat format)
{
    if (!m_list) return;
    if (m_list->rows.empty()) {
        setAlert(nothingToExport);
        return;
    }
    m_environment.prompts.save(
        {.fileName = AuditFile::suggestedName(*m_list, format), .format = format},
        [model = QPointer<AppModel>(this), list = *m_list, format](const fs::path& chosen) {
            if (model) model->exportTo(chosen, list, format);
        });
}

void AppModel::exportTo(const fs::path& file, const AuditList& list, ExportFormat format)
{
    inBackground(
        Work::writes,
        [file, list, format, notes = notes(), now = m_environment.clock(), mode = m_newFileMode] {
            return AuditFile::write(file, list, format, notes, now, mode);
        },
        [this, file](const auto& outcome) {
            if (const auto reason = failureReason(outcome))
                setAlert(failureSentence(file.native(), "written", *reason));
            else
                m_environment.prompts.reveal(file);
        });
}

void AppModel::showInFinder(const fs::path& path)
{
    m_environment.prompts.reveal(path);
}

void AppModel::openLink(const std::string& address)
{
    const auto link = webLink(address);
    if (link && !m_environment.prompts.openURL(*link))
        setAlert(failureSentence(*link, "opened", noProgram));
}

} // namespace quillmark
