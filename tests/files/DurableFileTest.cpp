// A file is replaced whole or stays as it was, whichever system call fails.
#include "files/DurableFile.h"

#include "support/FaultyCalls.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace quillmark::test {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;

constexpr unsigned ownerOnly = 0600;

class Durable : public testing::Test {
protected:
    [[nodiscard]] fs::path at(const fs::path& relative) const { return folder.path() / relative; }

    TemporaryFolder folder;
};

using DurableFileTest = Durable;

TEST_F(DurableFileTest, HoldsWhatWasWritten)
{
    EXPECT_EQ(writeDurably(at("a"), "new", ownerOnly), std::nullopt);
    EXPECT_EQ(folder.content("a"), "new");
    EXPECT_THAT(folder.names(), ElementsAre("a"));
}

TEST_F(DurableFileTest, TakesThePlaceOfALongerOne)
{
    folder.write("a", "a longer text from before");
    EXPECT_EQ(writeDurably(at("a"), "new", ownerOnly), std::nullopt);
    EXPECT_EQ(folder.content("a"), "new");
    EXPECT_THAT(folder.names(), ElementsAre("a"));
}

TEST_F(DurableFileTest, CanBeEmpty)
{
    folder.write("a", "old");
    EXPECT_EQ(writeDurably(at("a"), "", ownerOnly), std::nullopt);
    EXPECT_EQ(folder.content("a"), "");
}

TEST_F(DurableFileTest, IsReadableForItsOwnerOnlyUntilItIsInPlace)
{
    auto made = DurableFile::create(at("a"), 0644);
    ASSERT_TRUE(std::holds_alternative<DurableFile>(made));
    auto& file = std::get<DurableFile>(made);
    EXPECT_EQ(folder.mode(file.temporary().filename()), 0600U);
    EXPECT_EQ(file.temporary().parent_path(), folder.path());
    EXPECT_EQ(file.commit(), std::nullopt);
    EXPECT_EQ(folder.mode("a"), 0644U);
}

TEST_F(DurableFileTest, KeepsThePermissionsOfTheFormerOne)
{
    folder.write("a", "old");
    ASSERT_EQ(chmod(at("a").c_str(), 0640), 0);
    EXPECT_EQ(writeDurably(at("a"), "new", ownerOnly), std::nullopt);
    EXPECT_EQ(folder.mode("a"), 0640U);
}

TEST_F(DurableFileTest, CanBeReadByItsOwnerWhateverTheFormerOneSaid)
{
    for (const auto& [before, after] : {std::pair(0U, 0400U), std::pair(0222U, 0622U),
                                        std::pair(0044U, 0444U), std::pair(0444U, 0444U)}) {
        folder.write("a", "old");
        ASSERT_EQ(chmod(at("a").c_str(), before), 0);
        EXPECT_EQ(writeDurably(at("a"), "new", ownerOnly), std::nullopt);
        EXPECT_EQ(folder.mode("a"), after);
        ASSERT_EQ(chmod(at("a").c_str(), 0600), 0);
    }
}

TEST_F(DurableFileTest, KeepsNoRightToRunAsItsOwner)
{
    folder.write("a", "old");
    ASSERT_EQ(chmod(at("a").c_str(), 06755), 0);
    EXPECT_EQ(writeDurably(at("a"), "new", ownerOnly), std::nullopt);
    EXPECT_EQ(folder.mode("a"), 0755U);
}

TEST_F(DurableFileTest, KeepsOwnerAndGroupWhereTheyCanBeGiven)
{
    if (geteuid() != 0) GTEST_SKIP() << "only root can give files to others";
    folder.write("a", "old");
    ASSERT_EQ(chown(at("a").c_str(), 1234, 2345), 0);
    ASSERT_EQ(chmod(at("a").c_str(), 0640), 0);
    EXPECT_EQ(writeDurably(at("a"), "new", ownerOnly), std::nullopt);
    struct stat status {};
    ASSERT_EQ(stat(at("a").c_str(), &status), 0);
    EXPECT_EQ(status.st_uid, 1234U);
    EXPECT_EQ(status.st_gid, 2345U);
    EXPECT_EQ(folder.mode("a"), 0640U);
}

