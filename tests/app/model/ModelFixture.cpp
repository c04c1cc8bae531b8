#include "app/model/ModelFixture.h"

#include "support/SampleDocument.h"

#include <QSettings>
#include <QStringList>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <system_error>

namespace quillmark::test {

ModelFixture::ModelFixture()
    : now(std::chrono::sys_days(std::chrono::year(2026) / 3 / 14) + std::chrono::hours(9)),
      uuids{"0A1B2C3D-4444-4444-8888-999999999999", "1A1B2C3D-4444-4444-8888-999999999999",
            "2A1B2C3D-4444-4444-8888-999999999999"},
      places{folder.path() / "data" / "Quillmark", folder.path() / "config" / "settings.ini"}
{
    makeModel(AppModel::Persistence::on);
}

void ModelFixture::makeModel(AppModel::Persistence persistence)
{
    model = std::make_unique<AppModel>(AppEnvironment{
                                           .prompts = prompts,
                                           .background = background,
                                           .fontService = [this] { return fonts; },
                                           .clock = [this] { return now; },
                                           .makeUUID =
                                               [this] {
                                                   const std::string uuid = uuids.at(0);
                                                   if (uuids.size() > 1) uuids.erase(uuids.begin());
                                                   return uuid;
                                               },
                                           .places = places,
                                           .locale = "en",
                                       },
                                       persistence);
}

std::filesystem::path ModelFixture::addFolder(const std::string& name,
                                              const std::vector<FontValues>& values)
{
    const std::filesystem::path path = folder.path() / name;
    std::filesystem::create_directories(path);
    for (const FontValues& font : values)
        addFile(*fonts, folder, std::filesystem::path(name) / (font.postScriptName + ".ttf"),
                {font});
    return path;
}

std::filesystem::path ModelFixture::addScannedFolder(const std::string& name,
                                                     const std::vector<FontValues>& values)
{
    std::filesystem::path path = addFolder(name, values);
    model->scanFolder(path, AppModel::Select::no);
    background.runAll();
    return path;
}

std::filesystem::path ModelFixture::addDocument(const std::string& name, const std::string& font)
{
    return folder.write(name, sampleDocument(1, {{font, {1}, std::nullopt}}));
}

std::filesystem::path ModelFixture::addCheckedDocument(const std::string& name,
                                                       const std::string& font)
{
    std::filesystem::path path = addDocument(name, font);
    model->checkDocuments({path});
    background.runAll();
    return path;
}

std::optional<std::string> ModelFixture::content(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file) return std::nullopt;
    return std::string{std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::string> ModelFixture::namesIn(const std::filesystem::path& folder)
{
    std::vector<std::string> names;
    std::error_code ignored;
    for (const auto& entry : std::filesystem::directory_iterator(folder, ignored))
        names.push_back(entry.path().filename());
    std::ranges::sort(names);
    return names;
}

ModelFixture::Paths ModelFixture::folderPaths() const
{
    Paths paths;
    for (const FolderScan& scan : model->folders())
        paths.emplace_back(scan.path);
    return paths;
}

ModelFixture::Paths ModelFixture::documentPaths() const
{
    Paths paths;
    for (const SharedAudit& audit : model->documents())
        paths.emplace_back(audit->path);
    return paths;
}

std::optional<std::vector<std::string>> ModelFixture::savedFolders() const
{
    const QSettings settings(QString::fromStdString(places.settingsFile.native()),
                             QSettings::IniFormat);
    if (!settings.contains(QStringLiteral("fontFolders"))) return std::nullopt;
    std::vector<std::string> folders;
    for (const QString& path : settings.value(QStringLiteral("fontFolders")).toStringList())
        folders.push_back(path.toStdString());
    return folders;
}

void ModelFixture::saveFolders(const std::vector<std::string>& folders)
{
    QSettings settings(QString::fromStdString(places.settingsFile.native()), QSettings::IniFormat);
    QStringList list;
    for (const std::string& path : folders)
        list.push_back(QString::fromStdString(path));
    settings.setValue(QStringLiteral("fontFolders"), list);
}

std::vector<std::string> displayNames(std::span<const AuditRow> rows)
{
    std::vector<std::string> names;
    for (const AuditRow& row : rows)
        names.push_back(row.facts.displayName());
    return names;
}

} // namespace quillmark::test
