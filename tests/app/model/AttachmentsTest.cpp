#include "app/model/ModelFixture.h"

#include "model/RandomUUID.h"
#include "notes/NotesBook.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace quillmark::test {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::StartsWith;

class AttachedFiles : public ModelFixture {
protected:
    /// Attaches a file of this name and content to the end.
    std::filesystem::path attach(const std::string& key, const std::string& name,
                                 const std::string& text)
    {
        const auto path = folder.write(std::filesystem::path("receipts") / name, text);
        attach(key, path);
        return path;
    }
    void attach(const std::string& key, const std::filesystem::path& path)
    {
        model->attachFile(key);
        prompts.answerOpen({path});
        background.runAll();
    }
    /// Removes what is attached, and saves a note, to the end.
    void remove(const std::string& key)
    {
        model->removeAttachment(key);
        background.runAll();
    }
    void save(const LicenseNote& note, const std::string& key)
    {
        model->saveNote(note, key);
        background.runAll();
    }
    [[nodiscard]] std::vector<std::string> copies() const { return namesIn(places.attachments()); }

    /// Writes a notes file whose only note, of Brook, has this attachment.
    void saveAttachmentValue(const std::string& json)
    {
        folder.write("data/Quillmark/notes.json",
                     R"({"notes": {"Brook": {"boughtFrom": "A shop", "license": "web", "url": "",
                         "text": "", "updated": "2026-01-01T00:00:00Z",
                         "attachmentName": "receipt.pdf", "attachment": )" +
                         json + "}}}");
        makeModel(AppModel::Persistence::on);
        model->start();
        background.runAll();
    }
    /// Until it is called again no book can be saved.
    void blockSaving() { std::filesystem::create_directories(places.notesFile()); }
    void unblockSaving() { std::filesystem::remove(places.notesFile()); }
};

TEST_F(AttachedFiles, ThePanelAsksForOneFile)
{
    model->attachFile("Brook");
    EXPECT_EQ(prompts.opened,
              (OpenPanel{OpenPanel::Choice::file, "Attach",
                         "Choose the license, receipt or invoice for this font. A copy is kept "
                         "with your notes."}));
    EXPECT_EQ(background.waiting(), 0U);
    prompts.answerOpen({});
    EXPECT_EQ(background.waiting(), 0U);
    EXPECT_THAT(copies(), IsEmpty());
}

TEST_F(AttachedFiles, ACopyIsKeptUnderARandomNameAndSaved)
{
    const auto original = attach("Brook", "Receipt 1.pdf", "paid");
    EXPECT_THAT(copies(), ElementsAre("0A1B2C3D-Receipt 1.pdf"));
    EXPECT_EQ(content(places.attachments() / "0A1B2C3D-Receipt 1.pdf"), "paid");
    EXPECT_EQ(content(original), "paid");
    const LicenseNote note = model->note("Brook");
    EXPECT_EQ(note.attachment, "0A1B2C3D-Receipt 1.pdf");
    EXPECT_EQ(note.attachmentName, "Receipt 1.pdf");
    EXPECT_EQ(note.updated, now);
    EXPECT_EQ(NotesBook::load(places.notesFile()), model->notes());
    EXPECT_EQ(model->alert(), std::nullopt);
}

TEST_F(AttachedFiles, AreCopiedInTheBackground)
{
    model->attachFile("Brook");
    prompts.answerOpen({folder.write("receipt.pdf", "paid")});
    EXPECT_EQ(background.waiting(), 1U);
    EXPECT_EQ(background.workToEnd, 1); // leaving meanwhile must not lose the receipt
    EXPECT_EQ(model->note("Brook").attachment, std::nullopt);
    const auto changed = count(&AppModel::notesChanged);
    background.runAll();
    EXPECT_EQ(*changed, 1);
    EXPECT_TRUE(model->note("Brook").attachment);
}

TEST_F(AttachedFiles, AreTheirOwnersAlone)
{
    const auto script = folder.write("script.sh", "#!/bin/sh");
    std::filesystem::permissions(script, std::filesystem::perms::all);
    attach("Brook", script);
    using std::filesystem::perms;
    EXPECT_EQ(std::filesystem::status(places.attachments() / copies().at(0)).permissions(),
              perms::owner_read | perms::owner_write);
    EXPECT_EQ(std::filesystem::status(places.attachments()).permissions(), perms::owner_all);
}

