#include "ModelFixture.h"

#include "notes/NotesBook.h"

namespace quillmark::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class Notes : public ModelFixture {
protected:
    [[nodiscard]] std::chrono::sys_seconds seconds() const
    {
        return std::chrono::floor<std::chrono::seconds>(now);
    }
};

TEST_F(Notes, AKeyWithoutANoteYieldsAnEmptyOne)
{
    EXPECT_EQ(model->notes(), NotesBook());
    EXPECT_TRUE(model->note("Brook").isEmpty());
    EXPECT_EQ(model->note("Brook"), LicenseNote());
}

TEST_F(Notes, SavingStampsTheNoteAndWritesTheBookAtOnce)
{
    now += std::chrono::milliseconds(700);
    model->saveNote({.boughtFrom = "A shop", .license = HeldLicense::desktop}, "Brook");
    EXPECT_EQ(model->note("Brook").boughtFrom, "A shop");
    EXPECT_EQ(model->note("Brook").updated, seconds());
    EXPECT_EQ(NotesBook::load(places.notesFile()), model->notes());
    EXPECT_THAT(*content(places.notesFile()), HasSubstr("2026-03-14T09:00:00Z"));
    EXPECT_EQ(model->alert(), std::nullopt);
}

TEST_F(Notes, SavingAnEmptyNoteRemovesIt)
{
    model->saveNote({.text = "Hello"}, "Brook");
    model->saveNote({}, "Brook");
    EXPECT_THAT(model->notes().notes, IsEmpty());
    EXPECT_EQ(NotesBook::load(places.notesFile()), NotesBook());
    EXPECT_THAT(*content(places.notesFile()), HasSubstr("\"notes\": {}"));
}

TEST_F(Notes, AreThereAgainInTheNextRun)
{
    model->saveNote({.text = "Hello"}, "Brook");
    makeModel(AppModel::Persistence::on);
    EXPECT_TRUE(model->note("Brook").isEmpty());
    const auto changed = count(&AppModel::notesChanged);
    model->start();
    EXPECT_EQ(*changed, 1);
    EXPECT_EQ(model->note("Brook").text, "Hello");
}

TEST_F(Notes, NotifyWhenOneChanges)
{
    const auto changed = count(&AppModel::notesChanged);
    model->start();
    model->saveNote({}, "Brook");
    EXPECT_EQ(*changed, 0);
    model->saveNote({.text = "Hello"}, "Brook");
    EXPECT_EQ(*changed, 1);
    model->saveNote({.text = "Hello"}, "Brook");
    EXPECT_EQ(*changed, 1);
    now += std::chrono::seconds(1);
    model->saveNote({.text = "Hello"}, "Brook");
    EXPECT_EQ(*changed, 2);
}

TEST_F(Notes, WithoutPersistenceStayInMemory)
{
    folder.write("data/Quillmark/notes.json", "{\"notes\": {}}");
    makeModel(AppModel::Persistence::off);
    model->start();
    model->saveNote({.text = "Hello"}, "Brook");
    EXPECT_EQ(model->note("Brook").text, "Hello");
    EXPECT_EQ(content(places.notesFile()), "{\"notes\": {}}");
    EXPECT_EQ(model->alert(), std::nullopt);
}

TEST_F(Notes, AFailedSaveIsReportedAndTheNextOneWritesTheEdit)
{
    model->start();
    std::filesystem::create_directories(places.notesFile()); // no file can replace it
    model->saveNote({.text = "First"}, "Brook");
    EXPECT_EQ(model->alert(),
              places.notesFile().native() + " could not be written: Is a directory.");
    EXPECT_EQ(model->note("Brook").text, "First");
    std::filesystem::remove(places.notesFile());
    model->saveNote({.text = "Second"}, "Cedar");
    EXPECT_EQ(NotesBook::load(places.notesFile()).note("Brook")->text, "First");
}

TEST_F(Notes, AFileThatCannotBeReadIsKeptAsideBeforeTheFirstSave)
{
    folder.write("data/Quillmark/notes.json", "{\"notes\": half of");
    model->start();
    EXPECT_EQ(model->notes(), NotesBook());
    EXPECT_EQ(model->alert(), std::nullopt);
    EXPECT_THAT(namesIn(places.dataFolder), ElementsAre("notes.json"));
    model->saveNote({.text = "Hello"}, "Brook");
    EXPECT_THAT(namesIn(places.dataFolder),
                ElementsAre("notes.json", "notes.unreadable-20260314T090000Z.json"));
    EXPECT_EQ(content(places.dataFolder / "notes.unreadable-20260314T090000Z.json"),
              "{\"notes\": half of");
    EXPECT_EQ(NotesBook::load(places.notesFile()), model->notes());
}

TEST_F(Notes, AFileThatWasNeverLoadedIsKeptAsideToo)
{
    folder.write("data/Quillmark/notes.json", "{\"notes\": {}}");
    model->saveNote({.text = "Hello"}, "Brook");
    EXPECT_THAT(namesIn(places.dataFolder),
                ElementsAre("notes.json", "notes.unreadable-20260314T090000Z.json"));
}

TEST_F(Notes, AFileThatWasReadIsNotKeptAside)
{
    folder.write("data/Quillmark/notes.json", "{\"notes\": half of");
    model->start();
    model->saveNote({.text = "One"}, "Brook");
    now += std::chrono::seconds(1);
    model->saveNote({.text = "Two"}, "Brook");
    EXPECT_EQ(namesIn(places.dataFolder).size(), 2U);
    makeModel(AppModel::Persistence::on);
    model->start();
    model->saveNote({.text = "Three"}, "Brook");
    EXPECT_EQ(namesIn(places.dataFolder).size(), 2U);
}

TEST_F(Notes, WhatCannotBeKeptAsideIsNotOverwritten)
{
    std::filesystem::create_directories(places.notesFile());
    model->start();
    model->saveNote({.text = "Hello"}, "Brook");
    EXPECT_EQ(model->alert(),
              places.notesFile().native() + " could not be written: Not a regular file.");
    EXPECT_TRUE(std::filesystem::is_directory(places.notesFile()));
    EXPECT_EQ(model->note("Brook").text, "Hello");
}

TEST_F(Notes, AnUnreadFileThatIsGoneAtTheFirstSaveIsNoObstacle)
{
    folder.write("data/Quillmark/notes.json", "half of");
    model->start();
    std::filesystem::remove(places.notesFile());
    model->saveNote({.text = "Hello"}, "Brook");
    EXPECT_EQ(model->alert(), std::nullopt);
    EXPECT_THAT(namesIn(places.dataFolder), ElementsAre("notes.json"));
}

TEST_F(Notes, WhatANewerVersionWroteIsCarriedAlong)
{
    folder.write("data/Quillmark/notes.json",
                 R"({"colour": 1, "notes": {"Brook": {"boughtFrom": "", "license": "web",
                     "url": "", "text": "", "updated": "2026-01-01T00:00:00Z", "stars": 5}}})");
    model->start();
    ASSERT_EQ(model->note("Brook").license, HeldLicense::web);
    model->saveNote({.text = "Hello"}, "Brook");
    EXPECT_THAT(*content(places.notesFile()), HasSubstr("\"colour\": 1"));
    EXPECT_THAT(*content(places.notesFile()), HasSubstr("\"stars\": 5"));
}

} // namespace
} // namespace quillmark::test
