#include "reader/Service.h"

#include "files/FileDescriptor.h"
#include "files/ProcessMemory.h"
#include "library/FontFile.h"
#include "library/FontLibrary.h"
#include "reader/Confinement.h"
#include "reader/Descriptors.h"
#include "reader/Frames.h"
#include "reader/Messages.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <memory>

#include <poll.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

namespace quillmark::reader {
namespace {

using Clock = std::chrono::steady_clock;

/// The same clock as it was at the system's last tick, some milliseconds ago at most: that can be
/// asked for each of thousands of files.
Clock::time_point lastTick()
{
    timespec time{};
    ::clock_gettime(CLOCK_MONOTONIC_COARSE, &time);
    return Clock::time_point(std::chrono::seconds(time.tv_sec) +
                             std::chrono::nanoseconds(time.tv_nsec));
}

/// Answers of that many bytes are worth a system call,
constexpr std::size_t sentAtOnce = std::size_t{32} << 10U;
/// and so are older ones, so that whoever waits knows that files are still being read.
constexpr std::chrono::milliseconds heldBack{50};

/// Free memory that is kept for the next files, in bytes, and when none of them comes soon. Ordinary
/// ones take less, so that nothing is cleared again for them; and mostly the process ends before it
/// has given anything back.
constexpr std::size_t spareMemory = std::size_t{64} << 20U;
constexpr std::size_t idleMemory = std::size_t{4} << 20U;
constexpr std::chrono::milliseconds soon{20};

/// Answers on their way.
class Sender {
public:
    explicit Sender(int channel) : m_channel(channel) {}

    [[nodiscard]] std::string& answers() { return m_answers; }
    /// Sends the answers if there are enough of them; false when nobody takes them any more.
    [[nodiscard]] bool sendIfDue()
    {
        const Clock::time_point now = lastTick();
        if (m_answers.size() < sentAtOnce && now - m_sentLast < heldBack) return true;
        m_sentLast = now;
        return send();
    }
    [[nodiscard]] bool send()
    {
        if (writeAll(m_channel, m_answers) != 0) return false;
        m_answers.clear();
        return true;
    }

private:
    int m_channel;
    std::string m_answers;
    Clock::time_point m_sentLast{lastTick()};
};

void answer(const Frame& frame, const FileReading& reading, std::string& into)
{
    const std::string path(frame.bytes);
    const auto writeFaces = [&](Faces which) {
        std::vector<PlatformFont> faces = reading.faces(path, which);
        FontLibrary::settle(faces, which);
        for (const PlatformFont& face : faces)
            writeFace(into, face);
        writeEnd(into);
    };
    switch (static_cast<Question>(frame.kind)) {
    case Question::faces:
        writeFaces(Faces::all);
        break;
    case Question::variableFaces:
        writeFaces(Faces::variable);
        break;
    case Question::installedFiles:
        for (const InstalledFile& file : reading.installedFiles())
            writeInstalledFile(into, file);
        writeEnd(into);
        break;
    case Question::document: {
        const PDFFontScanner::Reading read = reading.document(path);
        if (const auto* error = std::get_if<PDFCheckError::Kind>(&read)) {
            writeError(into, *error);
            break;
        }
        const auto& document = std::get<DocumentFonts>(read);
        for (const DocumentFont& font : document.fonts)
            writeDocumentFont(into, font);
        writeEnd(into, document.pageCount);
        break;
    }
    }
}

/// Waits so long for something to read, or for the other side to end; false when nothing comes.
bool waitFor(int channel, std::chrono::milliseconds time)
{
    using std::chrono::milliseconds;
    const Clock::time_point end = Clock::now() + time;
    for (;;) {
        pollfd waiting{channel, POLLIN, 0};
        const auto left = std::chrono::ceil<milliseconds>(end - Clock::now()).count();
        const int ready = left > 0 ? ::poll(&waiting, 1, static_cast<int>(left)) : 0;
        if (ready < 0 && errno == EINTR) continue;
        return ready > 0;
    }
}

/// Waits for questions; false when none come.
bool receive(int channel, FrameBuffer& questions)
{
    if (!waitFor(channel, soon)) {
        returnMemory(idleMemory);
        if (!waitFor(channel, Limits::idle)) return false;
    }
    const std::span<char> room = questions.room();
    ssize_t count = 0;
    do
        count = ::read(channel, room.data(), room.size());
    while (count < 0 && errno == EINTR);
    if (count <= 0) return false;
    questions.filled(static_cast<std::size_t>(count));
    return true;
}

/// A process that hangs over a file does not see that nobody waits for it any more, so it looks now
/// and then whether it is still the child of the process that started it.
// NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables): for the signal handler
volatile pid_t starter;

void endWithStarter(int /*signal*/)
{
    if (::getppid() != starter) ::_exit(EXIT_SUCCESS);
}

void watchStarter()
{
    constexpr timeval interval{.tv_sec = 5, .tv_usec = 0};
    starter = ::getppid();
    struct sigaction watching {};
    watching.sa_handler = endWithStarter;
    watching.sa_flags = SA_RESTART;
    ::sigemptyset(&watching.sa_mask);
    ::sigaction(SIGALRM, &watching, nullptr);
    const itimerval timer{interval, interval};
    ::setitimer(ITIMER_REAL, &timer, nullptr);
}

} // namespace

FileReading ordinaryReading()
{
    return {
        .faces =
            [folder = std::make_shared<LastFolder>()](const std::string& path, Faces which) {
                return FontFile::faces(path, folder->locate(path), which);
            },
        .installedFiles = installedFiles,
        .document = [](const std::filesystem::path& path) { return PDFFontScanner::read(path); },
    };
}

void serve(int channel, Begun& begun, const FileReading& reading)
{
    FrameBuffer questions(Limits::questionBytes);
    Sender sender(channel);
    std::uint64_t number = 0;
    while (receive(channel, questions)) {
        while (const auto frame = questions.next()) {
            begun.store(++number, std::memory_order_release);
            answer(*frame, reading, sender.answers());
            if (!sender.sendIfDue()) return;
        }
        if (questions.isBroken() || !sender.send()) return;
        returnMemory(spareMemory);
    }
}

int runReader(const FileReading& reading)
{
    void* shared =
        ::mmap(nullptr, sizeof(Begun), PROT_READ | PROT_WRITE, MAP_SHARED, Descriptors::begun, 0);
    int type = 0;
    socklen_t size = sizeof type;
    if (shared == MAP_FAILED ||
        ::getsockopt(Descriptors::channel, SOL_SOCKET, SO_TYPE, &type, &size) != 0) {
        static_cast<void>(
            writeAll(STDERR_FILENO, "This program reads files for Quillmark, which starts it.\n"));
        return EXIT_FAILURE;
    }
    ::close(Descriptors::begun);
    static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
    keepMemory();
    watchStarter();
    static_cast<void>(confine(Descriptors::channel));
    serve(Descriptors::channel, *static_cast<Begun*>(shared), reading);
    // What is still in memory is not worth being freed.
    ::_exit(EXIT_SUCCESS);
}

} // namespace quillmark::reader
