#include "ui/ProgramOpener.h"

#include "files/FileDescriptor.h"
#include "library/FileName.h"
#include "model/QtText.h"
#include "text/WebLink.h"

#include <QDesktopServices>
#include <QFile>
#include <QMimeDatabase>
#include <QMimeType>
#include <QUrl>

#include <algorithm>
#include <array>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>

namespace quillmark {

using namespace Qt::Literals::StringLiterals;

namespace {

/// What desktops start, install from or follow elsewhere (names of shared-mime-info). Scripts of
/// every language inherit the first one.
constexpr std::array programTypes{
    "application/x-executable"_L1,
    "application/x-sharedlib"_L1,
    "application/x-desktop"_L1,
    "application/x-mswinurl"_L1,
    "application/x-ms-dos-executable"_L1,
    "application/x-msdownload"_L1,
    "application/vnd.microsoft.portable-executable"_L1,
    "application/x-ms-shortcut"_L1,
    "application/x-bat"_L1,
    "application/x-msi"_L1,
    "application/x-java-archive"_L1,
    "application/java-archive"_L1,
    "application/x-java-jnlp-file"_L1,
    "application/vnd.appimage"_L1,
    "application/x-iso9660-appimage"_L1,
    "application/vnd.flatpak"_L1,
    "application/vnd.flatpak.ref"_L1,
    "application/vnd.snap"_L1,
    "application/vnd.debian.binary-package"_L1,
    "application/x-deb"_L1,
    "application/x-rpm"_L1,
};

bool isProgramType(const QMimeType& type)
{
    return std::ranges::any_of(programTypes,
                               [&](const QString& program) { return type.inherits(program); });
}

bool open(const std::string& url)
{
    return QDesktopServices::openUrl(
        QUrl::fromEncoded(QByteArray::fromStdString(url), QUrl::StrictMode));
}

} // namespace

bool isProgram(const std::filesystem::path& file)
{
    struct stat status {};
    constexpr mode_t anybodysRightToRun = 0111;
    // Nothing is known about what cannot be read, so it is not opened either.
    const FileDescriptor descriptor = openFile(file, O_RDONLY | O_NONBLOCK);
    if (!descriptor.isOpen() || fstat(descriptor.get(), &status) != 0) return true;
    if ((status.st_mode & anybodysRightToRun) != 0) return true;
    QFile content;
    const bool isOpen = content.open(descriptor.get(), QIODevice::ReadOnly);
    const QMimeDatabase types;
    const QString name = qtText(FileName::ofPath(file.native()));
    return !isOpen || isProgramType(types.mimeTypeForData(&content)) ||
           std::ranges::any_of(types.mimeTypesForFileName(name), isProgramType);
}

bool openWithProgram(const std::filesystem::path& file)
{
    return open(fileURL(file.native()));
}

bool openLink(std::string_view url)
{
    const auto link = webLink(url);
    return link && open(*link);
}

} // namespace quillmark
