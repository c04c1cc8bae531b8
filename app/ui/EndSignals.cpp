#include "ui/EndSignals.h"

#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace quillmark {
namespace {

// Handlers run where hardly anything is allowed; a byte in a pipe wakes the event loop. It stays
// open as long as the process, for a handler may be running on another thread.
// NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables)
volatile sig_atomic_t pipeEnd = -1;

extern "C" void tell(int)
{
    const int error = errno;
    const char byte = '!';
    const auto written = write(static_cast<int>(pipeEnd), &byte, 1);
    static_cast<void>(written);
    errno = error;
}

} // namespace

EndSignals::EndSignals(QObject* parent) : QObject(parent)
{
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) return; // signals end it as ever
    m_end = FileDescriptor(ends[0]);
    pipeEnd = ends[1];
    auto* const notifier = new QSocketNotifier(ends[0], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this, notifier] {
        notifier->setEnabled(false);
        Q_EMIT asked();
    });
    struct sigaction action {};
    action.sa_handler = tell;
    action.sa_flags = static_cast<int>(SA_RESETHAND | SA_RESTART);
    for (const int signal : {SIGTERM, SIGINT, SIGHUP})
        sigaction(signal, &action, nullptr);
}

} // namespace quillmark
