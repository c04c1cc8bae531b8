#include "cli/Interruption.h"

#include "cli/Console.h"
#include "cli/ExitCode.h"

#include <array>
#include <atomic>
#include <climits>
#include <csignal>
#include <cstring>
#include <unistd.h>

namespace quillmark::cli::Interruption {
namespace {

// A signal handler reaches nothing but objects like these, and may run on any thread.
// NOLINTBEGIN(cppcoreguidelines-avoid-non-const-global-variables)
std::array<char, PATH_MAX> removedPath{};
std::atomic<bool> removes{false};
constexpr int noTerminal = -1;
std::atomic<int> progressTerminal{noTerminal};
// NOLINTEND(cppcoreguidelines-avoid-non-const-global-variables)
static_assert(std::atomic<bool>::is_always_lock_free && std::atomic<int>::is_always_lock_free);

/// Calls only what POSIX allows in a signal handler.
void endProgram(int signal)
{
    if (removes) unlink(removedPath.data());
    const int terminal = progressTerminal;
    if (terminal != noTerminal) {
        const auto ignored = write(terminal, eraseLine.data(), eraseLine.size());
        static_cast<void>(ignored);
    }
    if (signal == SIGINT) _exit(static_cast<int>(ExitCode::interrupted));
    // The handler was reset when it was called, so this time the signal does what it does by
    // default.
    static_cast<void>(raise(signal));
}

} // namespace

void install()
{
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction current {};
        sigaction(signal, nullptr, &current);
        if (current.sa_handler == SIG_IGN) continue;
        struct sigaction ending {};
        ending.sa_handler = endProgram;
        ending.sa_flags = static_cast<int>(SA_RESETHAND);
        sigemptyset(&ending.sa_mask);
        sigaction(signal, &ending, nullptr);
    }
}

Removal::Removal(const std::filesystem::path& path)
{
    if (path.native().size() >= removedPath.size()) return; // no file can have such a path
    std::memcpy(removedPath.data(), path.c_str(), path.native().size() + 1);
    removes = true;
}

Removal::~Removal()
{
    removes = false;
}

void setProgressLine(int descriptor, bool shown)
{
    progressTerminal = shown ? descriptor : noTerminal;
}

} // namespace quillmark::cli::Interruption
