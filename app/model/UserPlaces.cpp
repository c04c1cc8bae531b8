#include "model/UserPlaces.h"

#include "assessment/Brand.h"
#include "model/QtText.h"

#include <QStandardPaths>

namespace quillmark {
namespace {

std::filesystem::path folderIn(QStandardPaths::StandardLocation location)
{
    return std::filesystem::path(stdText(QStandardPaths::writableLocation(location))) / Brand;
}

} // namespace

UserPlaces UserPlaces::standard()
{
    // The application's own locations would depend on the names that a main function has set.
    return {
        .dataFolder = folderIn(QStandardPaths::GenericDataLocation),
        .settingsFile = folderIn(QStandardPaths::GenericConfigLocation) / "settings.ini",
    };
}

} // namespace quillmark