TEST_F(AttachedFiles, OfManyPiecesAreCopiedWhole)
{
    std::string text(1'000'000, 'x');
    text += "end";
    attach("Brook", "big.pdf", text);
    EXPECT_EQ(content(places.attachments() / copies().at(0)), text);
}

TEST_F(AttachedFiles, ASecondFileReplacesTheFirstCopy)
{
    attach("Brook", "one.pdf", "1");
    save({.text = "Hello"}, "Brook");
    attach("Brook", "two.pdf", "2");
    EXPECT_THAT(copies(), ElementsAre("1A1B2C3D-two.pdf"));
    EXPECT_EQ(model->note("Brook").attachment, "1A1B2C3D-two.pdf");
    EXPECT_EQ(model->note("Brook").attachmentName, "two.pdf");
    EXPECT_EQ(model->note("Brook").text, "Hello");
}

TEST_F(AttachedFiles, OfOtherNotesStay)
{
    attach("Brook", "one.pdf", "1");
    attach("Cedar", "one.pdf", "2");
    EXPECT_THAT(copies(), ElementsAre("0A1B2C3D-one.pdf", "1A1B2C3D-one.pdf"));
}

TEST_F(AttachedFiles, ATakenNameIsNotTakenAgain)
{
    uuids = {"0A1B2C3D-1", "0A1B2C3D-2", "4A1B2C3D-3"};
    attach("Brook", "one.pdf", "1");
    attach("Cedar", "one.pdf", "2");
    EXPECT_THAT(copies(), ElementsAre("0A1B2C3D-one.pdf", "4A1B2C3D-one.pdf"));
    EXPECT_EQ(content(places.attachments() / "0A1B2C3D-one.pdf"), "1");
}

TEST_F(AttachedFiles, WithoutAFreeNameNothingIsOverwritten)
{
    uuids = {"0A1B2C3D-1"};
    attach("Brook", "one.pdf", "1");
    attach("Cedar", "one.pdf", "2");
    EXPECT_EQ(model->alert(), (folder.path() / "receipts/one.pdf").native() +
                                  " could not be attached: File exists.");
    EXPECT_EQ(content(places.attachments() / "0A1B2C3D-one.pdf"), "1");
    EXPECT_EQ(model->note("Cedar"), LicenseNote());
}

TEST_F(AttachedFiles, WhatCannotBeCopiedIsReportedAndLeavesTheNoteAsItWas)
{
    attach("Brook", "one.pdf", "1");
    const LicenseNote before = model->note("Brook");
    const auto check = [&](const std::filesystem::path& path, const std::string& reason) {
        model->setAlert(std::nullopt);
        attach("Brook", path);
        EXPECT_EQ(model->alert(), path.native() + " could not be attached: " + reason + ".");
        EXPECT_EQ(model->note("Brook"), before);
        EXPECT_THAT(copies(), ElementsAre("0A1B2C3D-one.pdf"));
    };
    check(folder.path() / "gone.pdf", "No such file or directory");
    check(folder.path(), "Is a directory");
    const auto pipe = folder.path() / "pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), S_IRUSR | S_IWUSR), 0);
    check(pipe, "Not a regular file");
}

TEST_F(AttachedFiles, AFolderThatCannotBeMadeIsReported)
{
    folder.write("data", "a file where a folder should be");
    const auto path = attach("Brook", "one.pdf", "1");
    EXPECT_EQ(model->alert(), path.native() + " could not be attached: Not a directory.");
    EXPECT_EQ(model->note("Brook"), LicenseNote());
}

TEST_F(AttachedFiles, WhenTheBookCannotBeSavedTheFormerCopyStays)
{
    attach("Brook", "one.pdf", "1");
    const LicenseNote before = model->note("Brook");
    std::filesystem::remove(places.notesFile());
    blockSaving();
    const auto changed = count(&AppModel::notesChanged);
    attach("Brook", "two.pdf", "2");
    EXPECT_EQ(model->alert(),
              places.notesFile().native() + " could not be written: Not a regular file.");
    EXPECT_EQ(model->note("Brook"), before);
    EXPECT_THAT(copies(), ElementsAre("0A1B2C3D-one.pdf"));
    EXPECT_EQ(*changed, 0);
}

TEST_F(AttachedFiles, AnEditorsOlderNoteDoesNotLoseTheAttachment)
{
    LicenseNote edited = model->note("Brook");
    edited.text = "Typed before the copy was ready";
    attach("Brook", "one.pdf", "1");
    save(edited, "Brook");
    EXPECT_EQ(model->note("Brook").attachment, "0A1B2C3D-one.pdf");
    EXPECT_EQ(model->note("Brook").text, edited.text);
    edited.attachment = "other.pdf";
    save(edited, "Brook");
    EXPECT_EQ(model->note("Brook").attachment, "0A1B2C3D-one.pdf");
}

