#include "app/model/ModelFixture.h"

#include <new>

namespace quillmark::test {
namespace {

using testing::ElementsAre;

class InstalledScan : public ModelFixture {};

TEST_F(InstalledScan, GivesOneAssessedRowForEachFontInTheOrderOfTheReader)
{
    install(*fonts, likelyOKFont());
    install(*fonts, restrictedFont());
    model->scanInstalled();
    background.runAll();
    const auto rows = model->installed().span();
    EXPECT_THAT(displayNames(rows), ElementsAre("Acme Bold", "Cedar Regular"));
    EXPECT_EQ(rows[0].assessment.verdict, Verdict::restricted);
    EXPECT_EQ(rows[1].assessment.verdict, Verdict::likelyOK);
    EXPECT_EQ(rows[0].facts.origin, FontOrigin::installed);
}

TEST_F(InstalledScan, SaysThatItRunsAndThatItHasEnded)
{
    model->scanInstalled();
    EXPECT_TRUE(model->scanningInstalled());
    EXPECT_FALSE(model->installedScanned());
    background.runAll();
    EXPECT_FALSE(model->scanningInstalled());
    EXPECT_TRUE(model->installedScanned());
    model->scanInstalled();
    EXPECT_TRUE(model->installedScanned());
}

TEST_F(InstalledScan, HasItsRowsBeforeItSaysThatItHasEnded)
{
    install(*fonts, unknownFont());
    std::size_t rowsAtTheEnd = 0;
    QObject::connect(model.get(), &AppModel::scanningInstalledChanged, model.get(), [&] {
        if (!model->scanningInstalled()) rowsAtTheEnd = model->installed().size();
    });
    model->scanInstalled();
    background.runAll();
    EXPECT_EQ(rowsAtTheEnd, 1U);
}

TEST_F(InstalledScan, ARescanReplacesTheRowsAndKeepsThemMeanwhile)
{
    install(*fonts, unknownFont());
    model->scanInstalled();
    background.runAll();
    fonts = std::make_shared<FakeFontService>();
    install(*fonts, likelyOKFont());
    model->scanInstalled();
    EXPECT_THAT(displayNames(model->installed().span()), ElementsAre("Brook"));
    background.runAll();
    EXPECT_THAT(displayNames(model->installed().span()), ElementsAre("Cedar Regular"));
}

TEST_F(InstalledScan, ARescanThatFindsTheSameNotifiesNobodyAboutRows)
{
    install(*fonts, unknownFont());
    model->scanInstalled();
    background.runAll();
    const AuditRow* before = model->installed().span().data();
    const auto installed = count(&AppModel::installedChanged);
    const auto list = count(&AppModel::listChanged);
    const auto scanning = count(&AppModel::scanningInstalledChanged);
    const auto scanned = count(&AppModel::installedScannedChanged);
    model->scanInstalled();
    background.runAll();
    EXPECT_EQ(*installed, 0);
    EXPECT_EQ(*list, 0);
    EXPECT_EQ(*scanning, 2);
    EXPECT_EQ(*scanned, 0);
    EXPECT_EQ(model->installed().span().data(), before);
}

TEST_F(InstalledScan, ItsRowsAndThoseOfFoldersCanBeShownWithoutFurtherWork)
{
    install(*fonts, unknownFont());
    model->scanInstalled();
    model->scanFolder(addFolder("one", {likelyOKFont()}), AppModel::Select::no);
    background.runAll();
    EXPECT_TRUE(model->installed().isPrepared());
    EXPECT_TRUE(model->folders().at(0).rows.isPrepared());
}

TEST_F(InstalledScan, OfTwoAtOnceTheLaterOneStays)
{
    install(*fonts, unknownFont());
    model->scanInstalled();
    fonts = std::make_shared<FakeFontService>();
    install(*fonts, likelyOKFont());
    model->scanInstalled();
    background.runOne(1);
    EXPECT_TRUE(model->scanningInstalled());
    background.runOne();
    EXPECT_FALSE(model->scanningInstalled());
    EXPECT_THAT(displayNames(model->installed().span()), ElementsAre("Cedar Regular"));
}

TEST_F(InstalledScan, WhatHappensWithoutAModelIsForgotten)
{
    model->scanInstalled();
    model->scanFolder(addFolder("one", {}), AppModel::Select::yes);
    model->checkDocuments({addDocument("a.pdf")});
    model.reset();
    background.runAll();
    EXPECT_EQ(background.waiting(), 0U);
    EXPECT_EQ(savedFolders(), std::nullopt);
}

/// Cannot even list.
class FailingFontService final : public FontService {
public:
    [[nodiscard]] std::vector<std::string> installedNames() const override
    {
        throw std::bad_alloc();
    }
    [[nodiscard]] std::optional<PlatformFont>
    installedFont(std::string_view /*postScriptName*/) const override
    {
        throw std::bad_alloc();
    }
    [[nodiscard]] std::vector<PlatformFont> facesOf(const std::string& /*file*/,
                                                    Faces /*which*/) const override
    {
        throw std::bad_alloc();
    }
};

TEST_F(InstalledScan, WantOfMemoryIsAnAlertAndKeepsWhatWasThere)
{
    install(*fonts, unknownFont());
    model->scanInstalled();
    const auto scanned = addScannedFolder("one", {likelyOKFont()});
    const AppEnvironment failing{
        .prompts = prompts,
        .background = background,
        .fontService = [] { return std::make_shared<FailingFontService>(); },
        .clock = [this] { return now; },
        .makeUUID = nullptr,
        .places = places,
        .locale = "en",
    };
    model = std::make_unique<AppModel>(failing, AppModel::Persistence::on);
    model->scanInstalled();
    background.runAll();
    EXPECT_EQ(model->alert(), "The installed fonts could not be read: There is not enough memory.");
    EXPECT_FALSE(model->scanningInstalled());
    model->setAlert(std::nullopt);
    model->scanFolder(scanned, AppModel::Select::yes);
    background.runAll();
    EXPECT_EQ(model->alert(), scanned.native() + " could not be read: There is not enough memory.");
    EXPECT_EQ(model->scanningFolder(), std::nullopt);
    EXPECT_EQ(savedFolders(), (std::vector<std::string>{scanned}));
    model->setAlert(std::nullopt);
    model->checkDocuments({addDocument("a.pdf")});
    background.runAll();
    EXPECT_EQ(model->alert(), (folder.path() / "a.pdf").native() +
                                  " could not be checked: There is not enough memory.");
    EXPECT_EQ(model->checkingDocument(), std::nullopt);
}

} // namespace
} // namespace quillmark::test
