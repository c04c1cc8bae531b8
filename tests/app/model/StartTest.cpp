#include "app/model/ModelFixture.h"

namespace quillmark::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Start : public ModelFixture {};

TEST_F(Start, EverythingIsEmptyBefore)
{
    EXPECT_TRUE(model->persist());
    EXPECT_TRUE(model->installed().empty());
    EXPECT_FALSE(model->scanningInstalled());
    EXPECT_FALSE(model->installedScanned());
    EXPECT_THAT(model->folders(), IsEmpty());
    EXPECT_EQ(model->scanningFolder(), std::nullopt);
    EXPECT_THAT(model->documents(), IsEmpty());
    EXPECT_EQ(model->checkingDocument(), std::nullopt);
    EXPECT_EQ(model->selection(), SidebarItem::installed());
    EXPECT_FALSE(model->showHelp());
    EXPECT_EQ(model->alert(), std::nullopt);
}

TEST_F(Start, FirstLaunchScansTheInstalledFontsAlone)
{
    install(*fonts, unknownFont());
    model->start();
    EXPECT_EQ(background.waiting(), 1U);
    EXPECT_TRUE(model->scanningInstalled());
    EXPECT_EQ(model->scanningFolder(), std::nullopt);
    background.runAll();
    ASSERT_TRUE(model->list());
    EXPECT_THAT(displayNames(model->list()->rows.span()), ElementsAre("Brook"));
    EXPECT_THAT(model->folders(), IsEmpty());
    EXPECT_EQ(savedFolders(), std::nullopt);
}

TEST_F(Start, RemembersTheFoldersOfTheLastRun)
{
    const auto first = addScannedFolder("first", {unknownFont()});
    const auto second = addScannedFolder("second", {});
    makeModel(AppModel::Persistence::on);
    EXPECT_THAT(model->folders(), IsEmpty());
    model->start();
    background.runAll();
    EXPECT_THAT(folderPaths(), ElementsAre(first, second));
    EXPECT_THAT(displayNames(model->folders()[0].rows.span()), ElementsAre("Brook"));
}

TEST_F(Start, RememberedFoldersKeepTheirOrderWhicheverScanEndsFirst)
{
    const auto first = addFolder("first", {});
    const auto second = addFolder("second", {});
    saveFolders({first, second});
    model->start();
    ASSERT_EQ(background.waiting(), 3U);
    background.runOne(2);
    EXPECT_THAT(folderPaths(), ElementsAre(second));
    EXPECT_EQ(savedFolders(), (std::vector<std::string>{first, second}));
    background.runAll();
    EXPECT_THAT(folderPaths(), ElementsAre(first, second));
}

TEST_F(Start, QuittingDuringTheScansForgetsNoFolder)
{
    const auto first = addFolder("first", {});
    const auto second = addFolder("second", {});
    saveFolders({first, second});
    model->start();
    const auto third = addFolder("third", {});
    model->scanFolder(third, AppModel::Select::yes);
    background.runOne(3);
    EXPECT_THAT(folderPaths(), ElementsAre(third));
    makeModel(AppModel::Persistence::on);
    background.runAll();
    EXPECT_EQ(savedFolders(), (std::vector<std::string>{first, second, third}));
}

TEST_F(Start, RememberedFoldersAreNeitherShownNorReportedWhenEmpty)
{
    saveFolders({addFolder("empty", {})});
    model->start();
    background.runAll();
    EXPECT_EQ(model->selection(), SidebarItem::installed());
    EXPECT_EQ(model->alert(), std::nullopt);
}

TEST_F(Start, AFolderThatIsGoneIsDroppedAtTheNextSave)
{
    const std::string gone = folder.path() / "gone";
    const auto there = addFolder("there", {});
    saveFolders({gone, there});
    model->start();
    EXPECT_EQ(background.waiting(), 2U);
    EXPECT_EQ(model->scanningFolder(), there.native());
    EXPECT_EQ(savedFolders(), (std::vector<std::string>{gone, there.native()}));
    background.runAll();
    EXPECT_THAT(folderPaths(), ElementsAre(there));
    EXPECT_EQ(model->alert(), std::nullopt);
    EXPECT_EQ(savedFolders(), (std::vector<std::string>{there.native()}));
}

TEST_F(Start, AFolderSavedTwiceIsScannedOnce)
{
    const std::string there = addFolder("there", {});
    saveFolders({there, there + "/", ""});
    model->start();
    EXPECT_EQ(background.waiting(), 2U);
    background.runAll();
    EXPECT_EQ(savedFolders(), (std::vector<std::string>{there}));
}

TEST_F(Start, AFileAmongTheSavedFoldersIsAFolderWithoutFonts)
{
    const auto file = folder.write("file.ttf", "text");
    saveFolders({file});
    model->start();
    background.runAll();
    ASSERT_THAT(folderPaths(), ElementsAre(file));
    EXPECT_TRUE(model->folders()[0].rows.empty());
}

TEST_F(Start, WithoutPersistenceNothingIsStartedOrWritten)
{
    saveFolders({addFolder("saved", {unknownFont()})});
    const auto before = savedFolders();
    makeModel(AppModel::Persistence::off);
    EXPECT_FALSE(model->persist());
    model->start();
    EXPECT_EQ(background.waiting(), 0U);
    EXPECT_FALSE(model->scanningInstalled());
    const auto other = addScannedFolder("other", {});
    model->removeFolder(other);
    EXPECT_EQ(savedFolders(), before);
    EXPECT_FALSE(std::filesystem::exists(places.dataFolder));
}

TEST_F(Start, InstalledFontsAndFoldersAreReadSideBySide)
{
    saveFolders({addFolder("one", {})});
    model->start();
    EXPECT_TRUE(model->scanningInstalled());
    EXPECT_TRUE(model->scanningFolder());
    background.runOne(1);
    EXPECT_TRUE(model->scanningInstalled());
    EXPECT_FALSE(model->scanningFolder());
    background.runOne();
    EXPECT_FALSE(model->scanningInstalled());
}

} // namespace
} // namespace quillmark::test
