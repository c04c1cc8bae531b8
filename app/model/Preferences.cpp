#include "model/Preferences.h"

#include "model/QtText.h"

#include <QSettings>
#include <QStringList>

namespace quillmark::Preferences {
namespace {

QString key()
{
    return QStringLiteral("fontFolders");
}

QString settingsPath(const std::filesystem::path& file)
{
    return qtText(file.native());
}

} // namespace

std::vector<std::string> fontFolders(const std::filesystem::path& file)
{
    const QSettings settings(settingsPath(file), QSettings::IniFormat);
    std::vector<std::string> folders;
    for (const QString& kept : settings.value(key()).toStringList())
        folders.push_back(pathFromKept(kept));
    return folders;
}

bool setFontFolders(const std::filesystem::path& file, const std::vector<std::string>& folders)
{
    QSettings settings(settingsPath(file), QSettings::IniFormat);
    QStringList kept;
    for (const std::string& folder : folders)
        kept.push_back(keptPath(folder));
    settings.setValue(key(), kept);
    settings.sync();
    return settings.status() == QSettings::NoError;
}

} // namespace quillmark::Preferences
