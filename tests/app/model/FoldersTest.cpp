#include "app/model/ModelFixture.h"

namespace quillmark::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Folders : public ModelFixture {};

TEST_F(Folders, ThePanelAsksForOneFolder)
{
    model->chooseFolder();
    EXPECT_EQ(prompts.opened,
              (OpenPanel{OpenPanel::Choice::folder, "Scan Folder",
                         "Choose a folder with font files (.ttf, .otf, .ttc, .woff). Subfolders "
                         "are included."}));
}

TEST_F(Folders, CancellingThePanelDoesNothing)
{
    model->chooseFolder();
    EXPECT_EQ(background.waiting(), 0U);
    EXPECT_EQ(model->scanningFolder(), std::nullopt);
    model->chooseFolder();
    prompts.answerOpen({});
    EXPECT_EQ(background.waiting(), 0U);
}

TEST_F(Folders, AChosenFolderIsScannedSavedAndShown)
{
    const auto path = addFolder("Fonts", {likelyOKFont(), restrictedFont()});
    addFile(*fonts, folder, "Fonts/sub/Brook.ttf", {unknownFont()});
    model->chooseFolder();
    prompts.answerOpen({path});
    EXPECT_EQ(model->scanningFolder(), path.native());
    EXPECT_THAT(model->folders(), IsEmpty());
    EXPECT_EQ(model->selection(), SidebarItem::installed());
    background.runAll();
    EXPECT_EQ(model->scanningFolder(), std::nullopt);
    ASSERT_THAT(folderPaths(), ElementsAre(path));
    EXPECT_THAT(displayNames(model->folders()[0].rows.span()),
                ElementsAre("Acme Bold", "Brook", "Cedar Regular"));
    EXPECT_EQ(model->folders()[0].rows.span()[0].facts.origin, FontOrigin::folder);
    EXPECT_EQ(model->selection(), SidebarItem::folder(path));
    EXPECT_EQ(savedFolders(), (std::vector<std::string>{path}));
    EXPECT_EQ(model->alert(), std::nullopt);
}

TEST_F(Folders, PathsAreKeptInOneForm)
{
    const auto path = addFolder("Fonts", {});
    model->scanFolder(path / ".." / "Fonts" / "", AppModel::Select::no);
    EXPECT_EQ(model->scanningFolder(), path.native());
    background.runAll();
    EXPECT_THAT(folderPaths(), ElementsAre(path));
}

TEST_F(Folders, AFolderScannedTwiceKeepsItsPlaceWithFreshRows)
{
    const auto first = addScannedFolder("first", {unknownFont()});
    const auto second = addScannedFolder("second", {});
    addFolder("first", {likelyOKFont()});
    model->scanFolder(first, AppModel::Select::yes);
    background.runAll();
    EXPECT_THAT(folderPaths(), ElementsAre(first, second));
    EXPECT_THAT(displayNames(model->folders()[0].rows.span()),
                ElementsAre("Brook", "Cedar Regular"));
    EXPECT_EQ(savedFolders(), (std::vector<std::string>{first, second}));
}

TEST_F(Folders, AnEmptyFolderIsAddedShownAndReported)
{
    const auto path = addFolder("Empty", {});
    model->chooseFolder();
    prompts.answerOpen({path});
    background.runAll();
    ASSERT_THAT(folderPaths(), ElementsAre(path));
    EXPECT_TRUE(model->folders()[0].rows.empty());
    EXPECT_EQ(model->selection(), SidebarItem::folder(path));
    EXPECT_EQ(model->alert(), "No font files were found in Empty.");
    EXPECT_EQ(savedFolders(), (std::vector<std::string>{path}));
}

TEST_F(Folders, RescanningAnEmptyFolderReportsAndSelectsNothing)
{
    const auto path = addScannedFolder("Empty", {});
    model->setSelection(SidebarItem::checkDocument());
    model->scanFolder(path, AppModel::Select::no);
    background.runAll();
    EXPECT_EQ(model->alert(), std::nullopt);
    EXPECT_EQ(model->selection(), SidebarItem::checkDocument());
}

