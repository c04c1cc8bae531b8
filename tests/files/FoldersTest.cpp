#include "files/Folders.h"

#include "support/FaultyCalls.h"
#include "support/TemporaryFolder.h"
#include "support/Unprivileged.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <optional>
#include <sys/stat.h>

namespace quillmark::test {
namespace {

namespace fs = std::filesystem;

TEST(MakeFolders, MakesEveryMissingOneForItsOwnerOnly)
{
    const TemporaryFolder folder;
    EXPECT_EQ(makeFolders(folder.path() / "share/Quillmark/deep"), std::nullopt);
    EXPECT_EQ(folder.mode("share"), 0700U);
    EXPECT_EQ(folder.mode("share/Quillmark"), 0700U);
    EXPECT_EQ(folder.mode("share/Quillmark/deep"), 0700U);
}

TEST(MakeFolders, LeavesAnExistingOneAsItIs)
{
    const TemporaryFolder folder;
    fs::create_directory(folder.path() / "a");
    fs::permissions(folder.path() / "a", fs::perms(0755));
    EXPECT_EQ(makeFolders(folder.path() / "a"), std::nullopt);
    EXPECT_EQ(makeFolders(folder.path() / "a/"), std::nullopt);
    EXPECT_EQ(folder.mode("a"), 0755U);
}

TEST(MakeFolders, TakesASlashAtTheEnd)
{
    const TemporaryFolder folder;
    EXPECT_EQ(makeFolders(folder.path() / "a/b/"), std::nullopt);
    EXPECT_TRUE(fs::is_directory(folder.path() / "a/b"));
}

TEST(MakeFolders, FollowsALinkToAFolder)
{
    const TemporaryFolder folder;
    fs::create_directory(folder.path() / "real");
    fs::create_directory_symlink("real", folder.path() / "link");
    EXPECT_EQ(makeFolders(folder.path() / "link/a"), std::nullopt);
    EXPECT_TRUE(fs::is_directory(folder.path() / "real/a"));
}

TEST(MakeFolders, OfAnEmptyPathIsTheCurrentFolder)
{
    EXPECT_EQ(makeFolders({}), std::nullopt);
}

TEST(MakeFolders, SaysThatAFileIsInTheWay)
{
    const TemporaryFolder folder;
    folder.write("file", "x");
    EXPECT_EQ(makeFolders(folder.path() / "file"), FileError::ofSystem(ENOTDIR));
    EXPECT_EQ(makeFolders(folder.path() / "file/a"), FileError::ofSystem(ENOTDIR));
}

TEST(MakeFolders, SaysThatALinkLeadsNowhere)
{
    const TemporaryFolder folder;
    fs::create_symlink("nowhere", folder.path() / "link");
    EXPECT_NE(makeFolders(folder.path() / "link/a"), std::nullopt);
    EXPECT_FALSE(fs::exists(folder.path() / "nowhere"));
}

TEST(MakeFolders, SaysThatTheDiskFails)
{
    const TemporaryFolder folder;
    const FaultyCall faulty(Call::fsync, EIO);
    EXPECT_EQ(makeFolders(folder.path() / "a"), FileError::ofSystem(EIO));
}

TEST(MakeFolders, LeavesNoneThatMayNotLast)
{
    const TemporaryFolder folder;
    {
        const FaultyCall faulty(Call::fsync, EIO, 1);
        EXPECT_EQ(makeFolders(folder.path() / "a/b/c"), FileError::ofSystem(EIO));
    }
    EXPECT_TRUE(fs::is_directory(folder.path() / "a"));
    EXPECT_FALSE(fs::exists(folder.path() / "a/b"));
    EXPECT_EQ(makeFolders(folder.path() / "a/b/c"), std::nullopt);
}

TEST(MakeFolders, LeavesTheFolderOfSomebodyElseWhenTheDiskFails)
{
    const TemporaryFolder folder;
    fs::create_directory(folder.path() / "a");
    {
        // It is not seen at first, and is there when it is to be made.
        const WatchedCalls watched(0, ENOENT, WatchedCalls::Lasting::once);
        const FaultyCall faulty(Call::fsync, EIO);
        EXPECT_EQ(makeFolders(folder.path() / "a"), FileError::ofSystem(EIO));
    }
    EXPECT_TRUE(fs::is_directory(folder.path() / "a"));
}

TEST(MakeFolders, SaysWhyOneCannotBeMade)
{
    const TemporaryFolder folder;
    const FaultyCall faulty(Call::mkdir, EDQUOT);
    EXPECT_EQ(makeFolders(folder.path() / "a"), FileError::ofSystem(EDQUOT));
}

TEST(SyncFolder, IsTriedAgainWhenItIsInterrupted)
{
    const TemporaryFolder folder;
    const WatchedCalls watched(1, EINTR, WatchedCalls::Lasting::once);
    EXPECT_EQ(syncFolder(folder.path()), 0);
    ASSERT_EQ(WatchedCalls::made().size(), 4U); // between opening and closing
    EXPECT_TRUE(WatchedCalls::made()[1].failed);
    EXPECT_EQ(WatchedCalls::made()[2].call, Call::fsync);
}

TEST(SyncFolder, OfOneThatMayNotBeListedIsLeftToTheSystem)
{
    const TemporaryFolder folder;
    const auto hidden = folder.path() / "hidden";
    fs::create_directory(hidden);
    fs::permissions(hidden, fs::perms::owner_exec);
    {
        const Unprivileged nobody(folder.path());
        EXPECT_EQ(syncFolder(hidden), 0);
    }
    fs::permissions(hidden, fs::perms::owner_all);
}

TEST(OpenFolder, OfAnEmptyPathIsTheCurrentFolder)
{
    struct stat opened {};
    struct stat current {};
    const FileDescriptor folder = openFolder("");
    ASSERT_EQ(fstat(folder.get(), &opened), 0);
    ASSERT_EQ(stat(".", &current), 0);
    EXPECT_EQ(opened.st_dev, current.st_dev);
    EXPECT_EQ(opened.st_ino, current.st_ino);
}

TEST(SyncFolder, OfAMissingOneIsAnError)
{
    const TemporaryFolder folder;
    EXPECT_EQ(syncFolder(folder.path() / "a"), ENOENT);
}

TEST(RenameToNew, SaysWhatTheSystemSays)
{
    const TemporaryFolder folder;
    folder.write("a", "x");
    const FaultyCall faulty(Call::rename, EACCES);
    EXPECT_EQ(renameToNew(AT_FDCWD, folder.path() / "a", folder.path() / "b"), EACCES);
    EXPECT_TRUE(fs::exists(folder.path() / "a"));
}

} // namespace
} // namespace quillmark::test
