#include "ui/HandedFiles.h"

#include "model/AppModel.h"
#include "model/QtText.h"

#include <QCoreApplication>
#include <QFileOpenEvent>
#include <QUrl>

#include <chrono>
#include <system_error>
#include <utility>

namespace quillmark {

namespace fs = std::filesystem;

HandedFiles::HandedFiles(AppModel& model, QObject* parent) : QObject(parent), m_model(model)
{
    // A folder on a server that does not answer would hold up the documents for ever.
    constexpr std::chrono::seconds longest{20};
    m_patience.setSingleShot(true);
    m_patience.setInterval(longest);
    connect(&m_patience, &QTimer::timeout, this, &HandedFiles::check);
    for (const auto changed :
         {&AppModel::installedScannedChanged, &AppModel::scanningInstalledChanged,
          &AppModel::scanningFolderChanged})
        connect(&m_model, changed, this, &HandedFiles::checkWhenRead);
    QCoreApplication::instance()->installEventFilter(this);
}

bool HandedFiles::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::FileOpen) return QObject::eventFilter(watched, event);
    const QUrl url = static_cast<QFileOpenEvent*>(event)->url();
    if (const auto path = pathOfFileURL(url.toEncoded().toStdString())) open({*path});
    return true;
}

void HandedFiles::open(const std::vector<fs::path>& files)
{
    bool hasDocuments = false;
    for (const fs::path& file : files) {
        std::error_code ignored;
        if (fs::is_directory(file, ignored)) {
            m_model.scanFolder(file, AppModel::Select::yes);
        } else {
            m_documents.push_back(file);
            hasDocuments = true;
        }
    }
    if (!hasDocuments) return;
    m_model.setSelection(SidebarItem::checkDocument());
    m_patience.start();
    checkWhenRead();
}

bool HandedFiles::isReading() const
{
    return !m_model.installedScanned() || m_model.scanningInstalled() ||
           m_model.scanningFolder().has_value();
}

void HandedFiles::checkWhenRead()
{
    if (!isReading()) check();
}

void HandedFiles::check()
{
    m_patience.stop();
    const auto documents = std::exchange(m_documents, {});
    if (!documents.empty()) m_model.checkDocuments(documents);
}

} // namespace quillmark
