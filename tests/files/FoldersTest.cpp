#include "files/Folders.h"

#include "support/FaultyCalls.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <optional>

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

} // namespace
} // namespace quillmark::test