TEST_F(DurableFileTest, GivesAnotherGroupNoMoreThanEverybody)
{
    for (const auto& [before, after] : {std::pair(0660U, 0600U), std::pair(0664U, 0644U),
                                        std::pair(0606U, 0606U), std::pair(0777U, 0777U)}) {
        folder.write("a", "old");
        ASSERT_EQ(chmod(at("a").c_str(), before), 0);
        const FaultyCall faulty(Call::fchown, EPERM);
        EXPECT_EQ(writeDurably(at("a"), "new", ownerOnly), std::nullopt);
        EXPECT_EQ(folder.mode("a"), after);
    }
}

TEST_F(DurableFileTest, KeepsItsGroupWhereOnlyTheOwnerCannotBeGiven)
{
    folder.write("a", "old");
    ASSERT_EQ(chmod(at("a").c_str(), 0660), 0);
    std::size_t before = 0;
    {
        const WatchedCalls watched;
        EXPECT_EQ(writeDurably(at("a"), "new", ownerOnly), std::nullopt);
        const auto& made = WatchedCalls::made();
        const auto owner = std::ranges::find(made, Call::fchown, &MadeCall::call);
        ASSERT_NE(owner, made.end());
        before = static_cast<std::size_t>(owner - made.begin());
    }
    const WatchedCalls watched(before, EPERM, WatchedCalls::Lasting::once);
    EXPECT_EQ(writeDurably(at("a"), "newer", ownerOnly), std::nullopt);
    EXPECT_EQ(std::ranges::count(WatchedCalls::made(), Call::fchown, &MadeCall::call), 2);
    EXPECT_EQ(folder.mode("a"), 0660U);
}

TEST_F(DurableFileTest, ThatCanBeMadeAgainDoesNotWaitForTheDisk)
{
    folder.write("a", "old");
    auto made = DurableFile::create(at("a"), ownerOnly);
    ASSERT_TRUE(std::holds_alternative<DurableFile>(made));
    auto& file = std::get<DurableFile>(made);
    EXPECT_EQ(writeAll(file.descriptor(), "new"), 0);
    const FaultyCall faulty(Call::fsync, EIO);
    EXPECT_EQ(file.commit(Durability::unsynced), std::nullopt);
    EXPECT_EQ(folder.content("a"), "new");
    EXPECT_THAT(folder.names(), ElementsAre("a"));
}

TEST_F(DurableFileTest, ThatIsNotCommittedLeavesNothing)
{
    folder.write("a", "old");
    {
        auto made = DurableFile::create(at("a"), ownerOnly);
        ASSERT_TRUE(std::holds_alternative<DurableFile>(made));
        EXPECT_EQ(writeAll(std::get<DurableFile>(made).descriptor(), "half"), 0);
        EXPECT_EQ(folder.names().size(), 2U);
    }
    EXPECT_EQ(folder.content("a"), "old");
    EXPECT_THAT(folder.names(), ElementsAre("a"));
}

TEST_F(DurableFileTest, BehindALinkIsReplacedAndTheLinkStays)
{
    folder.write("deep/a", "old");
    fs::create_symlink("deep/a", at("link"));
    EXPECT_EQ(writeDurably(at("link"), "new", ownerOnly), std::nullopt);
    EXPECT_TRUE(fs::is_symlink(at("link")));
    EXPECT_EQ(folder.content("deep/a"), "new");
}

TEST_F(DurableFileTest, IsMadeWhereALinkPointsThatLedNowhere)
{
    fs::create_directory(at("deep"));
    fs::create_symlink("deep/a", at("link"));
    EXPECT_EQ(writeDurably(at("link"), "new", ownerOnly), std::nullopt);
    EXPECT_TRUE(fs::is_symlink(at("link")));
    EXPECT_EQ(folder.content("deep/a"), "new");
}

TEST_F(DurableFileTest, IsFoundAtTheEndOfAsManyLinksAsTheSystemFollows)
{
    folder.write("0", "text");
    for (int link = 1; link <= 41; ++link)
        fs::create_symlink(std::to_string(link - 1), at(std::to_string(link)));
    EXPECT_EQ(endOfLinks(at("0")), at("0"));
    EXPECT_EQ(endOfLinks(at("1")), at("0"));
    EXPECT_EQ(endOfLinks(at("40")), at("0"));
    EXPECT_EQ(endOfLinks(at("41")), at("1"));
}

TEST_F(DurableFileTest, BehindALinkToItselfIsAnError)
{
    fs::create_symlink("link", at("link"));
    EXPECT_EQ(writeDurably(at("link"), "new", ownerOnly), FileError::ofSystem(ELOOP));
}

