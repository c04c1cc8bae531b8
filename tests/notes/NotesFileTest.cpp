// Notes on the disk: where they are read from, and what becomes of the file when saving goes wrong.
#include "notes/NotesFile.h"

#include "files/FolderLock.h"
#include "notes/Limits.h"
#include "notes/NotesBook.h"
#include "support/FaultyCalls.h"
#include "support/TemporaryFolder.h"
#include "support/Unprivileged.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <functional>
#include <optional>
#include <random>
#include <sched.h>
#include <string>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <variant>
#include <vector>

namespace quillmark::test {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr std::chrono::sys_seconds moment(1'795'313'400s); // 2026-11-22, ten past two

class NotesFileTest : public testing::Test {
protected:
    [[nodiscard]] fs::path at(const fs::path& relative) const { return folder.path() / relative; }

    [[nodiscard]] std::optional<NotesError> errorOf(const fs::path& relative) const
    {
        auto read = readNotesFile(at(relative));
        auto* const error = std::get_if<NotesError>(&read);
        return error == nullptr ? std::nullopt : std::optional(std::move(*error));
    }

    TemporaryFolder folder;
};

NotesBook bookOf(const std::string& text, int notes = 1)
{
    NotesBook book;
    for (int i = 0; i < notes; ++i)
        book.set(LicenseNote{.license = HeldLicense::desktop, .text = text, .updated = moment},
                 "Font-" + std::to_string(i));
    return book;
}

/// What `work` returns, from a process of its own.
int inChild(const std::function<int()>& work)
{
    const pid_t child = fork();
    if (child == 0) _exit(work());
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// Saving

TEST_F(NotesFileTest, SavedIsWhatIsLoaded)
{
    const NotesBook book = bookOf("two seats", 3);
    EXPECT_EQ(book.save(at("notes.json")), std::nullopt);
    EXPECT_EQ(NotesBook::load(at("notes.json")), book);
    EXPECT_THAT(folder.names(), ElementsAre("notes.json"));
}

TEST_F(NotesFileTest, WithoutNotesIsSavedAsAnObjectWithEmptyNotes)
{
    EXPECT_EQ(NotesBook{}.save(at("notes.json")), std::nullopt);
    EXPECT_EQ(folder.content("notes.json"), "{\n  \"notes\": {}\n}\n");
}

TEST_F(NotesFileTest, IsMadeWithTheMissingFoldersForItsOwnerOnly)
{
    EXPECT_EQ(bookOf("x").save(at("share/Quillmark/notes.json")), std::nullopt);
    EXPECT_EQ(folder.mode("share"), 0700U);
    EXPECT_EQ(folder.mode("share/Quillmark"), 0700U);
    EXPECT_EQ(folder.mode("share/Quillmark/notes.json"), 0600U);
}

TEST_F(NotesFileTest, KeepsThePermissionsThatItsOwnerGaveIt)
{
    EXPECT_EQ(bookOf("old").save(at("notes.json")), std::nullopt);
    ASSERT_EQ(chmod(at("notes.json").c_str(), 0640), 0);
    EXPECT_EQ(bookOf("new").save(at("notes.json")), std::nullopt);
    EXPECT_EQ(folder.mode("notes.json"), 0640U);
}

TEST_F(NotesFileTest, BehindALinkIsReplacedAndTheLinkStays)
{
    EXPECT_EQ(bookOf("old").save(at("synchronised/my-notes.json")), std::nullopt);
    fs::create_symlink("synchronised/my-notes.json", at("notes.json"));
    EXPECT_EQ(NotesBook::load(at("notes.json")), bookOf("old"));
    EXPECT_EQ(bookOf("new").save(at("notes.json")), std::nullopt);
    EXPECT_TRUE(fs::is_symlink(at("notes.json")));
    EXPECT_EQ(NotesBook::load(at("synchronised/my-notes.json")), bookOf("new"));
}

TEST_F(NotesFileTest, OverwritesACorruptOne)
{
    folder.write("notes.json", "{ corrupt");
    EXPECT_EQ(bookOf("new").save(at("notes.json")), std::nullopt);
    EXPECT_EQ(NotesBook::load(at("notes.json")), bookOf("new"));
}

TEST_F(NotesFileTest, BelowAFileCannotBeSaved)
{
    folder.write("Quillmark", "a file");
    const auto error = bookOf("x").save(at("Quillmark/notes.json"));
    ASSERT_TRUE(error);
    EXPECT_EQ(error->kind, NotesError::Kind::notSaved);
    EXPECT_EQ(error->sentence(),
              at("Quillmark/notes.json").string() + " could not be written: Not a directory.");
    EXPECT_THAT(folder.names(), ElementsAre("Quillmark"));
    EXPECT_EQ(folder.content("Quillmark"), "a file");
}

TEST_F(NotesFileTest, IsNotSavedInPlaceOfAFolder)
{
    fs::create_directory(at("notes.json"));
    const auto error = bookOf("x").save(at("notes.json"));
    ASSERT_TRUE(error);
    EXPECT_EQ(error->reason, "Is a directory");
    EXPECT_THAT(folder.names(), ElementsAre("notes.json"));
}

TEST_F(NotesFileTest, IsNotSavedInPlaceOfAPipe)
{
    ASSERT_EQ(mkfifo(at("notes.json").c_str(), 0600), 0);
    const auto error = bookOf("x").save(at("notes.json"));
    ASSERT_TRUE(error);
    EXPECT_EQ(error->reason, "Not a regular file");
    EXPECT_TRUE(fs::is_fifo(at("notes.json")));
    EXPECT_THAT(folder.names(), ElementsAre("notes.json"));
}

TEST_F(NotesFileTest, InAFolderThatMayNotBeChangedStaysAsItWas)
{
    EXPECT_EQ(bookOf("old").save(at("notes.json")), std::nullopt);
    ASSERT_EQ(chmod(at("notes.json").c_str(), 0644), 0);
    fs::permissions(folder.path(), fs::perms(0555));
    std::optional<NotesError> error;
    {
        const Unprivileged nobody(folder.path());
        error = bookOf("new").save(at("notes.json"));
    }
    fs::permissions(folder.path(), fs::perms(0755));
    ASSERT_TRUE(error);
    EXPECT_EQ(error->reason, "Permission denied");
    EXPECT_EQ(NotesBook::load(at("notes.json")), bookOf("old"));
    EXPECT_THAT(folder.names(), ElementsAre("notes.json"));
}

TEST_F(NotesFileTest, LargerThanCouldBeReadAgainIsNotSaved)
{
    EXPECT_EQ(bookOf("old").save(at("notes.json")), std::nullopt);
    const auto error = bookOf(std::string(Limits::notesFileBytes, 'x')).save(at("notes.json"));
    ASSERT_TRUE(error);
    EXPECT_EQ(error->reason, "File too large");
    EXPECT_EQ(NotesBook::load(at("notes.json")), bookOf("old"));
    EXPECT_THAT(folder.names(), ElementsAre("notes.json"));
}

TEST_F(NotesFileTest, StaysAsItWasWhenTheLimitOnFileSizesIsReached)
{
    EXPECT_EQ(bookOf("old").save(at("notes.json")), std::nullopt);
    EXPECT_EQ(inChild([this] {
                  const rlimit limit{10'000, 10'000};
                  setrlimit(RLIMIT_FSIZE, &limit);
                  static_cast<void>(std::signal(SIGXFSZ, SIG_IGN));
                  const auto error = bookOf("new", 1000).save(at("notes.json"));
                  return error && error->reason == "File too large" ? 0 : 1;
              }),
              0);
    EXPECT_EQ(NotesBook::load(at("notes.json")), bookOf("old"));
    EXPECT_THAT(folder.names(), ElementsAre("notes.json"));
}

TEST_F(NotesFileTest, OnAFullDiskStaysAsItWas)
{
    constexpr int notPermitted = 77;
    fs::create_directory(at("disk"));
    const int result = inChild([this] {
        // A name space of its own takes the small disk with it when the process ends.
        if (unshare(CLONE_NEWNS) != 0 && unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0)
            return notPermitted;
        if (mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
            mount("tmpfs", at("disk").c_str(), "tmpfs", 0, "size=64k") != 0)
            return notPermitted;
        if (bookOf("old").save(at("disk/notes.json"))) return 1;
        const auto error = bookOf("new", 1000).save(at("disk/notes.json"));
        if (!error || error->reason != "No space left on device") return 2;
        if (NotesBook::load(at("disk/notes.json")) != bookOf("old")) return 3;
        return folder.names("disk") == std::vector<std::string>{"notes.json"} ? 0 : 4;
    });
    if (result == notPermitted) GTEST_SKIP() << "this system lets no test mount a small disk";
    EXPECT_EQ(result, 0);
}

TEST_F(NotesFileTest, OnAReadOnlyDiskStaysAsItWas)
{
    constexpr int notPermitted = 77;
    EXPECT_EQ(bookOf("old").save(at("disk/notes.json")), std::nullopt);
    const int result = inChild([this] {
        if (unshare(CLONE_NEWNS) != 0 && unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0)
            return notPermitted;
        const std::string disk = at("disk");
        if (mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
            mount(disk.c_str(), disk.c_str(), nullptr, MS_BIND, nullptr) != 0 ||
            mount(nullptr, disk.c_str(), nullptr, MS_REMOUNT | MS_BIND | MS_RDONLY, nullptr) != 0)
            return notPermitted;
        const auto error = bookOf("new").save(at("disk/notes.json"));
        return error && error->reason == "Read-only file system" ? 0 : 1;
    });
    if (result == notPermitted) GTEST_SKIP() << "this system lets no test mount a disk";
    EXPECT_EQ(result, 0);
    EXPECT_EQ(NotesBook::load(at("disk/notes.json")), bookOf("old"));
    EXPECT_THAT(folder.names("disk"), ElementsAre("notes.json"));
}

TEST_F(NotesFileTest, ThatMayNotOutlastAPowerFailureIsSaidToBeWrittenAllTheSame)
{
    std::optional<NotesError> error;
    {
        const FaultyCall faulty(Call::fsync, EIO, 1); // the folder's
        error = bookOf("new").save(at("notes.json"));
    }
    ASSERT_TRUE(error);
    EXPECT_EQ(error->kind, NotesError::Kind::notSynced);
    EXPECT_EQ(error->sentence(), at("notes.json").string() +
                                     " has been written but may not be on the disk: "
                                     "Input/output error.");
    EXPECT_EQ(NotesBook::load(at("notes.json")), bookOf("new"));
}

TEST_F(NotesFileTest, IsWholeWheneverTheProcessIsKilled)
{
    const NotesBook one = bookOf("one", 20);
    const NotesBook other = bookOf("the other", 30);
    ASSERT_EQ(one.save(at("notes.json")), std::nullopt);
    std::minstd_rand random(20261122);
    int changed = 0;
    for (int round = 0; round < 60; ++round) {
        const NotesBook before = NotesBook::load(at("notes.json"));
        const pid_t child = fork();
        if (child == 0) {
            for (int turn = 0; turn < 10'000; ++turn)
                if ((turn % 2 == 0 ? other : one).save(at("notes.json"))) _exit(1);
            _exit(2);
        }
        usleep(static_cast<useconds_t>(random() % 40'000));
        kill(child, SIGKILL);
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFSIGNALED(status)) << "it was meant to be killed while it saved";
        const NotesBook after = NotesBook::load(at("notes.json"));
        ASSERT_TRUE(after == one || after == other) << folder.content("notes.json");
        if (after != before) ++changed;
    }
    EXPECT_GT(changed, 0) << "no save came through before its process was killed";
}

// Loading

TEST_F(NotesFileTest, ThatIsMissingLoadsAsAnEmptyBook)
{
    EXPECT_EQ(NotesBook::load(at("notes.json")), NotesBook{});
    EXPECT_EQ(errorOf("notes.json")->kind, NotesError::Kind::missing);
    EXPECT_EQ(errorOf("notes.json")->sentence(),
              at("notes.json").string() + " could not be read: No such file or directory.");
}

TEST_F(NotesFileTest, BelowSomethingThatIsNoFolderIsMissing)
{
    EXPECT_EQ(errorOf("notes.json/notes.json")->kind, NotesError::Kind::missing);
    folder.write("notes.json", "{}");
    EXPECT_EQ(errorOf("notes.json/notes.json")->kind, NotesError::Kind::missing);
}

TEST_F(NotesFileTest, BehindALinkThatLeadsNowhereIsMissing)
{
    fs::create_symlink("nowhere.json", at("notes.json"));
    EXPECT_EQ(errorOf("notes.json")->kind, NotesError::Kind::missing);
}

TEST_F(NotesFileTest, WithAnUnknownLicenseLoadsAsAnEmptyBook)
{
    EXPECT_EQ(bookOf("x", 2).save(at("notes.json")), std::nullopt);
    std::string text = folder.content("notes.json");
    text.replace(text.find("\"desktop\""), 9, "\"lifetime\"");
    folder.write("notes.json", text);
    EXPECT_EQ(NotesBook::load(at("notes.json")), NotesBook{});
    EXPECT_EQ(errorOf("notes.json")->kind, NotesError::Kind::malformed);
    EXPECT_EQ(errorOf("notes.json")->sentence(),
              at("notes.json").string() + " could not be read as license notes: the note on "
                                          "\"Font-0\" has no valid \"license\".");
}

TEST_F(NotesFileTest, ThatIsEmptyIsMalformed)
{
    folder.write("notes.json", "");
    EXPECT_EQ(NotesBook::load(at("notes.json")), NotesBook{});
    EXPECT_EQ(errorOf("notes.json")->kind, NotesError::Kind::malformed);
    EXPECT_EQ(errorOf("notes.json")->reason, "it is not JSON");
}

TEST_F(NotesFileTest, ThatIsAFolderIsUnreadable)
{
    fs::create_directory(at("notes.json"));
    EXPECT_EQ(NotesBook::load(at("notes.json")), NotesBook{});
    EXPECT_EQ(errorOf("notes.json")->kind, NotesError::Kind::unreadable);
    EXPECT_EQ(errorOf("notes.json")->reason, "Is a directory");
}

TEST_F(NotesFileTest, ThatIsAPipeIsNotWaitedFor)
{
    ASSERT_EQ(mkfifo(at("notes.json").c_str(), 0600), 0);
    EXPECT_EQ(NotesBook::load(at("notes.json")), NotesBook{});
    EXPECT_EQ(errorOf("notes.json")->kind, NotesError::Kind::unreadable);
}

TEST_F(NotesFileTest, ThatMayNotBeReadIsUnreadable)
{
    EXPECT_EQ(bookOf("x").save(at("notes.json")), std::nullopt);
    std::optional<NotesError> error;
    {
        const Unprivileged nobody(folder.path());
        ASSERT_TRUE(geteuid() == 65534 || chmod(at("notes.json").c_str(), 0) == 0);
        error = errorOf("notes.json");
    }
    ASSERT_TRUE(error);
    EXPECT_EQ(error->kind, NotesError::Kind::unreadable);
    EXPECT_EQ(error->reason, "Permission denied");
}

TEST_F(NotesFileTest, OfMoreThanTheLimitIsUnreadable)
{
    // No notes, so that the parser stops at once: what counts is whether it gets to see the file.
    const std::string text(Limits::notesFileBytes, 'x');
    folder.write("notes.json", text);
    EXPECT_EQ(errorOf("notes.json")->kind, NotesError::Kind::malformed);
    folder.write("notes.json", text + 'x');
    EXPECT_EQ(errorOf("notes.json")->kind, NotesError::Kind::unreadable);
    EXPECT_EQ(errorOf("notes.json")->reason, "File too large");
}

TEST_F(NotesFileTest, OfAGigabyteIsUnreadableAtOnce)
{
    folder.write("notes.json", "{");
    fs::resize_file(at("notes.json"), std::uintmax_t{1} << 30U);
    EXPECT_EQ(NotesBook::load(at("notes.json")), NotesBook{});
    EXPECT_EQ(errorOf("notes.json")->reason, "File too large");
}

TEST_F(NotesFileTest, IsNamedInMessagesAsFarAsItsNameIsText)
{
    EXPECT_THAT(errorOf("not\xFF"
                        "es.json")
                    ->sentence(),
                HasSubstr("/not\xEF\xBF\xBD"
                          "es.json could"));
}

TEST_F(NotesFileTest, OfTenThousandNotesComesBackWhole)
{
    const NotesBook book = bookOf("two seats", 10'000);
    EXPECT_EQ(book.save(at("notes.json")), std::nullopt);
    EXPECT_EQ(NotesBook::load(at("notes.json")), book);
}

// Keeping what cannot be read

constexpr const char* keptName = "notes.unreadable-20261122T021000Z.json";

TEST_F(NotesFileTest, ThatCannotBeReadIsKeptUnderAnotherName)
{
    folder.write("notes.json", "corrupt");
    const auto kept = keepUnreadable(at("notes.json"), moment);
    ASSERT_TRUE(std::holds_alternative<fs::path>(kept));
    EXPECT_EQ(std::get<fs::path>(kept), at(keptName));
    EXPECT_EQ(bookOf("new").save(at("notes.json")), std::nullopt);
    EXPECT_EQ(folder.content(keptName), "corrupt");
    EXPECT_EQ(NotesBook::load(at("notes.json")), bookOf("new"));
    EXPECT_THAT(folder.names(), ElementsAre("notes.json", keptName));
}

TEST_F(NotesFileTest, ThatIsKeptNeverReplacesAnother)
{
    folder.write("notes.json", "third");
    folder.write(keptName, "first");
    folder.write("notes.unreadable-20261122T021000Z-2.json", "second");
    const auto kept = keepUnreadable(at("notes.json"), moment);
    ASSERT_TRUE(std::holds_alternative<fs::path>(kept));
    EXPECT_EQ(std::get<fs::path>(kept), at("notes.unreadable-20261122T021000Z-3.json"));
    EXPECT_EQ(folder.content(keptName), "first");
    EXPECT_EQ(folder.content("notes.unreadable-20261122T021000Z-2.json"), "second");
    EXPECT_EQ(folder.content("notes.unreadable-20261122T021000Z-3.json"), "third");
}

TEST_F(NotesFileTest, ThatIsKeptIsNotKeptAgainWhileItIsThere)
{
    folder.write("notes.json", "corrupt");
    ASSERT_TRUE(std::holds_alternative<fs::path>(keepUnreadable(at("notes.json"), moment)));
    const auto again = keepUnreadable(at("notes.json"), moment + 1h);
    ASSERT_TRUE(std::holds_alternative<fs::path>(again));
    EXPECT_EQ(std::get<fs::path>(again), at(keptName));
    EXPECT_THAT(folder.names(), ElementsAre("notes.json", keptName));
}

TEST_F(NotesFileTest, ThatIsKeptIsFoundAmongOthers)
{
    folder.write("notes.unreadable-20260101T000000Z.json", "of another time");
    folder.write("notes.json", "corrupt");
    fs::create_hard_link(at("notes.json"), at("backup.json"));
    ASSERT_EQ(std::get<fs::path>(keepUnreadable(at("notes.json"), moment)), at(keptName));
    EXPECT_EQ(std::get<fs::path>(keepUnreadable(at("notes.json"), moment + 1h)), at(keptName));
    EXPECT_EQ(folder.names().size(), 4U);
}

TEST_F(NotesFileTest, InTheCurrentFolderIsKeptThereOnce)
{
    folder.write("notes.json", "corrupt");
    const fs::path before = fs::current_path();
    fs::current_path(folder.path());
    const auto kept = keepUnreadable("notes.json", moment);
    const auto again = keepUnreadable("notes.json", moment + 1h);
    fs::current_path(before);
    ASSERT_TRUE(std::holds_alternative<fs::path>(kept));
    EXPECT_EQ(std::get<fs::path>(kept), fs::path(keptName));
    ASSERT_TRUE(std::holds_alternative<fs::path>(again));
    EXPECT_EQ(std::get<fs::path>(again).filename(), fs::path(keptName));
    EXPECT_THAT(folder.names(), ElementsAre("notes.json", keptName));
}

TEST_F(NotesFileTest, WhoseFolderMayNotBeListedIsKeptAgainAndAgain)
{
    fs::create_directory(at("hidden"));
    folder.write("hidden/notes.json", "corrupt");
    fs::permissions(at("hidden"), fs::perms::all & ~fs::perms::owner_read & ~fs::perms::group_read &
                                      ~fs::perms::others_read);
    fs::permissions(at("hidden/notes.json"), fs::perms::all); // or it could not be given a name
    {
        const Unprivileged nobody(folder.path());
        for (const auto time : {moment, moment + 1s})
            EXPECT_TRUE(
                std::holds_alternative<fs::path>(keepUnreadable(at("hidden/notes.json"), time)));
    }
    fs::permissions(at("hidden"), fs::perms::owner_all);
    EXPECT_THAT(folder.names("hidden"),
                ElementsAre("notes.json", keptName, "notes.unreadable-20261122T021001Z.json"));
}

TEST_F(NotesFileTest, ThatIsKeptIsNotFoundWhereNamesCannotBeLookedAt)
{
    folder.write("notes.json", "corrupt");
    ASSERT_TRUE(std::holds_alternative<fs::path>(keepUnreadable(at("notes.json"), moment)));
    std::size_t before = 0;
    {
        const WatchedCalls watched;
        ASSERT_EQ(std::get<fs::path>(keepUnreadable(at("notes.json"), moment)), at(keptName));
        const auto& made = WatchedCalls::made();
        const auto look = std::ranges::find(made, at(keptName).native(), &MadeCall::name);
        ASSERT_NE(look, made.end());
        ASSERT_EQ(look->call, Call::stat);
        before = static_cast<std::size_t>(look - made.begin());
    }
    const WatchedCalls watched(before, EIO, WatchedCalls::Lasting::once);
    EXPECT_EQ(std::get<fs::path>(keepUnreadable(at("notes.json"), moment)),
              at("notes.unreadable-20261122T021000Z-2.json"));
}

TEST_F(NotesFileTest, ThatIsKeptIsOnTheDiskBeforeItIsSaidToBe)
{
    folder.write("notes.json", "corrupt");
    for (int turn = 0; turn < 2; ++turn) { // the second time it is there already
        const FaultyCall faulty(Call::fsync, EIO);
        const auto kept = keepUnreadable(at("notes.json"), moment);
        ASSERT_TRUE(std::holds_alternative<NotesError>(kept)) << turn;
        EXPECT_EQ(std::get<NotesError>(kept).sentence(),
                  at("notes.json").string() + " could not be written: Input/output error.");
    }
    EXPECT_THAT(folder.names(), ElementsAre("notes.json", keptName));
    EXPECT_EQ(std::get<fs::path>(keepUnreadable(at("notes.json"), moment)), at(keptName));
}

TEST_F(NotesFileTest, ThatItsOwnerGaveASecondNameIsKeptAllTheSame)
{
    folder.write("notes.json", "corrupt");
    fs::create_hard_link(at("notes.json"), at("backup.json"));
    EXPECT_EQ(std::get<fs::path>(keepUnreadable(at("notes.json"), moment)), at(keptName));
    EXPECT_THAT(folder.names(), ElementsAre("backup.json", "notes.json", keptName));
}

TEST_F(NotesFileTest, ThatMayHaveNoSecondNameIsRenamed)
{
    folder.write("notes.json", "corrupt");
    {
        const FaultyCall faulty(Call::link, EPERM);
        EXPECT_EQ(std::get<fs::path>(keepUnreadable(at("notes.json"), moment)), at(keptName));
    }
    EXPECT_EQ(folder.content(keptName), "corrupt");
    EXPECT_THAT(folder.names(), ElementsAre(keptName));
}

TEST_F(NotesFileTest, ThatMayBeGivenNoOtherNameStays)
{
    folder.write("notes.json", "corrupt");
    {
        const FaultyCall noLink(Call::link, EPERM);
        // Of the others the first two look at the file.
        const WatchedCalls watched(2, EACCES, WatchedCalls::Lasting::once);
        const auto kept = keepUnreadable(at("notes.json"), moment);
        ASSERT_TRUE(std::holds_alternative<NotesError>(kept));
        EXPECT_EQ(std::get<NotesError>(kept).reason, "Permission denied");
        EXPECT_EQ(WatchedCalls::made().back().call, Call::rename);
    }
    EXPECT_EQ(folder.content("notes.json"), "corrupt");
    EXPECT_THAT(folder.names(), ElementsAre("notes.json"));
}

TEST_F(NotesFileTest, ThatFindsAThousandNamesTakenIsNotKept)
{
    folder.write("notes.json", "corrupt");
    folder.write(keptName, "former");
    for (int number = 2; number <= 1000; ++number)
        folder.write("notes.unreadable-20261122T021000Z-" + std::to_string(number) + ".json",
                     "former");
    const auto kept = keepUnreadable(at("notes.json"), moment);
    ASSERT_TRUE(std::holds_alternative<NotesError>(kept));
    EXPECT_EQ(std::get<NotesError>(kept).reason, "File exists");
    EXPECT_EQ(folder.names().size(), 1001U);
    EXPECT_TRUE(std::holds_alternative<fs::path>(keepUnreadable(at("notes.json"), moment + 1s)));
}

TEST_F(NotesFileTest, ThatItsOwnerMayNotReadIsReplacedByOneThatCanBeRead)
{
    folder.write("notes.json", "secret");
    ASSERT_EQ(chmod(at("notes.json").c_str(), 0), 0);
    ASSERT_TRUE(std::holds_alternative<fs::path>(keepUnreadable(at("notes.json"), moment)));
    EXPECT_EQ(bookOf("new").save(at("notes.json")), std::nullopt);
    EXPECT_EQ(folder.mode("notes.json"), 0400U);
    EXPECT_EQ(folder.mode(keptName), 0U);
}

TEST_F(NotesFileTest, ThatCannotBeLockedIsNotSaved)
{
    const FaultyCall faulty(Call::lock, EIO);
    const auto lock = lockNotesFile(at("notes.json"));
    ASSERT_TRUE(std::holds_alternative<NotesError>(lock));
    EXPECT_EQ(std::get<NotesError>(lock).kind, NotesError::Kind::notSaved);
    EXPECT_EQ(std::get<NotesError>(lock).sentence(),
              at("notes.json").string() + " could not be written: Input/output error.");
}

TEST_F(NotesFileTest, BelowAFileCannotBeLocked)
{
    folder.write("Quillmark", "a file");
    const auto lock = lockNotesFile(at("Quillmark/notes.json"));
    ASSERT_TRUE(std::holds_alternative<NotesError>(lock));
    EXPECT_EQ(std::get<NotesError>(lock).reason, "Not a directory");
}

TEST_F(NotesFileTest, ThatIsLockedIsNotWrittenByOthersMeanwhile)
{
    auto lock = lockNotesFile(at("share/notes.json"));
    ASSERT_TRUE(std::holds_alternative<FileDescriptor>(lock));
    EXPECT_TRUE(std::get<FileDescriptor>(lock).isOpen());
    EXPECT_TRUE(std::holds_alternative<FileError>(lockFolder(at("share"), 0ms)));
    std::get<FileDescriptor>(lock) = FileDescriptor();
    EXPECT_TRUE(std::holds_alternative<FileDescriptor>(lockFolder(at("share"), 0ms)));
}

TEST_F(NotesFileTest, BehindALinkIsLockedWhereItIs)
{
    folder.write("deep/mine.json", "{}");
    fs::create_symlink("deep/mine.json", at("notes.json"));
    const auto lock = lockNotesFile(at("notes.json"));
    ASSERT_TRUE(std::holds_alternative<FileDescriptor>(lock));
    EXPECT_TRUE(std::holds_alternative<FileError>(lockFolder(at("deep"), 0ms)));
    EXPECT_TRUE(std::holds_alternative<FileDescriptor>(lockFolder(folder.path(), 0ms)));
}

TEST_F(NotesFileTest, ThatMayNotBeReadIsKeptAllTheSame)
{
    folder.write("notes.json", "secret");
    ASSERT_EQ(chmod(at("notes.json").c_str(), 0), 0);
    const auto kept = keepUnreadable(at("notes.json"), moment);
    EXPECT_TRUE(std::holds_alternative<fs::path>(kept));
    EXPECT_TRUE(fs::is_regular_file(at(keptName)));
}

TEST_F(NotesFileTest, BehindALinkIsKeptBesideItself)
{
    folder.write("deep/mine.json", "corrupt");
    fs::create_symlink("deep/mine.json", at("notes.json"));
    ASSERT_TRUE(std::holds_alternative<fs::path>(keepUnreadable(at("notes.json"), moment)));
    EXPECT_EQ(bookOf("new").save(at("notes.json")), std::nullopt);
    EXPECT_EQ(folder.content(fs::path("deep") / keptName), "corrupt");
    EXPECT_EQ(NotesBook::load(at("deep/mine.json")), bookOf("new"));
}

TEST_F(NotesFileTest, ThatIsMissingCannotBeKept)
{
    const auto kept = keepUnreadable(at("notes.json"), moment);
    ASSERT_TRUE(std::holds_alternative<NotesError>(kept));
    EXPECT_EQ(std::get<NotesError>(kept).reason, "No such file or directory");
    EXPECT_THAT(folder.names(), ElementsAre());
}

TEST_F(NotesFileTest, ThatIsAFolderCannotBeKept)
{
    fs::create_directory(at("notes.json"));
    ASSERT_TRUE(std::holds_alternative<NotesError>(keepUnreadable(at("notes.json"), moment)));
    EXPECT_THAT(folder.names(), ElementsAre("notes.json"));
}

} // namespace
} // namespace quillmark::test
