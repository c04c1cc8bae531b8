#include "ui/DesktopPrompts.h"

#include "assessment/Brand.h"
#include "library/FileName.h"
#include "model/FileSentence.h"
#include "model/QtText.h"
#include "text/Printable.h"
#include "ui/ProgramOpener.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QMessageBox>
#include <QSettings>
#include <QStandardPaths>
#include <QUrl>

#include <algorithm>
#include <array>
#include <string_view>
#include <system_error>
#include <utility>

namespace quillmark {

using namespace Qt::Literals::StringLiterals;

namespace {

namespace fs = std::filesystem;

/// How a panel for each choice differs, in the order of OpenPanel::Choice.
struct ChoiceLook {
    OpenPanel::Choice choice{};
    QLatin1StringView purpose; // its key in the settings
    QFileDialog::FileMode mode{};
    QLatin1StringView filter; // empty: every file
    QStandardPaths::StandardLocation first{};
};

// Filters tell capitals from small letters on some desktops.
constexpr std::array choices{
    ChoiceLook{OpenPanel::Choice::folder,
               "fontFolder"_L1,
               QFileDialog::Directory,
               {},
               QStandardPaths::HomeLocation},
    ChoiceLook{OpenPanel::Choice::file,
               "attachment"_L1,
               QFileDialog::ExistingFile,
               {},
               QStandardPaths::DocumentsLocation},
    ChoiceLook{OpenPanel::Choice::pdfs, "document"_L1, QFileDialog::ExistingFiles,
               "PDF documents (*.pdf *.PDF *.[pP][dD][fF])"_L1, QStandardPaths::DocumentsLocation},
};

struct FormatLook {
    ExportFormat format;
    std::string_view suffix; // with the full stop
    QLatin1StringView title;
    QLatin1StringView filter;
};

constexpr std::array formats{
    FormatLook{ExportFormat::csv, ".csv", "Export as CSV"_L1, "CSV (*.csv *.CSV)"_L1},
    FormatLook{ExportFormat::pdf, ".pdf", "Export as PDF"_L1, "PDF (*.pdf *.PDF)"_L1},
};

constexpr auto exportPurpose = "export"_L1;

const ChoiceLook& lookOf(OpenPanel::Choice choice)
{
    return *std::ranges::find(choices, choice, &ChoiceLook::choice);
}

const FormatLook& lookOf(ExportFormat format)
{
    return *std::ranges::find(formats, format, &FormatLook::format);
}

/// Panels of the desktop do not ask whether a file may be replaced that only the suffix makes the
/// chosen one, so the suffix is not left to them.
fs::path withSuffix(const fs::path& file, std::string_view suffix)
{
    const bool hasOne = FileName::ofPath(file.native()).find('.') != std::string_view::npos;
    return hasOne ? file : fs::path(file.native() + std::string(suffix));
}

/// With every byte of the name, also of one that is not UTF-8: those stay encoded in the URL.
fs::path pathOf(const QUrl& url)
{
    return QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1()).toStdString();
}

std::vector<fs::path> pathsOf(const QList<QUrl>& urls)
{
    std::vector<fs::path> paths;
    for (const QUrl& url : urls)
        if (url.isLocalFile()) paths.push_back(pathOf(url));
    return paths;
}

/// Qt's own panel, where the desktop has none, proposes how a name may go on in a pop-up that has
/// grabbed the keyboard. When the panel goes with the pop-up still open the window never learns
/// that the focus is its own again.
class FilePanel final : public QFileDialog {
public:
    using QFileDialog::QFileDialog;

protected:
    void done(int result) override
    {
        if (QWidget* const popup = QApplication::activePopupWidget()) popup->close();
        QFileDialog::done(result);
    }
};

bool isSeenByQt(const fs::path& folder)
{
    std::error_code ignored;
    return stdText(qtText(folder.native())) == folder.native() && fs::is_directory(folder, ignored);
}

QString settingsKey(QLatin1StringView purpose)
{
    return "panels/"_L1 + purpose;
}

QString firstFolder(QStandardPaths::StandardLocation location)
{
    const QString folder = QStandardPaths::writableLocation(location);
    return QDir(folder).exists() ? folder : QDir::homePath();
}

} // namespace

DesktopPrompts::DesktopPrompts(fs::path settingsFile) : m_settingsFile(std::move(settingsFile))
{
    connect(&m_fileManager, &FileManager::failed, this, [this](const fs::path& folder) {
        Q_EMIT failed(
            failureSentence(folder.native(), "shown", "No program for folders was found"));
    });
}

