#include "files/FolderLock.h"

#include "support/FaultyCalls.h"
#include "support/TemporaryFolder.h"
#include "support/Unprivileged.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <chrono>
#include <filesystem>
#include <optional>
#include <utility>
#include <variant>

namespace quillmark::test {
namespace {

using namespace std::chrono_literals;

std::optional<FileDescriptor> lock(const std::filesystem::path& folder)
{
    auto locked = lockFolder(folder, 0ms);
    auto* const descriptor = std::get_if<FileDescriptor>(&locked);
    return descriptor == nullptr ? std::nullopt : std::optional(std::move(*descriptor));
}

TEST(FolderLock, IsHeldByOneAtATimeAndLeavesNothingBehind)
{
    const TemporaryFolder folder;
    auto held = lock(folder.path());
    ASSERT_TRUE(held);
    EXPECT_TRUE(held->isOpen());
    EXPECT_FALSE(lock(folder.path()));
    held.reset();
    EXPECT_TRUE(lock(folder.path()));
    EXPECT_THAT(folder.names(), testing::IsEmpty());
}

TEST(FolderLock, OfSomebodyElseIsNotWaitedForForEver)
{
    const TemporaryFolder folder;
    const auto held = lock(folder.path());
    const auto refused = lockFolder(folder.path(), 5ms);
    ASSERT_TRUE(std::holds_alternative<FileError>(refused));
    EXPECT_EQ(std::get<FileError>(refused), (FileError{EWOULDBLOCK, "It is in use"}));
}

TEST(FolderLock, OfSomebodyElseIsWaitedFor)
{
    const TemporaryFolder folder;
    const WatchedCalls watched(1, EWOULDBLOCK, WatchedCalls::Lasting::once);
    const auto locked = lockFolder(folder.path(), 1h);
    ASSERT_TRUE(std::holds_alternative<FileDescriptor>(locked));
    EXPECT_TRUE(std::get<FileDescriptor>(locked).isOpen());
    ASSERT_EQ(WatchedCalls::made().size(), 3U);
    EXPECT_TRUE(WatchedCalls::made()[1].failed);
}

TEST(FolderLock, IsTriedAgainWhenItIsInterrupted)
{
    const TemporaryFolder folder;
    const WatchedCalls watched(1, EINTR, WatchedCalls::Lasting::once);
    const auto locked = lock(folder.path());
    ASSERT_TRUE(locked);
    EXPECT_TRUE(locked->isOpen());
    ASSERT_EQ(WatchedCalls::made().size(), 3U);
    EXPECT_EQ(WatchedCalls::made()[1].call, Call::lock);
    EXPECT_TRUE(WatchedCalls::made()[1].failed);
    EXPECT_EQ(WatchedCalls::made()[2].call, Call::lock);
}

TEST(FolderLock, ThatFailsIsAnError)
{
    const TemporaryFolder folder;
    const FaultyCall faulty(Call::lock, EIO);
    const auto locked = lockFolder(folder.path(), 0ms);
    ASSERT_TRUE(std::holds_alternative<FileError>(locked));
    EXPECT_EQ(std::get<FileError>(locked), FileError::ofSystem(EIO));
}

TEST(FolderLock, IsDoneWithoutWhereTheFolderMayNotBeListed)
{
    const TemporaryFolder folder;
    const auto hidden = folder.path() / "hidden";
    std::filesystem::create_directory(hidden);
    std::filesystem::permissions(hidden, std::filesystem::perms::owner_exec);
    std::optional<FileDescriptor> locked;
    {
        const Unprivileged nobody(folder.path());
        locked = lock(hidden);
    }
    std::filesystem::permissions(hidden, std::filesystem::perms::owner_all);
    ASSERT_TRUE(locked);
    EXPECT_FALSE(locked->isOpen());
}

TEST(FolderLock, IsDoneWithoutWhereTheFileSystemKnowsNone)
{
    const TemporaryFolder folder;
    const FaultyCall faulty(Call::lock, ENOLCK);
    const auto locked = lock(folder.path());
    ASSERT_TRUE(locked);
    EXPECT_FALSE(locked->isOpen());
}

TEST(FolderLock, OfAMissingFolderIsAnError)
{
    const TemporaryFolder folder;
    const auto locked = lockFolder(folder.path() / "missing", 0ms);
    ASSERT_TRUE(std::holds_alternative<FileError>(locked));
    EXPECT_EQ(std::get<FileError>(locked), FileError::ofSystem(ENOENT));
}

} // namespace
} // namespace quillmark::test