TEST_F(AttachedFiles, RemovingDeletesTheCopyAndSaves)
{
    attach("Brook", "one.pdf", "1");
    save({.text = "Hello"}, "Brook");
    now += std::chrono::seconds(5);
    remove("Brook");
    EXPECT_THAT(copies(), IsEmpty());
    EXPECT_EQ(model->note("Brook").attachment, std::nullopt);
    EXPECT_EQ(model->note("Brook").attachmentName, std::nullopt);
    EXPECT_EQ(model->note("Brook").updated, now);
    EXPECT_EQ(NotesBook::load(places.notesFile()), model->notes());
}

TEST_F(AttachedFiles, RemovingTheOnlyThingInANoteRemovesTheNote)
{
    attach("Brook", "one.pdf", "1");
    remove("Brook");
    EXPECT_THAT(model->notes().notes, IsEmpty());
    const auto changed = count(&AppModel::notesChanged);
    remove("Brook");
    EXPECT_EQ(*changed, 0);
}

TEST_F(AttachedFiles, ACopyIsDeletedOnlyAfterTheBookHasBeenSaved)
{
    attach("Brook", "one.pdf", "1");
    std::filesystem::remove(places.notesFile());
    blockSaving();
    remove("Brook");
    EXPECT_EQ(model->alert(),
              places.notesFile().native() + " could not be written: Not a regular file.");
    EXPECT_EQ(model->note("Brook").attachment, std::nullopt);
    EXPECT_THAT(copies(), ElementsAre("0A1B2C3D-one.pdf"));
    unblockSaving();
    save({.text = "Hello"}, "Cedar");
    EXPECT_THAT(copies(), IsEmpty());
}

TEST_F(AttachedFiles, ACopyThatIsGoneCanBeRemoved)
{
    attach("Brook", "one.pdf", "1");
    std::filesystem::remove(places.attachments() / "0A1B2C3D-one.pdf");
    remove("Brook");
    EXPECT_EQ(model->note("Brook").attachment, std::nullopt);
    EXPECT_EQ(model->alert(), std::nullopt);
}

TEST_F(AttachedFiles, ACopyThatCannotBeDeletedIsReported)
{
    attach("Brook", "one.pdf", "1");
    std::filesystem::remove(places.attachments() / "0A1B2C3D-one.pdf");
    folder.write("data/Quillmark/Attachments/0A1B2C3D-one.pdf/file", "in a folder");
    remove("Brook");
    EXPECT_EQ(model->alert(), "0A1B2C3D-one.pdf could not be removed: Is a directory.");
    EXPECT_EQ(model->note("Brook").attachment, std::nullopt);
}

TEST_F(AttachedFiles, ACopyThatAnotherNoteNamesIsKept)
{
    folder.write("data/Quillmark/Attachments/shared.pdf", "paid");
    const std::string note = R"({"boughtFrom": "", "license": "web", "url": "", "text": "",
                                 "updated": "2026-01-01T00:00:00Z", "attachment": "shared.pdf"})";
    folder.write("data/Quillmark/notes.json",
                 R"({"notes": {"Brook": )" + note + R"(, "Cedar": )" + note + "}}");
    model->start();
    remove("Brook");
    EXPECT_THAT(copies(), ElementsAre("shared.pdf"));
    remove("Cedar");
    EXPECT_THAT(copies(), IsEmpty());
}

TEST_F(AttachedFiles, OpeningHandsTheCopyToTheDesktop)
{
    attach("Brook", "Rechnung Nr. 1 für ü.pdf", "paid");
    model->openAttachment("Brook");
    ASSERT_EQ(prompts.openedURLs.size(), 1U);
    EXPECT_THAT(prompts.openedURLs[0], StartsWith("file://" + folder.path().native()));
    EXPECT_THAT(
        prompts.openedURLs[0],
        EndsWith("/Quillmark/Attachments/0A1B2C3D-Rechnung%20Nr.%201%20f%C3%BCr%20%C3%BC.pdf"));
    EXPECT_EQ(model->alert(), std::nullopt);
}

