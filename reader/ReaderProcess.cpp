#include "reader/ReaderProcess.h"

#include "files/ProcessMemory.h"
#include "reader/Descriptors.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <new>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quillmark::reader {
namespace {

/// A page of memory.
constexpr std::size_t sharedBytes = 4096;

/// How long one reading of answers waits, in microseconds: by so much the whole wait may be longer
/// than was asked for.
constexpr timeval oneWait{.tv_sec = 0, .tv_usec = 100'000};

/// Above those that the process is to have, so that each can be put in its place.
FileDescriptor movedUp(FileDescriptor descriptor)
{
    return FileDescriptor(::fcntl(descriptor.get(), F_DUPFD_CLOEXEC, Descriptors::end));
}

[[noreturn]] void fail(const std::filesystem::path& program, int error)
{
    throw StartFailure("the program " + program.native() +
                       " cannot be started: " + errorText(error));
}

/// Memory that another process can write but not make smaller, which would end this one.
FileDescriptor sharedMemory()
{
    FileDescriptor memory(::memfd_create("begun", MFD_CLOEXEC | MFD_ALLOW_SEALING));
    if (!memory.isOpen() || ::ftruncate(memory.get(), sharedBytes) != 0 ||
        ::fcntl(memory.get(), F_ADD_SEALS, F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_SEAL) != 0)
        return {};
    return memory;
}

/// What posix_spawn wants, released in the end.
class SpawnPlan {
public:
    SpawnPlan()
    {
        ::posix_spawn_file_actions_init(&actions);
        ::posix_spawnattr_init(&attributes);
    }
    ~SpawnPlan()
    {
        ::posix_spawn_file_actions_destroy(&actions);
        ::posix_spawnattr_destroy(&attributes);
    }
    SpawnPlan(const SpawnPlan&) = delete;
    SpawnPlan& operator=(const SpawnPlan&) = delete;

    posix_spawn_file_actions_t actions{};
    posix_spawnattr_t attributes{};
};

/// Waits for the end of a process that was killed. One that hangs inside the system, as on a file
/// server that is gone, is left to it.
void bury(pid_t process)
{
    constexpr int patience = 2'000; // milliseconds
    const FileDescriptor watched(static_cast<int>(::syscall(SYS_pidfd_open, process, 0)));
    if (watched.isOpen()) {
        pollfd end{watched.get(), POLLIN, 0};
        while (::poll(&end, 1, patience) < 0 && errno == EINTR) {
        }
    }
    int status = 0;
    while (::waitpid(process, &status, watched.isOpen() ? WNOHANG : 0) < 0 && errno == EINTR) {
    }
}

} // namespace

void ReaderProcess::Unmap::operator()(Begun* begun) const
{
    ::munmap(begun, sharedBytes);
}

ReaderProcess::ReaderProcess(const std::filesystem::path& program)
{
    std::array<int, 2> ends{-1, -1};
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0)
        fail(program, errno);
    m_channel = FileDescriptor(ends[0]);
    const FileDescriptor channel = movedUp(FileDescriptor(ends[1]));
    if (::setsockopt(m_channel.get(), SOL_SOCKET, SO_RCVTIMEO, &oneWait, sizeof oneWait) != 0)
        fail(program, errno);
    const FileDescriptor shared = movedUp(sharedMemory());
    if (!channel.isOpen() || !shared.isOpen()) fail(program, errno);
    void* memory =
        ::mmap(nullptr, sharedBytes, PROT_READ | PROT_WRITE, MAP_SHARED, shared.get(), 0);
    if (memory == MAP_FAILED) fail(program, errno);
    m_begun.reset(new (memory) Begun(0)); // NOLINT(*-owning-memory): makes no memory
    start(program, channel.get(), shared.get());
}

void ReaderProcess::start(const std::filesystem::path& program, int channel, int shared)
{
    SpawnPlan plan;
    const auto open = [&plan](int descriptor, int flags) {
        ::posix_spawn_file_actions_addopen(&plan.actions, descriptor, "/dev/null", flags, 0);
    };
    open(STDIN_FILENO, O_RDONLY);
    open(STDOUT_FILENO, O_WRONLY);
    // A library that is about to crash may want to say so, which is nothing for the user's eyes;
    // the sanitizers' reports are for ours.
    if (!isSanitized) open(STDERR_FILENO, O_WRONLY);
    ::posix_spawn_file_actions_adddup2(&plan.actions, channel, Descriptors::channel);
    ::posix_spawn_file_actions_adddup2(&plan.actions, shared, Descriptors::begun);
    ::posix_spawn_file_actions_addclosefrom_np(&plan.actions, Descriptors::end);

    // In a group of its own, it does not get what is typed on the terminal; it ends when this
    // process does. What this process ignores or blocks is no matter of the other one.
    sigset_t signals;
    ::sigemptyset(&signals);
    ::posix_spawnattr_setsigmask(&plan.attributes, &signals);
    ::sigfillset(&signals);
    ::posix_spawnattr_setsigdefault(&plan.attributes, &signals);
    ::posix_spawnattr_setpgroup(&plan.attributes, 0);
    ::posix_spawnattr_setflags(&plan.attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF |
                                                     POSIX_SPAWN_SETPGROUP);

    std::string name = program.native();
    std::array<char*, 2> arguments{name.data(), nullptr};
    const int error = ::posix_spawn(&m_process, program.c_str(), &plan.actions, &plan.attributes,
                                    arguments.data(), environ);
    if (error != 0) fail(program, error);
}

ReaderProcess::~ReaderProcess()
{
    static_cast<void>(m_channel.close());
    ::kill(m_process, SIGKILL);
    bury(m_process);
}

std::optional<std::uint64_t> ReaderProcess::begunBehindAnswered() const
{
    const std::uint64_t begun = m_begun->load(std::memory_order_acquire);
    if (begun <= m_answered) return std::nullopt;
    return begun - m_answered - 1;
}

void ReaderProcess::send()
{
    while (m_sent < m_questions.size()) {
        const ssize_t count = ::send(m_channel.get(), m_questions.data() + m_sent,
                                     m_questions.size() - m_sent, MSG_DONTWAIT | MSG_NOSIGNAL);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return; // later; or the process has ended, as the next reading will show
        m_sent += static_cast<std::size_t>(count);
    }
    m_questions.clear();
    m_sent = 0;
}

ReaderProcess::Event ReaderProcess::wait(Time until)
{
    using namespace std::chrono;
    for (;;) {
        send();
        const std::span<char> room = m_answers.room();
        // With nothing left to send the reading itself waits, which takes fewer calls than to ask
        // first whether there is something to read.
        const bool isSent = m_questions.empty();
        const ssize_t count =
            ::recv(m_channel.get(), room.data(), room.size(), isSent ? 0 : MSG_DONTWAIT);
        if (count > 0) {
            m_answers.filled(static_cast<std::size_t>(count));
            return Event::answered;
        }
        if (count == 0) return Event::ended;
        if (errno == EINTR) continue;
        if (errno != EAGAIN) return Event::ended;

        const auto left = ceil<milliseconds>(until - steady_clock::now()).count();
        if (left <= 0) return Event::silent;
        if (isSent) continue;
        pollfd channel{m_channel.get(), POLLIN | POLLOUT, 0};
        constexpr std::int64_t longest = 1'000'000; // what an int holds
        ::poll(&channel, 1, static_cast<int>(std::min<std::int64_t>(left, longest)));
    }
}

} // namespace quillmark::reader