TEST_F(DurableFileTest, DoesNotReplaceAFolder)
{
    fs::create_directory(at("a"));
    EXPECT_EQ(writeDurably(at("a"), "new", ownerOnly), FileError::ofSystem(EISDIR));
    EXPECT_TRUE(fs::is_directory(at("a")));
    EXPECT_THAT(folder.names(), ElementsAre("a"));
}

TEST_F(DurableFileTest, DoesNotReplaceAPipe)
{
    ASSERT_EQ(mkfifo(at("a").c_str(), 0600), 0);
    EXPECT_EQ(writeDurably(at("a"), "new", ownerOnly), (FileError{0, "Not a regular file"}));
    EXPECT_TRUE(fs::is_fifo(at("a")));
    EXPECT_THAT(folder.names(), ElementsAre("a"));
}

TEST_F(DurableFileTest, InAMissingFolderIsAnError)
{
    EXPECT_EQ(writeDurably(at("missing/a"), "new", ownerOnly), FileError::ofSystem(ENOENT));
    EXPECT_THAT(folder.names(), ElementsAre());
}

TEST_F(DurableFileTest, BelowAFileIsAnError)
{
    folder.write("file", "x");
    EXPECT_EQ(writeDurably(at("file/a"), "new", ownerOnly), FileError::ofSystem(ENOTDIR));
    EXPECT_THAT(folder.names(), ElementsAre("file"));
}

TEST_F(DurableFileTest, ErrorsSpeakTheSystemsWords)
{
    const auto error = writeDurably(at("missing/a"), "new", ownerOnly);
    ASSERT_TRUE(error);
    EXPECT_EQ(error->reason, "No such file or directory");
}

TEST_F(DurableFileTest, IsWrittenWholeThroughInterruptedAndShortWrites)
{
    std::string bytes;
    for (int i = 0; i < 1000; ++i)
        bytes += std::to_string(i);
    std::optional<FileError> error;
    {
        const ShortWrites writes(7);
        error = writeDurably(at("a"), bytes, ownerOnly);
    }
    EXPECT_EQ(error, std::nullopt);
    EXPECT_EQ(folder.content("a"), bytes);
}

struct Fault {
    const char* name;
    Call call;
    int error;
};

class DurableFileFault : public Durable, public testing::WithParamInterface<Fault> {};

TEST_P(DurableFileFault, LeavesTheFormerFileAndNoOther)
{
    folder.write("a", "old");
    std::optional<FileError> error;
    {
        const FaultyCall faulty(GetParam().call, GetParam().error);
        error = writeDurably(at("a"), "new", ownerOnly);
    }
    EXPECT_EQ(error, FileError::ofSystem(GetParam().error));
    EXPECT_EQ(folder.content("a"), "old");
    EXPECT_THAT(folder.names(), ElementsAre("a"));
}

TEST_P(DurableFileFault, LeavesNothingWhereNoFileWas)
{
    {
        const FaultyCall faulty(GetParam().call, GetParam().error);
        EXPECT_EQ(writeDurably(at("a"), "new", ownerOnly), FileError::ofSystem(GetParam().error));
    }
    EXPECT_THAT(folder.names(), ElementsAre());
}

INSTANTIATE_TEST_SUITE_P(DurableFile, DurableFileFault,
                         testing::Values(Fault{"StatusRefused", Call::stat, EACCES},
                                         Fault{"BadDiskOnTheWayThere", Call::resolve, EIO},
                                         Fault{"TooManyFilesOpen", Call::open, EMFILE},
                                         Fault{"FullDisk", Call::write, ENOSPC},
                                         Fault{"QuotaUsedUp", Call::write, EDQUOT},
                                         Fault{"BadDiskAtWrite", Call::write, EIO},
                                         Fault{"BadDiskAtSync", Call::fsync, EIO},
                                         Fault{"FullDiskAtSync", Call::fsync, ENOSPC},
                                         Fault{"BadDiskAtClose", Call::close, EIO},
                                         Fault{"RenameRefused", Call::rename, EACCES},
                                         Fault{"ReadOnlyAtRename", Call::rename, EROFS},
                                         Fault{"BadDiskAtPermissions", Call::fchmod, EIO}),
                         [](const auto& test) { return std::string(test.param.name); });