TEST_F(AttachedFiles, OpeningWhatIsNotThereIsReported)
{
    model->openAttachment("Brook");
    EXPECT_EQ(model->alert(), std::nullopt);
    attach("Brook", "one.pdf", "1");
    std::filesystem::remove(places.attachments() / "0A1B2C3D-one.pdf");
    model->openAttachment("Brook");
    EXPECT_EQ(model->alert(), "one.pdf could not be opened: No such file or directory.");
    EXPECT_THAT(prompts.openedURLs, IsEmpty());
}

TEST_F(AttachedFiles, OpeningWithoutAProgramForItIsReported)
{
    attach("Brook", "one.xyz", "1");
    prompts.opensURLs = false;
    model->openAttachment("Brook");
    EXPECT_EQ(model->alert(), "one.xyz could not be opened: No program for it was found.");
}

TEST_F(AttachedFiles, AValueThatLeadsElsewhereIsNoAttachment)
{
    const auto outside = folder.write("data/Quillmark/outside.pdf", "precious");
    for (const std::string json : {R"("../outside.pdf")", R"("/etc/passwd")", R"("a/b")", R"("..")",
                                   R"(".")", R"("")", R"("one.pdf\u0000.txt")"}) {
        saveAttachmentValue(json);
        ASSERT_EQ(model->note("Brook").boughtFrom, "A shop") << json;
        EXPECT_EQ(model->note("Brook").attachment, std::nullopt) << json;
        EXPECT_EQ(model->note("Brook").attachmentName, std::nullopt) << json;
        model->openAttachment("Brook");
        EXPECT_THAT(prompts.openedURLs, IsEmpty()) << json;
        remove("Brook");
        EXPECT_EQ(content(outside), "precious") << json;
        std::filesystem::remove_all(places.attachments());
        attach("Brook", "one.pdf", "1");
        EXPECT_EQ(model->note("Brook").attachmentName, "one.pdf") << json;
        EXPECT_EQ(content(outside), "precious") << json;
        EXPECT_EQ(model->alert(), std::nullopt) << json;
    }
}

TEST_F(AttachedFiles, ALinkAmongTheCopiesIsNeitherFollowedNorOpened)
{
    const auto outside = folder.write("outside.pdf", "precious");
    std::filesystem::create_directories(places.attachments());
    std::filesystem::create_symlink(outside, places.attachments() / "link.pdf");
    saveAttachmentValue(R"("link.pdf")");
    model->openAttachment("Brook");
    EXPECT_THAT(prompts.openedURLs, IsEmpty());
    EXPECT_EQ(model->alert(), "receipt.pdf could not be opened: Not a regular file.");
    remove("Brook");
    EXPECT_THAT(copies(), IsEmpty());
    EXPECT_EQ(content(outside), "precious");
}

TEST_F(AttachedFiles, ANameThatIsNotUTF8IsRepaired)
{
    attach("Brook", "b\xFC.pdf", "1");
    EXPECT_EQ(model->note("Brook").attachmentName, "b\uFFFD.pdf");
    EXPECT_THAT(copies(), ElementsAre("0A1B2C3D-b\uFFFD.pdf"));
}

TEST_F(AttachedFiles, WithoutPersistenceAreReplacedAndRemovedToo)
{
    makeModel(AppModel::Persistence::off);
    attach("Brook", "one.pdf", "1");
    attach("Brook", "two.pdf", "2");
    EXPECT_THAT(copies(), ElementsAre("1A1B2C3D-two.pdf"));
    remove("Brook");
    EXPECT_THAT(copies(), IsEmpty());
    EXPECT_FALSE(std::filesystem::exists(places.notesFile()));
}

TEST_F(AttachedFiles, AreInTheNoteWhenTheyAreSaved)
{
    model->attachFile("Brook");
    prompts.answerOpen({folder.write("receipt.pdf", "paid")});
    background.runOne();
    EXPECT_THAT(copies(), ElementsAre("0A1B2C3D-receipt.pdf"));
    EXPECT_EQ(model->note("Brook").attachment, std::nullopt);
    const auto changed = count(&AppModel::notesChanged);
    background.runOne();
    EXPECT_EQ(*changed, 1);
    EXPECT_EQ(model->note("Brook").attachment, "0A1B2C3D-receipt.pdf");
    EXPECT_EQ(NotesBook::load(places.notesFile()), model->notes());
}

TEST_F(AttachedFiles, WhatIsTypedWhileTheyAreSavedStays)
{
    model->attachFile("Brook");
    prompts.answerOpen({folder.write("receipt.pdf", "paid")});
    background.runOne();
    now += std::chrono::seconds(5);
    model->saveNote({.text = "Typed"}, "Brook");
    background.runAll();
    EXPECT_EQ(model->note("Brook").text, "Typed");
    EXPECT_EQ(model->note("Brook").attachment, "0A1B2C3D-receipt.pdf");
    EXPECT_EQ(model->note("Brook").updated, now);
    EXPECT_EQ(NotesBook::load(places.notesFile()), model->notes());
}

