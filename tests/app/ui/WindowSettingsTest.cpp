#include "ui/WindowSettings.h"

#include "model/Preferences.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace quillmark::test {
namespace {

TEST(WindowSettings, withoutAFileEverythingIsShown)
{
    const TemporaryFolder folder;
    EXPECT_EQ(WindowSettings::load(folder.path() / "settings.ini"), WindowSettings{});
    EXPECT_TRUE(WindowSettings{}.showsDetails);
    EXPECT_TRUE(WindowSettings{}.showsSidebar);
}

TEST(WindowSettings, comeBackAsTheyWereSaved)
{
    const TemporaryFolder folder;
    const auto file = folder.path() / "config" / "settings.ini";
    const WindowSettings settings{
        .geometry = QByteArray("\0\1\xff", 3),
        .splitter = "splitter",
        .listColumns = "list",
        .showsDetails = false,
        .showsSidebar = false,
    };
    settings.save(file);
    EXPECT_EQ(WindowSettings::load(file), settings);
}

TEST(WindowSettings, leaveTheFoldersOfTheModelAlone)
{
    const TemporaryFolder folder;
    const auto file = folder.path() / "settings.ini";
    ASSERT_TRUE(Preferences::setFontFolders(file, {"/fonts/a, b", "/fonts/\"c\""}));
    WindowSettings settings;
    settings.geometry = "x";
    settings.save(file);
    EXPECT_EQ(Preferences::fontFolders(file),
              (std::vector<std::string>{"/fonts/a, b", "/fonts/\"c\""}));
}

} // namespace
} // namespace quillmark::test
