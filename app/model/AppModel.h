// The state of the desktop application: everything that its windows show, and every operation
// behind their buttons. The windows read it, call it and listen to it; nothing here knows them.
#pragma once

#include "library/FontService.h"
#include "model/Attachments.h"
#include "model/AuditList.h"
#include "model/BackgroundRunner.h"
#include "model/FolderList.h"
#include "model/NotesStore.h"
#include "model/Prompts.h"
#include "model/RunningWork.h"
#include "model/SidebarItem.h"
#include "model/UserPlaces.h"
#include "pdf/PDFFontScanner.h"

#include <QObject>

#include <chrono>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace quillmark {

class DocumentCheck;

/// All that the model takes from the world around it.
struct AppEnvironment {
    Prompts& prompts;             // has to outlive the model
    BackgroundRunner& background; // has to outlive the model
    /// Makes a service that knows what is installed now. The one that a scan of the installed fonts
    /// has used answers further questions until the next scan.
    std::function<std::shared_ptr<const FontService>()> fontService;
    PDFFontScanner::Clock clock; // callable on any thread
    MakeUUID makeUUID;
    UserPlaces places;
    std::string locale{}; // whose order fonts are sorted in; the user's when empty
    PDFFontScanner::Read readDocument{PDFFontScanner::read}; // callable on any thread
};

/// Lives on the main thread, and may be touched only there. A property's signal comes when the
/// property has changed, and never when it was set to what it was.
class AppModel final : public QObject {
    Q_OBJECT
public:
    /// Whether anything is loaded or saved.
    enum class Persistence { off, on };
    /// Whether a scanned folder is to be shown.
    enum class Select { no, yes };

    AppModel(AppEnvironment environment, Persistence persistence);
    /// Saves notes that are not on the disk yet.
    ~AppModel() override;

    [[nodiscard]] bool persist() const { return m_persistence == Persistence::on; }
    /// One row for each installed font face, in the order of the scan.
    [[nodiscard]] const RowList& installed() const { return m_installed; }
    [[nodiscard]] bool scanningInstalled() const { return m_scanningInstalled; }
    /// Whether a scan of the installed fonts has ended at least once.
    [[nodiscard]] bool installedScanned() const { return m_installedScanned; }
    /// In the order in which they were first added. Valid until the model changes.
    [[nodiscard]] const std::vector<FolderScan>& folders() const { return m_folders.scans(); }
    /// The path of the folder being scanned; that of the latest, when several are.
    [[nodiscard]] const std::optional<std::string>& scanningFolder() const
    {
        return m_scanningFolder;
    }
    /// In the order in which they were first checked. Valid until the model changes.
    [[nodiscard]] const std::vector<SharedAudit>& documents() const { return m_documents; }
    /// The file name of the document being checked, as text; that of the latest, when several are.
    [[nodiscard]] const std::optional<std::string>& checkingDocument() const
    {
        return m_checkingDocument;
    }
    /// The user's notes by their fonts' PostScript names. Valid until the model changes.
    [[nodiscard]] const NotesBook& notes() const { return m_notes.book(); }
    /// What the main window shows.
    [[nodiscard]] const std::optional<SidebarItem>& selection() const { return m_selection; }
    void setSelection(std::optional<SidebarItem> selection);
    [[nodiscard]] bool showHelp() const { return m_showHelp; }
    void setShowHelp(bool show);
    /// The message to show to the user. A newer one replaces one that was not shown yet.
    [[nodiscard]] const std::optional<std::string>& alert() const { return m_alert; }
    void setAlert(std::optional<std::string> alert);

    /// The list for the selection; absent when that is none of fonts.
    [[nodiscard]] const std::optional<AuditList>& list() const { return m_list; }

    /// Begins what an application does when it has been launched: the notes are loaded, and the
    /// installed fonts and the remembered folders are read. Nothing without persistence. Called
    /// once.
    void start();

