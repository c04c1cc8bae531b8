#include "reader/Confinement.h"

#include "files/ProcessMemory.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <functional>
#include <string>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quillmark::reader {
namespace {

/// What a confined process finds that it can do.
struct Found {
    Confinement confinement;
    int error{}; // of what it tried; zero when it could do it
};

/// Tries something in a process that is confined. What is tried returns a negative number when it
/// fails, with the reason in errno.
Found tried(const std::function<long()>& attempt)
{
    std::array<int, 2> ends{-1, -1};
    EXPECT_EQ(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()), 0);
    const pid_t process = ::fork();
    if (process == 0) {
        Found found;
        found.confinement = confine(ends[1]);
        errno = 0;
        found.error = attempt() < 0 ? errno : 0;
        static_cast<void>(!::write(ends[1], &found, sizeof found));
        ::_exit(0);
    }
    ::close(ends[1]);
    Found found;
    EXPECT_EQ(::read(ends[0], &found, sizeof found), static_cast<ssize_t>(sizeof found))
        << "the process ended";
    ::close(ends[0]);
    int status = 0;
    ::waitpid(process, &status, 0);
    return found;
}

/// Tests of what the kernel has to forbid.
class Confined : public testing::Test {
protected:
    /// What is tried is refused, if the kernel has what refuses it.
    void expectRefused(const std::function<long()>& attempt, bool landlockRefuses)
    {
        const Found found = tried(attempt);
        if (found.confinement.systemCalls || (landlockRefuses && found.confinement.files))
            EXPECT_THAT(found.error, testing::AnyOf(EPERM, EACCES));
        else
            GTEST_SKIP() << "This kernel or this build has no "
                         << (landlockRefuses ? "Landlock and no " : "") << "seccomp filter.";
    }

    test::TemporaryFolder folder;
    std::string path{folder.write("file", "content")};
    std::string newPath{folder.path() / "new"};
};

TEST_F(Confined, ReadsFiles)
{
    const Found found = tried([this] {
        const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
        char byte = 0;
        return file < 0 ? -1 : ::pread(file, &byte, 1, 0) - 1;
    });
    EXPECT_EQ(found.error, 0);
}

TEST_F(Confined, OpensNoFileForWriting)
{
    for (const int flags : {O_WRONLY, O_RDWR, O_RDONLY | O_TRUNC, O_WRONLY | O_APPEND})
        expectRefused([&] { return ::open(path.c_str(), flags | O_CLOEXEC); }, true);
}

TEST_F(Confined, CutsNoFile)
{
    expectRefused([&] { return ::truncate(path.c_str(), 0); }, true);
    EXPECT_EQ(std::filesystem::file_size(path), 7U);
}

TEST_F(Confined, MakesNoFile)
{
    expectRefused([&] { return ::open(newPath.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600); },
                  true);
    expectRefused([&] { return ::open(folder.path().c_str(), O_TMPFILE | O_RDWR, 0600); }, true);
    expectRefused([&] { return ::mkdir(newPath.c_str(), 0700); }, true);
    expectRefused([&] { return ::symlink(path.c_str(), newPath.c_str()); }, true);
    expectRefused([&] { return ::link(path.c_str(), newPath.c_str()); }, true);
    EXPECT_FALSE(std::filesystem::exists(newPath));
}

TEST_F(Confined, RemovesAndRenamesNothing)
{
    expectRefused([&] { return ::unlink(path.c_str()); }, true);
    expectRefused([&] { return ::rename(path.c_str(), newPath.c_str()); }, true);
    EXPECT_TRUE(std::filesystem::exists(path));
}

TEST_F(Confined, ChangesNoRights)
{
    expectRefused([&] { return ::chmod(path.c_str(), 0777); }, false);
}

TEST_F(Confined, WritesNothingThroughWhatIsOpen)
{
    if (!tried([] { return 0L; }).confinement.systemCalls)
        GTEST_SKIP() << "This kernel or this build has no seccomp filter.";
    const int file = ::open(path.c_str(), O_RDWR | O_CLOEXEC);
    expectRefused([&] { return ::write(file, "x", 1); }, false);
    expectRefused([&] { return ::ftruncate(file, 0); }, false);
    ::close(file);
    EXPECT_EQ(std::filesystem::file_size(path), 7U);
}

TEST_F(Confined, OpensNoSocket)
{
    for (const int family : {AF_INET, AF_INET6, AF_UNIX, AF_NETLINK})
        expectRefused([&] { return ::socket(family, SOCK_DGRAM, 0); }, false);
}

TEST_F(Confined, StartsNoProgramAndNoProcess)
{
    expectRefused(
        [] {
            std::array<char*, 1> none{nullptr};
            return ::execve("/bin/true", none.data(), none.data());
        },
        true);
    expectRefused([] { return ::syscall(SYS_clone, SIGCHLD, 0, 0, 0, 0); }, false);
}

TEST_F(Confined, SendsNoSignalsToOthers)
{
    expectRefused([] { return ::kill(::getppid(), 0); }, false);
}

TEST_F(Confined, RaisesNoLimit)
{
    expectRefused(
        [] {
            const rlimit none{RLIM_INFINITY, RLIM_INFINITY};
            return ::setrlimit(RLIMIT_CORE, &none);
        },
        false);
}

TEST_F(Confined, HasLimits)
{
    const auto limitOf = [](__rlimit_resource resource) {
        rlimit limits{};
        ::getrlimit(resource, &limits);
        return limits.rlim_max;
    };
    const Found found = tried([&] {
        const bool isLimited = limitOf(RLIMIT_CORE) == 0 && limitOf(RLIMIT_FSIZE) == 0 &&
                               (isSanitized || limitOf(RLIMIT_AS) <= (rlim_t{2} << 30U));
        return isLimited ? 0 : -1;
    });
    EXPECT_EQ(found.error, 0);
    if (isSanitized) GTEST_SKIP() << "AddressSanitizer needs the address space.";
    const Found memory = tried([] {
        void* more = ::mmap(nullptr, std::size_t{2} << 30U, PROT_READ | PROT_WRITE,
                            MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        return more == MAP_FAILED ? -1 : 0;
    });
    EXPECT_EQ(memory.error, ENOMEM);
}

} // namespace
} // namespace quillmark::reader