TEST_F(AttachedFiles, WhatIsTypedWhileSavingThemFailsStays)
{
    blockSaving();
    model->attachFile("Brook");
    prompts.answerOpen({folder.write("receipt.pdf", "paid")});
    background.runOne();
    model->saveNote({.text = "Typed"}, "Brook");
    background.runOne();
    unblockSaving();
    background.runAll();
    EXPECT_EQ(model->note("Brook").text, "Typed");
    EXPECT_EQ(model->note("Brook").attachment, std::nullopt);
    EXPECT_THAT(copies(), IsEmpty());
    EXPECT_EQ(NotesBook::load(places.notesFile()), model->notes());
}

TEST_F(AttachedFiles, TwoForOneNoteInARowLeaveTheLater)
{
    model->attachFile("Brook");
    prompts.answerOpen({folder.write("one.pdf", "1")});
    model->attachFile("Brook");
    prompts.answerOpen({folder.write("two.pdf", "2")});
    background.runAll();
    EXPECT_EQ(model->note("Brook").attachmentName, "two.pdf");
    EXPECT_THAT(copies(), ElementsAre("1A1B2C3D-two.pdf"));
    EXPECT_EQ(NotesBook::load(places.notesFile()), model->notes());
}

TEST_F(AttachedFiles, AreSavedWhenTheModelGoesAndTheFormerCopyIsRemoved)
{
    attach("Brook", "one.pdf", "1");
    model->attachFile("Brook");
    prompts.answerOpen({folder.write("two.pdf", "2")});
    background.runOne();
    model.reset();
    EXPECT_EQ(NotesBook::load(places.notesFile()).note("Brook")->attachment, "1A1B2C3D-two.pdf");
    EXPECT_THAT(copies(), ElementsAre("1A1B2C3D-two.pdf"));
    background.runAll();
    EXPECT_THAT(copies(), ElementsAre("1A1B2C3D-two.pdf"));
}

TEST_F(AttachedFiles, ThatAnotherProgramReplacesAreTakenOverWithWhatIsTyped)
{
    attach("Brook", "one.pdf", "1");
    NotesBook theirs = NotesBook::load(places.notesFile());
    theirs.notes.at("Brook").attachment = "THEIRS00-two.pdf";
    theirs.notes.at("Brook").attachmentName = "two.pdf";
    theirs.notes.at("Brook").text = "Theirs";
    ASSERT_EQ(theirs.save(places.notesFile()), std::nullopt);
    save({.text = "Typed"}, "Brook");
    EXPECT_EQ(model->note("Brook").text, "Typed");
    EXPECT_EQ(model->note("Brook").attachment, "THEIRS00-two.pdf");
    EXPECT_EQ(model->note("Brook").attachmentName, "two.pdf");
    EXPECT_EQ(NotesBook::load(places.notesFile()), model->notes());
}

TEST_F(AttachedFiles, TheFileNeverNamesACopyThatIsGone)
{
    attach("Brook", "one.pdf", "1");
    const auto allThere = [this] {
        const NotesBook saved = NotesBook::load(places.notesFile());
        for (const auto& [key, note] : saved.notes)
            if (note.attachment &&
                !std::filesystem::exists(places.attachments() / *note.attachment))
                return false;
        return true;
    };
    const auto step = [&] {
        if (background.waiting() > 0) background.runOne();
        EXPECT_TRUE(allThere());
    };
    model->attachFile("Brook");
    prompts.answerOpen({folder.write("two.pdf", "2")});
    step();
    model->removeAttachment("Brook"); // the first one; the second is on its way
    step();
    model->removeAttachment("Brook");
    step();
    model->saveNote({.text = "Hello"}, "Brook");
    while (background.waiting() > 0)
        step();
    EXPECT_THAT(copies(), IsEmpty());
    EXPECT_EQ(model->note("Brook").attachment, std::nullopt);
}

TEST(RandomUUID, IsOneInCapitalsAndAnotherEachTime)
{
    const std::string uuid = randomUUID();
    EXPECT_THAT(uuid, MatchesRegex("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-"
                                   "[0-9A-F]{12}"));
    EXPECT_NE(randomUUID(), uuid);
}

} // namespace
} // namespace quillmark::test
