#include "app/model/ModelFixture.h"

#include "notes/NotesBook.h"

namespace quillmark::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class Notes : public ModelFixture {
protected:
    /// Saves a note to the end.
    void save(const LicenseNote& note, const std::string& key)
    {
        model->saveNote(note, key);
        background.runAll();
    }
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

TEST_F(Notes, SavingStampsTheNoteAtOnceAndWritesTheBookInTheBackground)
{
    now += std::chrono::milliseconds(700);
    model->saveNote({.boughtFrom = "A shop", .license = HeldLicense::desktop}, "Brook");
    EXPECT_EQ(model->note("Brook").boughtFrom, "A shop");
    EXPECT_EQ(model->note("Brook").updated, seconds());
    EXPECT_FALSE(std::filesystem::exists(places.notesFile()));
    EXPECT_EQ(background.waiting(), 1U);
    EXPECT_EQ(background.workToEnd, 1); // leaving meanwhile must not lose the note
    background.runAll();
    EXPECT_EQ(NotesBook::load(places.notesFile()), model->notes());
    EXPECT_THAT(*content(places.notesFile()), HasSubstr("2026-03-14T09:00:00Z"));
    EXPECT_EQ(model->alert(), std::nullopt);
}

TEST_F(Notes, SavingAnEmptyNoteRemovesIt)
{
    save({.text = "Hello"}, "Brook");
    save({}, "Brook");
    EXPECT_THAT(model->notes().notes, IsEmpty());
    EXPECT_EQ(NotesBook::load(places.notesFile()), NotesBook());
    EXPECT_THAT(*content(places.notesFile()), HasSubstr("\"notes\": {}"));
}

TEST_F(Notes, AreThereAgainInTheNextRun)
{
    save({.text = "Hello"}, "Brook");
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
    save({}, "Brook");
    EXPECT_EQ(*changed, 0);
    save({.text = "Hello"}, "Brook");
    EXPECT_EQ(*changed, 1);
    save({.text = "Hello"}, "Brook");
    EXPECT_EQ(*changed, 1);
    now += std::chrono::seconds(1);
    save({.text = "Hello"}, "Brook");
    EXPECT_EQ(*changed, 2);
}

TEST_F(Notes, WithoutPersistenceStayInMemory)
{
    folder.write("data/Quillmark/notes.json", "{\"notes\": {}}");
    makeModel(AppModel::Persistence::off);
    model->start();
    save({.text = "Hello"}, "Brook");
    EXPECT_EQ(model->note("Brook").text, "Hello");
    EXPECT_EQ(content(places.notesFile()), "{\"notes\": {}}");
    EXPECT_EQ(model->alert(), std::nullopt);
}

TEST_F(Notes, AFailedSaveIsReportedAndTheNextOneWritesTheEdit)
{
    model->start();
    std::filesystem::create_directories(places.notesFile()); // no file can replace it
    save({.text = "First"}, "Brook");
    EXPECT_EQ(model->alert(),
              places.notesFile().native() + " could not be written: Not a regular file.");
    EXPECT_EQ(model->note("Brook").text, "First");
    std::filesystem::remove(places.notesFile());
    save({.text = "Second"}, "Cedar");
    EXPECT_EQ(NotesBook::load(places.notesFile()).note("Brook")->text, "First");
}

TEST_F(Notes, AFileThatCannotBeReadIsKeptAsideBeforeTheFirstSave)
{
    folder.write("data/Quillmark/notes.json", "{\"notes\": half of");
    model->start();
    EXPECT_EQ(model->notes(), NotesBook());
    EXPECT_EQ(model->alert(), std::nullopt);
    EXPECT_THAT(namesIn(places.dataFolder), ElementsAre("notes.json"));
    save({.text = "Hello"}, "Brook");
    EXPECT_THAT(namesIn(places.dataFolder),
                ElementsAre("notes.json", "notes.unreadable-20260314T090000Z.json"));
    EXPECT_EQ(content(places.dataFolder / "notes.unreadable-20260314T090000Z.json"),
              "{\"notes\": half of");
    EXPECT_EQ(NotesBook::load(places.notesFile()), model->notes());
}

TEST_F(Notes, AFileThatWasNeverLoadedIsKeptAsideToo)
{
    folder.write("data/Quillmark/notes.json", "{\"notes\": {}}");
    save({.text = "Hello"}, "Brook");
    EXPECT_THAT(namesIn(places.dataFolder),
                ElementsAre("notes.json", "notes.unreadable-20260314T090000Z.json"));
}

TEST_F(Notes, AFileThatSaysMoreThanIsReadIsKeptAsideAndItsNotesStay)
{
    const std::string text = "{\"notes\": {}, \"twice\": 1, \"twice\": 2}";
    folder.write("data/Quillmark/notes.json", text);
    model->start();
    save({.text = "Hello"}, "Brook");
    save({.text = "Hello"}, "Cedar");
    EXPECT_THAT(namesIn(places.dataFolder),
                ElementsAre("notes.json", "notes.unreadable-20260314T090000Z.json"));
    EXPECT_EQ(content(places.dataFolder / "notes.unreadable-20260314T090000Z.json"), text);
    EXPECT_THAT(*content(places.notesFile()), HasSubstr("\"twice\": 2"));
}

TEST_F(Notes, AFileThatWasReadIsNotKeptAside)
{
    folder.write("data/Quillmark/notes.json", "{\"notes\": half of");
    model->start();
    save({.text = "One"}, "Brook");
    now += std::chrono::seconds(1);
    save({.text = "Two"}, "Brook");
    EXPECT_EQ(namesIn(places.dataFolder).size(), 2U);
    makeModel(AppModel::Persistence::on);
    model->start();
    save({.text = "Three"}, "Brook");
    EXPECT_EQ(namesIn(places.dataFolder).size(), 2U);
}

TEST_F(Notes, WhatCannotBeKeptAsideIsNotOverwritten)
{
    std::filesystem::create_directories(places.notesFile());
    model->start();
    save({.text = "Hello"}, "Brook");
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
    save({.text = "Hello"}, "Brook");
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
    save({.text = "Hello"}, "Brook");
    EXPECT_THAT(*content(places.notesFile()), HasSubstr("\"colour\": 1"));
    EXPECT_THAT(*content(places.notesFile()), HasSubstr("\"stars\": 5"));
}

TEST_F(Notes, WhatChangesDuringASaveIsSavedAfterItAndAllAtOnce)
{
    model->saveNote({.text = "1"}, "Brook");
    for (const std::string text : {"2", "3", "4"})
        model->saveNote({.text = text}, "Brook");
    model->saveNote({.text = "Hello"}, "Cedar");
    EXPECT_EQ(background.waiting(), 1U);
    background.runOne();
    EXPECT_EQ(NotesBook::load(places.notesFile()).note("Brook")->text, "1");
    EXPECT_EQ(background.waiting(), 1U);
    background.runOne();
    EXPECT_EQ(NotesBook::load(places.notesFile()), model->notes());
    EXPECT_EQ(model->note("Brook").text, "4");
    EXPECT_EQ(background.waiting(), 0U);
}

TEST_F(Notes, AFailedSaveIsFollowedByOneOfWhatWasChangedMeanwhile)
{
    std::filesystem::create_directories(places.notesFile());
    model->start();
    background.runAll();
    model->saveNote({.text = "1"}, "Brook");
    model->saveNote({.text = "2"}, "Cedar");
    background.runOne();
    EXPECT_TRUE(model->alert());
    std::filesystem::remove(places.notesFile());
    EXPECT_EQ(background.waiting(), 1U);
    background.runOne();
    EXPECT_EQ(NotesBook::load(places.notesFile()), model->notes());
    EXPECT_EQ(model->notes().notes.size(), 2U);
}

TEST_F(Notes, AFailedSaveIsNotTriedAgainAndAgain)
{
    std::filesystem::create_directories(places.notesFile());
    model->start();
    background.runAll();
    model->saveNote({.text = "1"}, "Brook");
    background.runOne();
    EXPECT_EQ(background.waiting(), 0U);
}

TEST_F(Notes, WhatIsNotSavedYetIsSavedWhenTheModelGoes)
{
    model->saveNote({.text = "1"}, "Brook");
    model->saveNote({.text = "2"}, "Brook");
    const NotesBook last = model->notes();
    model.reset();
    EXPECT_EQ(NotesBook::load(places.notesFile()), last);
    // A save that begins only now has an older book.
    background.runAll();
    EXPECT_EQ(NotesBook::load(places.notesFile()), last);
}

TEST_F(Notes, ASaveThatHasNotBegunIsDoneOnlyOnceWhenTheModelGoes)
{
    model->saveNote({.text = "1"}, "Brook");
    model.reset();
    EXPECT_EQ(NotesBook::load(places.notesFile()).note("Brook")->text, "1");
    std::filesystem::remove(places.notesFile());
    background.runAll();
    EXPECT_FALSE(std::filesystem::exists(places.notesFile()));
}

TEST_F(Notes, WhatCouldNotBeSavedIsTriedOnceMoreWhenTheModelGoes)
{
    std::filesystem::create_directories(places.notesFile());
    save({.text = "1"}, "Brook");
    ASSERT_TRUE(model->alert());
    std::filesystem::remove(places.notesFile());
    model.reset();
    EXPECT_EQ(NotesBook::load(places.notesFile()).note("Brook")->text, "1");
}

TEST_F(Notes, NothingIsWrittenWhenNothingHasChanged)
{
    save({.text = "1"}, "Brook");
    std::filesystem::remove(places.notesFile());
    model->removeAttachment("Brook");
    EXPECT_EQ(background.waiting(), 0U);
    model.reset();
    EXPECT_FALSE(std::filesystem::exists(places.notesFile()));
}

/// Another program that keeps notes in the same file.
class NotesOfTwoPrograms : public Notes {
protected:
    void SetUp() override
    {
        Notes::SetUp();
        save({.text = "Ours"}, "Brook");
        save({.text = "Ours"}, "Cedar");
    }
    /// Changes the file behind the model's back.
    template <typename Change>
    void elsewhere(Change change)
    {
        NotesBook book = NotesBook::load(places.notesFile());
        change(book);
        ASSERT_EQ(book.save(places.notesFile()), std::nullopt);
    }
    [[nodiscard]] std::string onDisk(const std::string& key) const
    {
        const NotesBook book = NotesBook::load(places.notesFile());
        const LicenseNote* note = book.note(key);
        return note == nullptr ? "none" : note->text;
    }
};

TEST_F(NotesOfTwoPrograms, WhatTheOtherHasWrittenIsTakenOverAndNotified)
{
    elsewhere([](NotesBook& book) {
        book.set(LicenseNote{.text = "Theirs"}, "Dogwood");
        book.set(LicenseNote{.text = "Theirs"}, "Cedar");
    });
    model->saveNote({.text = "Edited"}, "Brook");
    const auto changed = count(&AppModel::notesChanged);
    background.runAll();
    EXPECT_EQ(*changed, 1);
    for (const std::string key : {"Dogwood", "Cedar"}) {
        EXPECT_EQ(model->note(key).text, "Theirs");
        EXPECT_EQ(onDisk(key), "Theirs");
    }
    EXPECT_EQ(onDisk("Brook"), "Edited");
    EXPECT_EQ(NotesBook::load(places.notesFile()), model->notes());
}

TEST_F(NotesOfTwoPrograms, WhatTheOtherHasRemovedIsGone)
{
    elsewhere([](NotesBook& book) { book.set(std::nullopt, "Cedar"); });
    save({.text = "Edited"}, "Brook");
    EXPECT_EQ(onDisk("Cedar"), "none");
    EXPECT_TRUE(model->note("Cedar").isEmpty());
}

TEST_F(NotesOfTwoPrograms, OfANoteThatBothHaveChangedOursStays)
{
    elsewhere([](NotesBook& book) { book.set(LicenseNote{.text = "Theirs"}, "Brook"); });
    save({.text = "Edited"}, "Brook");
    EXPECT_EQ(onDisk("Brook"), "Edited");
    EXPECT_EQ(model->note("Brook").text, "Edited");
}

TEST_F(NotesOfTwoPrograms, WhatIsEditedWhileTheirsIsTakenOverStays)
{
    elsewhere([](NotesBook& book) { book.set(LicenseNote{.text = "Theirs"}, "Cedar"); });
    model->saveNote({.text = "Edited"}, "Brook");
    model->saveNote({.text = "Edited"}, "Cedar"); // after the save has been made ready
    background.runAll();
    EXPECT_EQ(onDisk("Cedar"), "Edited");
    EXPECT_EQ(model->note("Cedar").text, "Edited");
}

TEST_F(NotesOfTwoPrograms, AnEditThatIsTakenBackDuringItsSaveDoesNotReturn)
{
    model->saveNote({.text = "Typed"}, "Dogwood");
    model->saveNote({}, "Dogwood");
    background.runAll();
    EXPECT_EQ(onDisk("Dogwood"), "none");

    model->saveNote({.text = "Typed"}, "Dogwood");
    model->saveNote({}, "Dogwood");
    model.reset();
    EXPECT_EQ(onDisk("Dogwood"), "none");
    background.runAll();
    EXPECT_EQ(onDisk("Dogwood"), "none");
}

TEST_F(NotesOfTwoPrograms, TheLastSaveTakesOverToo)
{
    elsewhere([](NotesBook& book) { book.set(LicenseNote{.text = "Theirs"}, "Cedar"); });
    model->saveNote({.text = "1"}, "Brook");
    model->saveNote({.text = "2"}, "Brook");
    model.reset();
    EXPECT_EQ(onDisk("Brook"), "2");
    EXPECT_EQ(onDisk("Cedar"), "Theirs");
}

TEST_F(NotesOfTwoPrograms, AFileThatWasDamagedMeanwhileIsKeptAside)
{
    folder.write("data/Quillmark/notes.json", "{\"notes\": half of");
    save({.text = "Edited"}, "Brook");
    EXPECT_THAT(namesIn(places.dataFolder),
                ElementsAre("notes.json", "notes.unreadable-20260314T090000Z.json"));
    EXPECT_EQ(onDisk("Brook"), "Edited");
    EXPECT_EQ(onDisk("Cedar"), "Ours");
}

TEST_F(NotesOfTwoPrograms, AFileThatWasDeletedMeanwhileIsWrittenAgain)
{
    std::filesystem::remove(places.notesFile());
    save({.text = "Edited"}, "Brook");
    EXPECT_EQ(NotesBook::load(places.notesFile()), model->notes());
    EXPECT_EQ(onDisk("Cedar"), "Ours");
}

} // namespace
} // namespace quillmark::test
