#include "files/FileDescriptor.h"

#include "support/FaultyCalls.h"

#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <fcntl.h>
#include <string>
#include <sys/resource.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quillmark::test {
namespace {

TEST(FileDescriptorTest, IsOpenedWhenTheFirstTryIsInterrupted)
{
    const WatchedCalls watched(0, EINTR, WatchedCalls::Lasting::once);
    EXPECT_TRUE(openFile("/dev/null", O_RDONLY).isOpen());
    ASSERT_EQ(WatchedCalls::made().size(), 3U); // the last one closes it
    EXPECT_TRUE(WatchedCalls::made().front().failed);
}

TEST(FileDescriptorTest, IsClosedWhenThatIsInterrupted)
{
    FileDescriptor file = openFile("/dev/null", O_RDONLY);
    const FaultyCall faulty(Call::close, EINTR);
    EXPECT_EQ(file.close(), 0);
    EXPECT_FALSE(file.isOpen());
}

TEST(FileDescriptorTest, SaysWhatItLearnsOnlyWhenItIsClosed)
{
    FileDescriptor file = openFile("/dev/null", O_RDONLY);
    const FaultyCall faulty(Call::close, EDQUOT);
    EXPECT_EQ(file.close(), EDQUOT);
    EXPECT_FALSE(file.isOpen());
    EXPECT_EQ(file.close(), 0); // there is none any more
}

/// A pipe that takes no byte more, and does not wait for room.
class FullPipe : public testing::Test {
protected:
    void SetUp() override
    {
        std::array<int, 2> ends{};
        ASSERT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
        m_from = FileDescriptor(ends[0]);
        m_to = FileDescriptor(ends[1]);
        ASSERT_EQ(fcntl(m_to.get(), F_SETFL, O_NONBLOCK), 0);
        const std::array<char, 4096> piece{};
        ssize_t count = 0;
        while ((count = write(m_to.get(), piece.data(), piece.size())) > 0)
            m_size += static_cast<std::size_t>(count);
        ASSERT_EQ(errno, EAGAIN);
    }

    FileDescriptor m_from;
    FileDescriptor m_to;
    std::size_t m_size{};
};

TEST_F(FullPipe, IsWrittenToWhenThereIsRoomAgain)
{
    const std::string text(100'000, 'x');
    const pid_t reader = fork();
    if (reader == 0) {
        static_cast<void>(m_to.close());
        usleep(20'000); // the other side has to wait
        std::array<char, 4096> piece{};
        std::size_t total = 0;
        for (ssize_t count = 0; (count = read(m_from.get(), piece.data(), piece.size())) > 0;)
            total += static_cast<std::size_t>(count);
        _exit(total == m_size + text.size() ? 0 : 1);
    }
    EXPECT_EQ(writeAll(m_to.get(), text), 0);
    static_cast<void>(m_to.close());
    int status = 0;
    ASSERT_EQ(waitpid(reader, &status, 0), reader);
    EXPECT_EQ(status, 0);
}

int pipeToEmpty = -1;
volatile std::sig_atomic_t signals = 0;

void emptyPipe(int /*signal*/)
{
    std::array<char, 4096> piece{};
    while (read(pipeToEmpty, piece.data(), piece.size()) > 0) {
    }
    signals = signals + 1;
}

TEST_F(FullPipe, IsWrittenToWhenASignalInterruptsTheWaiting)
{
    pipeToEmpty = m_from.get();
    ASSERT_EQ(fcntl(m_from.get(), F_SETFL, O_NONBLOCK), 0);
    struct sigaction action {};
    struct sigaction former {};
    action.sa_handler = emptyPipe;
    ASSERT_EQ(sigaction(SIGALRM, &action, &former), 0);
    constexpr suseconds_t delay = 20'000;
    const itimerval timer{.it_interval = {}, .it_value = {.tv_sec = 0, .tv_usec = delay}};
    ASSERT_EQ(setitimer(ITIMER_REAL, &timer, nullptr), 0);
    EXPECT_EQ(writeAll(m_to.get(), "text"), 0);
    ASSERT_EQ(sigaction(SIGALRM, &former, nullptr), 0);
    EXPECT_EQ(signals, 1);
    std::array<char, 8> piece{};
    EXPECT_EQ(read(m_from.get(), piece.data(), piece.size()), 4);
}

TEST_F(FullPipe, ThatCannotBeWaitedForIsAnError)
{
    rlimit former{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &former), 0);
    const rlimit none{.rlim_cur = 0, .rlim_max = former.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
    const int error = writeAll(m_to.get(), "text");
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &former), 0);
    EXPECT_EQ(error, EINVAL);
}

} // namespace
} // namespace quillmark::test