TEST_F(Folders, ARescanWithFreshRowsNotifiesAndOneWithTheSameDoesNot)
{
    const auto path = addScannedFolder("Fonts", {unknownFont()});
    const auto changed = count(&AppModel::foldersChanged);
    model->scanFolder(path, AppModel::Select::no);
    background.runAll();
    EXPECT_EQ(*changed, 0);
    addFolder("Fonts", {likelyOKFont()});
    model->scanFolder(path, AppModel::Select::no);
    background.runAll();
    EXPECT_EQ(*changed, 1);
}

TEST_F(Folders, OfOverlappingScansTheLatestIsShown)
{
    const auto first = addFolder("first", {});
    const auto second = addFolder("second", {});
    model->scanFolder(first, AppModel::Select::no);
    model->scanFolder(second, AppModel::Select::no);
    EXPECT_EQ(model->scanningFolder(), second.native());
    background.runOne();
    EXPECT_EQ(model->scanningFolder(), second.native());
    background.runOne();
    EXPECT_EQ(model->scanningFolder(), std::nullopt);
}

TEST_F(Folders, TheOlderScanIsShownAgainWhenTheLatestHasEnded)
{
    const auto first = addFolder("first", {});
    model->scanFolder(first, AppModel::Select::no);
    model->scanFolder(addFolder("second", {}), AppModel::Select::no);
    background.runOne(1);
    EXPECT_EQ(model->scanningFolder(), first.native());
}

TEST_F(Folders, AScanOfAFolderThatIsBeingScannedIsASecondReplacement)
{
    const auto path = addFolder("Fonts", {});
    model->scanFolder(path, AppModel::Select::no);
    model->scanFolder(path, AppModel::Select::no);
    background.runOne();
    EXPECT_TRUE(model->folders()[0].rows.empty());
    addFolder("Fonts", {unknownFont()});
    background.runOne();
    EXPECT_THAT(folderPaths(), ElementsAre(path));
    EXPECT_EQ(model->folders()[0].rows.size(), 1U);
}

TEST_F(Folders, AnOlderScanThatEndsLaterReplacesNothing)
{
    const auto path = addFolder("Fonts", {unknownFont()});
    model->scanFolder(path, AppModel::Select::no);
    model->scanFolder(path, AppModel::Select::no);
    background.runOne(1);
    fonts->files.clear();
    background.runOne();
    EXPECT_EQ(model->folders()[0].rows.size(), 1U);
}

TEST_F(Folders, RescanAllReadsEverythingAgainEachInItsOwnTask)
{
    const auto first = addScannedFolder("first", {});
    const auto second = addScannedFolder("second", {});
    addFolder("second", {unknownFont()});
    install(*fonts, likelyOKFont());
    model->rescanAll();
    EXPECT_EQ(background.waiting(), 3U);
    EXPECT_TRUE(model->scanningInstalled());
    EXPECT_EQ(model->scanningFolder(), second.native());
    background.runAll();
    EXPECT_EQ(model->installed().size(), 1U);
    EXPECT_THAT(folderPaths(), ElementsAre(first, second));
    EXPECT_EQ(model->folders()[1].rows.size(), 1U);
    EXPECT_EQ(model->selection(), SidebarItem::installed());
}

TEST_F(Folders, AFolderThatVanishedLosesItsFontsInARescan)
{
    const auto path = addScannedFolder("Fonts", {unknownFont()});
    std::filesystem::remove_all(path);
    model->rescanAll();
    background.runAll();
    ASSERT_THAT(folderPaths(), ElementsAre(path));
    EXPECT_TRUE(model->folders()[0].rows.empty());
    EXPECT_EQ(model->alert(), std::nullopt);
}

TEST_F(Folders, RemovingTheShownFolderShowsTheInstalledFonts)
{
    const auto first = addScannedFolder("first", {});
    const auto second = addScannedFolder("second", {});
    model->setSelection(SidebarItem::folder(first));
    model->removeFolder(first);
    EXPECT_THAT(folderPaths(), ElementsAre(second));
    EXPECT_EQ(model->selection(), SidebarItem::installed());
    EXPECT_EQ(savedFolders(), (std::vector<std::string>{second}));
}