TEST_F(DurableFileTest, IsReplacedAlreadyWhenTheFolderCannotBePutOnTheDisk)
{
    folder.write("a", "old");
    std::optional<FileError> error;
    {
        const FaultyCall faulty(Call::fsync, EIO, 1);
        error = writeDurably(at("a"), "new", ownerOnly);
    }
    EXPECT_EQ(error, FileError::unsynced(EIO));
    EXPECT_EQ(folder.content("a"), "new");
    EXPECT_THAT(folder.names(), ElementsAre("a"));
}

bool opensATemporary(const MadeCall& made)
{
    return made.call == Call::open && made.name.starts_with(".quillmark-");
}

TEST_F(DurableFileTest, IsMadeUnderAnotherTemporaryNameWhenOneIsTaken)
{
    std::size_t before = 0;
    {
        const WatchedCalls watched;
        EXPECT_EQ(writeDurably(at("a"), "old", ownerOnly), std::nullopt);
        const auto& made = WatchedCalls::made();
        const auto opening = std::ranges::find_if(made, opensATemporary);
        ASSERT_NE(opening, made.end());
        before = static_cast<std::size_t>(opening - made.begin());
    }
    fs::remove(at("a"));
    {
        const WatchedCalls watched(before, EEXIST, WatchedCalls::Lasting::once);
        EXPECT_EQ(writeDurably(at("a"), "new", ownerOnly), std::nullopt);
        EXPECT_EQ(std::ranges::count_if(WatchedCalls::made(), opensATemporary), 2);
    }
    EXPECT_EQ(folder.content("a"), "new");
    EXPECT_THAT(folder.names(), ElementsAre("a"));
}

TEST_F(DurableFileTest, IsNotMadeWhenEveryTemporaryNameIsTaken)
{
    folder.write("a", "old");
    {
        const FaultyCall faulty(Call::open, EEXIST, 1); // the folder can be opened
        EXPECT_EQ(writeDurably(at("a"), "new", ownerOnly), FileError::ofSystem(EEXIST));
    }
    EXPECT_EQ(folder.content("a"), "old");
    EXPECT_THAT(folder.names(), ElementsAre("a"));
}

TEST_F(DurableFileTest, IsNotMadeWhereNoFileMayBeMade)
{
    folder.write("a", "old");
    {
        const FaultyCall faulty(Call::open, EACCES, 1);
        EXPECT_EQ(writeDurably(at("a"), "new", ownerOnly), FileError::ofSystem(EACCES));
    }
    EXPECT_EQ(folder.content("a"), "old");
}

TEST_F(DurableFileTest, ThatIsNewSaysWhyItCannotBeMade)
{
    EXPECT_EQ(std::get<FileError>(DurableFile::createNew(at("missing"), "a", ownerOnly)),
              FileError::ofSystem(ENOENT));
    const FaultyCall faulty(Call::stat, EIO);
    EXPECT_EQ(std::get<FileError>(DurableFile::createNew(folder.path(), "a", ownerOnly)),
              FileError::ofSystem(EIO));
}

TEST_F(DurableFileTest, StaysInItsFolderWhenThatIsSwapped)
{
    folder.write("real/a", "old");
    folder.write("other/a", "precious");
    auto made = DurableFile::create(at("real/a"), ownerOnly);
    ASSERT_TRUE(std::holds_alternative<DurableFile>(made));
    auto& file = std::get<DurableFile>(made);
    EXPECT_EQ(writeAll(file.descriptor(), "new"), 0);
    fs::rename(at("real"), at("moved"));
    fs::create_symlink("other", at("real"));
    EXPECT_EQ(file.commit(), std::nullopt);
    EXPECT_EQ(folder.content("moved/a"), "new");
    EXPECT_EQ(folder.content("other/a"), "precious");
    EXPECT_THAT(folder.names("other"), ElementsAre("a"));
}

TEST_F(DurableFileTest, ThatIsNewIsMade)
{
    auto made = DurableFile::createNew(folder.path(), "a", ownerOnly);
    ASSERT_TRUE(std::holds_alternative<DurableFile>(made));
    EXPECT_EQ(writeAll(std::get<DurableFile>(made).descriptor(), "new"), 0);
    EXPECT_EQ(std::get<DurableFile>(made).commit(), std::nullopt);
    EXPECT_EQ(folder.content("a"), "new");
    EXPECT_EQ(folder.mode("a"), 0600U);
    EXPECT_THAT(folder.names(), ElementsAre("a"));
}

