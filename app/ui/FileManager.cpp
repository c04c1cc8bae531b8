#include "ui/FileManager.h"

#include "library/AbsolutePath.h"
#include "model/QtText.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDesktopServices>
#include <QUrl>

#include <chrono>
#include <system_error>

namespace quillmark {

using namespace Qt::Literals::StringLiterals;

namespace {

namespace fs = std::filesystem;

constexpr std::chrono::milliseconds patience{5'000};

bool openFolder(const fs::path& folder)
{
    return QDesktopServices::openUrl(
        QUrl::fromEncoded(QByteArray::fromStdString(fileURL(folder.native()))));
}

} // namespace

fs::path nearestThere(fs::path path)
{
    std::error_code ignored;
    while (!fs::exists(fs::symlink_status(path, ignored)) && path.has_relative_path())
        path = path.parent_path();
    return path;
}

void FileManager::reveal(const fs::path& path)
{
    std::error_code ignored;
    const fs::path shown = nearestThere(absolutePath(path));
    const fs::path folder = fs::is_directory(shown, ignored) ? shown : shown.parent_path();
    const auto fallBack = [this, folder] {
        if (!openFolder(folder)) Q_EMIT failed(folder);
    };

    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        fallBack();
        return;
    }
    QDBusMessage call = QDBusMessage::createMethodCall(
        u"org.freedesktop.FileManager1"_s, u"/org/freedesktop/FileManager1"_s,
        u"org.freedesktop.FileManager1"_s, u"ShowItems"_s);
    const QString startupID; // no launch to show on the screen
    call << QStringList(qtText(fileURL(shown.native()))) << startupID;
    auto* const watcher =
        new QDBusPendingCallWatcher(bus.asyncCall(call, static_cast<int>(patience.count())), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [watcher, fallBack] {
        if (watcher->isError()) fallBack();
        watcher->deleteLater();
    });
}

} // namespace quillmark
