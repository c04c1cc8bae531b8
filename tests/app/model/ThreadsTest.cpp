#include "app/model/FakePrompts.h"
#include "library/SystemFontService.h"
#include "model/AppModel.h"
#include "model/RandomUUID.h"
#include "model/ThreadPoolRunner.h"
#include "notes/NotesBook.h"
#include "support/FontBytes.h"
#include "support/SampleDocument.h"
#include "support/TemporaryFolder.h"

#include <QCoreApplication>
#include <QEventLoop>

#include <gmock/gmock.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>

namespace quillmark::test {
namespace {

/// The model with all that it has in the application but for the panels.
class ModelOnThreads : public testing::Test {
protected:
    [[nodiscard]] std::unique_ptr<AppModel> makeModel()
    {
        return std::make_unique<AppModel>(
            AppEnvironment{
                .prompts = prompts,
                .background = *runner,
                .fontService = [] { return std::make_shared<SystemFontService>(); },
                .clock = std::chrono::system_clock::now,
                .makeUUID = randomUUID,
                .places = {folder.path() / "data", folder.path() / "settings.ini"},
            },
            AppModel::Persistence::on);
    }

    /// A folder with one font file.
    std::filesystem::path addFontFolder(const std::string& name, const std::u16string& family)
    {
        const Bytes font = FontBytes{}
                               .face()
                               .name(1, family)
                               .name(6, family)
                               .name(0, u"Copyright Anna")
                               .os2({.fsType = 0})
                               .build();
        return folder.write(std::filesystem::path(name) / "font.ttf", font).parent_path();
    }
    std::filesystem::path addDocument(const std::string& name, const std::string& font)
    {
        return folder.write(name, sampleDocument(1, {{font, {1}, std::nullopt}}));
    }

    template <typename Condition>
    static void waitFor(Condition condition)
    {
        while (!condition())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    static bool isIdle(const AppModel& model)
    {
        return !model.scanningInstalled() && !model.scanningFolder() && !model.checkingDocument();
    }

    TemporaryFolder folder;
    FakePrompts prompts;
    int argumentCount{};
    QCoreApplication application{argumentCount, nullptr};
    std::unique_ptr<ThreadPoolRunner> runner{std::make_unique<ThreadPoolRunner>()};
};

TEST_F(ModelOnThreads, DoesEverythingAtOnceAndComesToRest)
{
    const auto fonts = addFontFolder("fonts", u"Alder");
    const auto more = addFontFolder("more", u"Birch");
    const auto first = addDocument("first.pdf", "Alder");
    const auto second = addDocument("second.pdf", "Birch");
    const auto receipt = folder.write("receipt.pdf", "paid");
    const auto exported = folder.path() / "list.csv";

    const auto model = makeModel();
    model->start();
    model->scanFolder(fonts, AppModel::Select::yes);
    model->scanFolder(more, AppModel::Select::no);
    waitFor([&] { return model->folders().size() == 2; });
    model->rescanAll();
    model->checkDocuments({first, second, first});
    model->attachFile("Alder");
    prompts.answerOpen({receipt});
    model->saveNote({.text = "Hello"}, "Birch");
    model->export_(ExportFormat::csv);
    prompts.answerSave(exported);
    waitFor([&] {
        return isIdle(*model) && !prompts.revealed.empty() && model->note("Alder").attachment;
    });

    EXPECT_EQ(model->alert(), std::nullopt);
    EXPECT_TRUE(model->installedScanned());
    EXPECT_EQ(model->folders().size(), 2U);
    for (const FolderScan& scan : model->folders())
        EXPECT_EQ(scan.rows.size(), 1U) << scan.path;
    ASSERT_EQ(model->documents().size(), 2U);
    EXPECT_EQ(model->documents()[0]->rows.at(0).pdf->matchedPath, (fonts / "font.ttf").native());
    EXPECT_EQ(model->documents()[1]->rows.at(0).pdf->matchedPath, (more / "font.ttf").native());
    EXPECT_EQ(model->selection(), SidebarItem::document(first));
    std::ifstream file(exported, std::ios::binary);
    EXPECT_THAT((std::string{std::istreambuf_iterator<char>(file), {}}),
                testing::HasSubstr("Alder"));
}

TEST_F(ModelOnThreads, CanGoWhileWorkIsUnderWay)
{
    const auto fonts = addFontFolder("fonts", u"Alder");
    auto model = makeModel();
    model->start();
    model->scanFolder(fonts, AppModel::Select::yes);
    model->checkDocuments({addDocument("first.pdf", "Alder")});
    model.reset();
    QCoreApplication::processEvents();
    runner.reset(); // waits for what has begun
    QCoreApplication::processEvents();
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "settings.ini"));
}

TEST_F(ModelOnThreads, ManyScansOfOneFolderLeaveOneEntry)
{
    const auto fonts = addFontFolder("fonts", u"Alder");
    const auto model = makeModel();
    for (int i = 0; i < 50; ++i)
        model->scanFolder(fonts, AppModel::Select::no);
    waitFor([&] { return isIdle(*model); });
    ASSERT_EQ(model->folders().size(), 1U);
    EXPECT_EQ(model->folders()[0].rows.size(), 1U);
}

TEST_F(ModelOnThreads, TheLastOfManyEditsIsOnTheDiskWhenTheProgramHasEnded)
{
    auto model = makeModel();
    for (int i = 0; i < 200; ++i) {
        model->saveNote({.text = std::to_string(i)}, "Alder");
        if (i % 20 == 0) QCoreApplication::processEvents();
    }
    runner->finish();
    EXPECT_EQ(NotesBook::load(folder.path() / "data" / "notes.json").note("Alder")->text, "199");
    EXPECT_EQ(model->alert(), std::nullopt);
}

TEST_F(ModelOnThreads, TheLastOfManyEditsIsOnTheDiskWhenTheModelHasGone)
{
    for (int round = 0; round < 20; ++round) {
        auto model = makeModel();
        model->start();
        for (int i = 0; i < 5; ++i) {
            model->saveNote({.text = std::to_string(round) + "." + std::to_string(i)}, "Alder");
            if (i == 2) QCoreApplication::processEvents();
        }
        model.reset();
        QCoreApplication::processEvents();
    }
    runner.reset();
    EXPECT_EQ(NotesBook::load(folder.path() / "data" / "notes.json").note("Alder")->text, "19.4");
}

} // namespace
} // namespace quillmark::test