TEST_F(Folders, RemovingAnotherFolderKeepsTheSelection)
{
    const auto first = addScannedFolder("first", {});
    const auto second = addScannedFolder("second", {});
    model->setSelection(SidebarItem::folder(first));
    model->removeFolder(second);
    EXPECT_EQ(model->selection(), SidebarItem::folder(first));
    model->removeFolder(first);
    EXPECT_EQ(savedFolders(), std::vector<std::string>{});
}

TEST_F(Folders, RemovingWhatIsNotThereDoesNothing)
{
    addScannedFolder("first", {});
    const auto changed = count(&AppModel::foldersChanged);
    model->removeFolder(folder.path() / "other");
    EXPECT_EQ(*changed, 0);
    EXPECT_EQ(model->folders().size(), 1U);
}

TEST_F(Folders, AFolderRemovedDuringItsRescanStaysRemoved)
{
    const auto path = addScannedFolder("Fonts", {unknownFont()});
    model->rescanAll();
    model->removeFolder(path);
    background.runAll();
    EXPECT_THAT(model->folders(), IsEmpty());
    EXPECT_EQ(model->scanningFolder(), std::nullopt);
    EXPECT_EQ(savedFolders(), std::vector<std::string>{});
}

TEST_F(Folders, AFolderRemovedDuringItsRescanAndChosenAgainIsAdded)
{
    const auto path = addScannedFolder("Fonts", {unknownFont()});
    model->rescanAll();
    model->removeFolder(path);
    model->scanFolder(path, AppModel::Select::yes);
    background.runAll();
    EXPECT_THAT(folderPaths(), ElementsAre(path));
    EXPECT_EQ(model->selection(), SidebarItem::folder(path));
}

TEST_F(Folders, SettingsOfOthersStayAsTheyAre)
{
    folder.write("config/settings.ini", "[window]\nwidth=1280\n");
    addScannedFolder("Fonts", {});
    EXPECT_EQ(savedFolders()->size(), 1U);
    EXPECT_THAT(*content(places.settingsFile), testing::HasSubstr("[window]\nwidth=1280\n"));
}

TEST_F(Folders, SettingsThatCannotBeWrittenAreReported)
{
    folder.write("config", "a file where a folder should be");
    const auto path = addScannedFolder("Fonts", {});
    EXPECT_EQ(model->alert(), places.settingsFile.native() + " could not be written.");
    EXPECT_THAT(folderPaths(), ElementsAre(path));
}

TEST_F(Folders, ANameThatIsNotUTF8IsShownRepairedAndRemembered)
{
    const auto path = addScannedFolder("b\xFC"
                                       "cher",
                                       {unknownFont()});
    ASSERT_THAT(folderPaths(), ElementsAre(path));
    EXPECT_EQ(savedFolders(),
              (std::vector<std::string>{"file://" + folder.path().native() + "/b%FCcher"}));
    model->setSelection(SidebarItem::folder(path));
    EXPECT_EQ(model->list()->title, "b\uFFFDcher");
    makeModel(AppModel::Persistence::on);
    model->start();
    background.runAll();
    ASSERT_THAT(folderPaths(), ElementsAre(path));
    EXPECT_EQ(model->folders()[0].rows.size(), 1U);
}

TEST_F(Folders, ShowInFinderRevealsThePath)
{
    model->showInFinder("/fonts/Brook.ttf");
    EXPECT_THAT(prompts.revealed, ElementsAre("/fonts/Brook.ttf"));
}

TEST_F(Folders, AnAddressIsOpenedOnlyWhenItIsOneOfTheWeb)
{
    model->openLink("https://example.com/\u00FC");
    EXPECT_THAT(prompts.openedURLs, ElementsAre("https://example.com/%C3%BC"));
    for (const std::string text : {"", "www.example.com", "file:///etc/passwd", "http://a@b",
                                   "javascript:alert(1)", "mailto:anna@example.com"})
        model->openLink(text);
    EXPECT_EQ(prompts.openedURLs.size(), 1U);
    EXPECT_EQ(model->alert(), std::nullopt);
}

TEST_F(Folders, AnAddressThatNothingOpensIsReported)
{
    prompts.opensURLs = false;
    model->openLink("https://example.com");
    EXPECT_EQ(model->alert(),
              "https://example.com could not be opened: No program for it was found.");
}

} // namespace
} // namespace quillmark::test