    /// Begins to read every installed font.
    void scanInstalled();
    /// Asks for a folder, and scans and shows it.
    void chooseFolder();
    /// Begins to scan a folder, to add it to `folders` or to refresh it. An empty folder is
    /// reported only if it is to be shown.
    void scanFolder(const std::filesystem::path& folder, Select select);
    /// Begins to read the installed fonts and all folders again.
    void rescanAll();
    /// Forgets a folder. A refreshing scan of it that is under way does not bring it back.
    void removeFolder(const std::string& path);

    /// Asks for PDFs, and checks them.
    void chooseDocuments();
    /// Begins to check those of the files that are PDFs by their names, one after the other,
    /// against the fonts known now. Each is shown when it is ready.
    void checkDocuments(const std::vector<std::filesystem::path>& files);
    /// Begins to check a document's file again.
    void recheck(const DocumentAudit& document);
    void removeDocument(const std::string& path);

    /// The note under a font's PostScript name; an empty one when there is none.
    [[nodiscard]] LicenseNote note(const std::string& key) const { return m_notes.note(key); }
    /// Keeps a note as edited and begins to save all of them. The time is filled in, and the
    /// attachment stays what it is.
    void saveNote(const LicenseNote& note, const std::string& key);
    /// Asks for a file, and begins to copy it to be attached to the note in place of any former
    /// one.
    void attachFile(const std::string& key);
    /// Opens the attached copy with the program that the user has for it.
    void openAttachment(const std::string& key);
    void removeAttachment(const std::string& key);

    /// Asks where, and begins to write the list there with the user's notes.
    void export_(ExportFormat format);

    /// Shows a file or folder in the desktop's file manager.
    void showInFinder(const std::filesystem::path& path);
    /// Opens an address, as a font or a note has it, in the browser. What is none is not opened.
    void openLink(const std::string& address);

Q_SIGNALS:
    void installedChanged();
    void scanningInstalledChanged();
    void installedScannedChanged();
    void foldersChanged();
    void scanningFolderChanged();
    void documentsChanged();
    void checkingDocumentChanged();
    void notesChanged();
    void selectionChanged();
    void showHelpChanged();
    void alertChanged();
    void listChanged();

private:
    struct CheckedFiles;

    template <typename Value, typename Signal>
    void set(Value& property, Value value, Signal changed);
    enum class Work { reads, writes };
    template <typename Do, typename Then>
    void inBackground(Work kind, Do work, Then then);
    template <typename Change>
    void changeNote(const std::string& key, Change change);
    void saveNotes();

    [[nodiscard]] std::optional<AuditList> listForSelection() const;
    void updateList();
    void saveFolders();
    void finishFolderScan(const std::string& path, RowList rows, Select select);
    void checkNext(const std::shared_ptr<CheckedFiles>& files);
    void finishCheck(const std::filesystem::path& file, DocumentAudit audit);
    [[nodiscard]] std::chrono::sys_seconds now() const;
    void attach(const std::filesystem::path& file, const std::string& key);
    void exportTo(const std::filesystem::path& file, const AuditList& list, ExportFormat format);

    AppEnvironment m_environment;
    Persistence m_persistence;
    std::shared_ptr<const FontService> m_fonts;
    Attachments m_attachments;
    unsigned m_newFileMode;

    RowList m_installed;
    bool m_scanningInstalled{};
    bool m_installedScanned{};
    FolderList m_folders;
    std::optional<std::string> m_scanningFolder;
    std::vector<SharedAudit> m_documents;
    std::optional<std::string> m_checkingDocument;
    NotesStore m_notes;
    std::optional<SidebarItem> m_selection{SidebarItem::installed()};
    bool m_showHelp{};
    std::optional<std::string> m_alert;
    std::optional<AuditList> m_list;

    RunningWork m_installedScans;
    RunningWork m_folderScans;
    RunningWork m_checks;
    std::vector<std::string> m_savedFolders; // as they stand in the settings
    /// The files of checked documents by the documents' paths, which are text and may have lost
    /// bytes that are not UTF-8.
    std::map<std::string, std::filesystem::path, std::less<>> m_documentFiles;
};

} // namespace quillmark
