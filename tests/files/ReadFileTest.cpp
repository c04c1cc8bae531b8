#include "files/ReadFile.h"

#include "support/FaultyCalls.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstddef>
#include <filesystem>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <variant>

namespace quillmark::test {
namespace {

namespace fs = std::filesystem;

using Result = std::variant<std::string, FileError>;

constexpr std::size_t limit = 1000;

TEST(ReadFile, GivesEveryByte)
{
    const TemporaryFolder folder;
    const std::string bytes("a\0\xFF\r\n", 5);
    EXPECT_EQ(readFile(folder.write("a", bytes), limit), Result(bytes));
}

TEST(ReadFile, CanGiveNone)
{
    const TemporaryFolder folder;
    EXPECT_EQ(readFile(folder.write("a", ""), limit), Result(std::string()));
}

TEST(ReadFile, FollowsALink)
{
    const TemporaryFolder folder;
    folder.write("a", "text");
    fs::create_symlink("a", folder.path() / "link");
    EXPECT_EQ(readFile(folder.path() / "link", limit), Result(std::string("text")));
}

TEST(ReadFile, TakesAFileOfTheLimitAndNoneAboveIt)
{
    const TemporaryFolder folder;
    const std::string most(limit, 'x');
    EXPECT_EQ(readFile(folder.write("most", most), limit), Result(most));
    EXPECT_EQ(readFile(folder.write("more", most + 'x'), limit),
              Result(FileError::ofSystem(EFBIG)));
}

TEST(ReadFile, DoesNotReadAHugeFileToSeeThatItIsOne)
{
    const TemporaryFolder folder;
    const auto path = folder.write("a", "x");
    fs::resize_file(path, std::uintmax_t{1} << 40U); // a hole, which takes no room
    EXPECT_EQ(readFile(path, limit), Result(FileError::ofSystem(EFBIG)));
}

TEST(ReadFile, ReadsAFileThatSaysItIsEmptyAndIsNot)
{
    const auto read = readFile("/proc/self/stat", 10'000);
    ASSERT_TRUE(std::holds_alternative<std::string>(read));
    EXPECT_TRUE(std::get<std::string>(read).starts_with(std::to_string(getpid()) + " "));
    EXPECT_EQ(readFile("/proc/self/stat", 10), Result(FileError::ofSystem(EFBIG)));
}

TEST(ReadFile, GoesOnWhenItIsInterrupted)
{
    const TemporaryFolder folder;
    const auto path = folder.write("a", "text");
    // Before it is read it is opened, and asked for its size.
    const WatchedCalls watched(2, EINTR, WatchedCalls::Lasting::once);
    EXPECT_EQ(readFile(path, limit), Result(std::string("text")));
    ASSERT_GT(WatchedCalls::made().size(), 2U);
    EXPECT_EQ(WatchedCalls::made()[2].call, Call::read);
    EXPECT_TRUE(WatchedCalls::made()[2].failed);
}

TEST(ReadFile, SaysThatTheDiskFails)
{
    const TemporaryFolder folder;
    const auto path = folder.write("a", "text");
    for (const Call call : {Call::open, Call::stat, Call::read}) {
        const FaultyCall faulty(call, EIO);
        EXPECT_EQ(readFile(path, limit), Result(FileError::ofSystem(EIO))) << nameOf(call);
    }
}

TEST(ReadFile, SaysThatThereIsNone)
{
    const TemporaryFolder folder;
    EXPECT_EQ(readFile(folder.path() / "a", limit), Result(FileError::ofSystem(ENOENT)));
}

TEST(ReadFile, SaysThatItIsAFolder)
{
    const TemporaryFolder folder;
    EXPECT_EQ(readFile(folder.path(), limit), Result(FileError::ofSystem(EISDIR)));
}

TEST(ReadFile, DoesNotWaitForAPipe)
{
    const TemporaryFolder folder;
    ASSERT_EQ(mkfifo((folder.path() / "pipe").c_str(), 0600), 0);
    EXPECT_EQ(readFile(folder.path() / "pipe", limit), Result(FileError{0, "Not a regular file"}));
}

TEST(ReadFile, LeavesADeviceAlone)
{
    EXPECT_EQ(readFile("/dev/zero", limit), Result(FileError{0, "Not a regular file"}));
}

} // namespace
} // namespace quillmark::test