bool DesktopPrompts::raisesOpenPanel() const
{
    if (!m_panel) return false;
    m_panel->raise();
    m_panel->activateWindow();
    return true;
}

QString DesktopPrompts::startFolder(QLatin1StringView purpose,
                                    QStandardPaths::StandardLocation first) const
{
    const QSettings settings(qtText(m_settingsFile.native()), QSettings::IniFormat);
    const fs::path kept = pathFromKept(settings.value(settingsKey(purpose)).toString());
    return isSeenByQt(kept) ? qtText(kept.native()) : firstFolder(first);
}

void DesktopPrompts::rememberFolder(QLatin1StringView purpose, const fs::path& chosen) const
{
    QSettings settings(qtText(m_settingsFile.native()), QSettings::IniFormat);
    settings.setValue(settingsKey(purpose), keptPath(chosen.parent_path().native()));
}

void DesktopPrompts::show(QFileDialog* panel)
{
    // Windows of other programs' files, such as those of a server, are none that can be read.
    panel->setSupportedSchemes({u"file"_s});
    panel->setOption(QFileDialog::HideNameFilterDetails);
    connect(panel, &QDialog::finished, panel, &QObject::deleteLater);
    connect(panel, &QDialog::rejected, this, [this] { m_panel.clear(); });
    m_panel = panel;
    panel->open();
}

void DesktopPrompts::open(const OpenPanel& panel, std::function<void(std::vector<fs::path>)> chosen)
{
    if (raisesOpenPanel()) return;
    const ChoiceLook& look = lookOf(panel.choice);
    auto* const dialog = new FilePanel(m_window, qtText(panel.message),
                                       startFolder(look.purpose, look.first), QString(look.filter));
    dialog->setFileMode(look.mode);
    dialog->setOption(QFileDialog::ShowDirsOnly, look.mode == QFileDialog::Directory);
    dialog->setLabelText(QFileDialog::Accept, qtText(panel.prompt));
    connect(dialog, &QDialog::accepted, this, [this, dialog, &look, chosen = std::move(chosen)] {
        std::vector<fs::path> paths = pathsOf(dialog->selectedUrls());
        m_panel.clear(); // whoever is called now may open the next one
        if (paths.empty()) return;
        rememberFolder(look.purpose, paths.front());
        chosen(std::move(paths));
    });
    show(dialog);
}

void DesktopPrompts::save(const SavePanel& panel, std::function<void(fs::path)> chosen)
{
    if (raisesOpenPanel()) return;
    const FormatLook& look = lookOf(panel.format);
    auto* const dialog = new FilePanel(
        m_window, QString(look.title),
        startFolder(exportPurpose, QStandardPaths::DocumentsLocation), QString(look.filter));
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setFileMode(QFileDialog::AnyFile);
    dialog->selectFile(qtText(panel.fileName));
    connect(dialog, &QDialog::accepted, this, [this, dialog, &look, chosen = std::move(chosen)] {
        const std::vector<fs::path> paths = pathsOf(dialog->selectedUrls());
        m_panel.clear();
        if (paths.empty()) return;
        rememberFolder(exportPurpose, paths.front());
        const fs::path file = withSuffix(paths.front(), look.suffix);
        std::error_code ignored;
        if (file != paths.front() && fs::exists(file, ignored))
            askToReplace(file, chosen);
        else
            chosen(file);
    });
    show(dialog);
}

void DesktopPrompts::askToReplace(const fs::path& file, std::function<void(fs::path)> chosen)
{
    auto* const question = new QMessageBox(
        QMessageBox::Warning, qtText(Brand),
        qtText(printable(shownName(file.native())) + " already exists. Do you want to replace it?"),
        QMessageBox::Yes | QMessageBox::No, m_window);
    question->setTextFormat(Qt::PlainText);
    question->setDefaultButton(QMessageBox::No);
    connect(question, &QDialog::finished, question, &QObject::deleteLater);
    connect(question, &QDialog::finished, this, [file, chosen = std::move(chosen)](int answer) {
        if (answer == QMessageBox::Yes) chosen(file);
    });
    question->open();
}

void DesktopPrompts::reveal(const fs::path& path)
{
    m_fileManager.reveal(path);
}

bool DesktopPrompts::openURL(const std::string& url)
{
    if (!url.starts_with("file:")) return openLink(url);
    const fs::path file = pathFromKept(qtText(url));
    std::error_code ignored;
    if (!fs::is_regular_file(file, ignored)) return false;
    if (!isProgram(file)) return openWithProgram(file);
    reveal(file);
    return true;
}

} // namespace quillmark