TEST_F(DurableFileTest, ThatIsNewReplacesNothing)
{
    folder.write("file", "old");
    fs::create_symlink("nowhere", at("link"));
    for (const std::string name : {"file", "link"})
        EXPECT_EQ(std::get<FileError>(DurableFile::createNew(folder.path(), name, ownerOnly)),
                  FileError::ofSystem(EEXIST));
    EXPECT_THAT(folder.names(), ElementsAre("file", "link"));
}

TEST_F(DurableFileTest, ThatIsNewReplacesNothingThatComesMeanwhile)
{
    folder.write("precious", "old");
    for (const bool knowsTheCall : {true, false}) {
        fs::remove(at("a"));
        auto made = DurableFile::createNew(folder.path(), "a", ownerOnly);
        ASSERT_TRUE(std::holds_alternative<DurableFile>(made));
        fs::create_symlink("precious", at("a"));
        // A file system that cannot do it in one step says so.
        std::optional<FaultyCall> faulty;
        if (!knowsTheCall) faulty.emplace(Call::rename, EINVAL);
        EXPECT_EQ(std::get<DurableFile>(made).commit(), FileError::ofSystem(EEXIST));
    }
    EXPECT_EQ(folder.content("precious"), "old");
    EXPECT_THAT(folder.names(), ElementsAre("a", "precious"));
}

TEST_F(DurableFileTest, ThatIsNewIsMadeWhereItTakesTwoSteps)
{
    auto made = DurableFile::createNew(folder.path(), "a", ownerOnly);
    ASSERT_TRUE(std::holds_alternative<DurableFile>(made));
    const FaultyCall faulty(Call::rename, EINVAL);
    EXPECT_EQ(std::get<DurableFile>(made).commit(), std::nullopt);
    EXPECT_THAT(folder.names(), ElementsAre("a"));
}

TEST_F(DurableFileTest, ThatIsNewIsMadeWhereTheSystemKnowsNoOtherWay)
{
    auto made = DurableFile::createNew(folder.path(), "a", ownerOnly);
    ASSERT_TRUE(std::holds_alternative<DurableFile>(made));
    const FaultyCall faulty(Call::rename, ENOSYS);
    EXPECT_EQ(std::get<DurableFile>(made).commit(), std::nullopt);
    EXPECT_THAT(folder.names(), ElementsAre("a"));
}

TEST_F(DurableFileTest, ThatIsNewIsNotMadeBehindALink)
{
    fs::create_directory(at("real"));
    fs::create_symlink("real", at("link"));
    EXPECT_EQ(std::get<FileError>(DurableFile::createNew(at("link"), "a", ownerOnly)),
              FileError::ofSystem(ENOTDIR));
    EXPECT_THAT(folder.names("real"), ElementsAre());
}

TEST_F(DurableFileTest, IsWrittenWhereTheFileSystemKnowsNoSync)
{
    const FaultyCall faulty(Call::fsync, EINVAL);
    EXPECT_EQ(writeDurably(at("a"), "new", ownerOnly), std::nullopt);
}

TEST_F(DurableFileTest, IsWrittenWhereTheFileSystemKnowsNoPermissions)
{
    for (const int error : {EPERM, ENOTSUP}) {
        const FaultyCall faulty(Call::fchmod, error);
        EXPECT_EQ(writeDurably(at("a"), "new", 0644), std::nullopt);
        EXPECT_EQ(folder.mode("a"), 0600U);
    }
}

TEST(NewFileMode, IsWhatTheProcessLeavesAndLeavesThatAsItIs)
{
    const mode_t before = umask(0027);
    EXPECT_EQ(newFileMode(), 0640U);
    EXPECT_EQ(umask(before), 0027U);
}

TEST_F(DurableFileTest, StaysAsItWasWhenTheLimitOnFileSizesIsReached)
{
    folder.write("a", "old");
    const pid_t child = fork();
    if (child == 0) {
        const rlimit limit{1000, 1000};
        setrlimit(RLIMIT_FSIZE, &limit);
        static_cast<void>(std::signal(SIGXFSZ, SIG_IGN));
        const auto error = writeDurably(at("a"), std::string(5000, 'x'), ownerOnly);
        _exit(error == FileError::ofSystem(EFBIG) ? 0 : 1);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(folder.content("a"), "old");
    EXPECT_THAT(folder.names(), ElementsAre("a"));
}

} // namespace
} // namespace quillmark::test
