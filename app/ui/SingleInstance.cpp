#include "ui/SingleInstance.h"

#include "library/AbsolutePath.h"

#include <QApplication>
#include <QCryptographicHash>
#include <QLocalServer>
#include <QLocalSocket>
#include <QTimer>
#include <QWidget>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <span>
#include <string_view>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>
#include <utility>

namespace quillmark {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

// A request is the length of what follows, in four bytes, the highest first, and then the token and
// the paths, each closed by a NUL, which neither of them can hold. It is answered with one byte.
constexpr std::size_t lengthSize = 4;
constexpr std::size_t longestRequest = 4 << 20; // bytes; twice what Linux lets a program start with
constexpr char taken = '+';

constexpr int mostConnections = 4; // at once; further ones try again, as they would after a crash
constexpr std::chrono::seconds slowestSender{5};
constexpr std::chrono::milliseconds betweenTries{20};

// The sticky bit keeps files that nobody touches from being cleared away
// (XDG Base Directory Specification).
constexpr mode_t ownersAlone = 0600 | S_ISVTX;

bool belongsToThisUser(const fs::path& folder)
{
    struct stat status {};
    return lstat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
           status.st_uid == geteuid() && (status.st_mode & 077) == 0;
}

std::string withLength(const StartRequest& request)
{
    std::string parts = request.activationToken + '\0';
    for (const fs::path& file : request.files)
        parts += file.native() + '\0';
    std::string message;
    for (unsigned shift = 32; shift != 0; shift -= 8)
        message += static_cast<char>(parts.size() >> (shift - 8) & 0xFF);
    return message + parts;
}

std::size_t lengthIn(std::string_view message)
{
    std::size_t length = 0;
    for (const char c : message.substr(0, lengthSize))
        length = length << 8U | static_cast<unsigned char>(c);
    return length;
}

/// Absent when `parts` is nothing that a start of ours sends.
std::optional<StartRequest> requestIn(std::string_view parts)
{
    StartRequest request;
    if (!parts.ends_with('\0')) return std::nullopt;
    const std::size_t tokenEnd = parts.find('\0');
    request.activationToken = parts.substr(0, tokenEnd);
    parts.remove_prefix(tokenEnd + 1);
    while (!parts.empty()) {
        const std::size_t end = parts.find('\0');
        if (!parts.starts_with('/')) return std::nullopt;
        request.files.emplace_back(parts.substr(0, end));
        parts.remove_prefix(end + 1);
    }
    return request;
}

std::optional<sockaddr_un> addressOf(std::string_view socketFile)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (socketFile.size() >= sizeof address.sun_path) return std::nullopt;
    socketFile.copy(static_cast<char*>(address.sun_path), socketFile.size());
    return address;
}

FileDescriptor localSocket()
{
    return FileDescriptor(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
}

/// Waits until the socket is ready for `events` or has failed; whether that was in time.
bool waitFor(const FileDescriptor& socket, short events, Clock::time_point deadline)
{
    pollfd polled{socket.get(), events, 0};
    for (;;) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
        const int ready =
            poll(&polled, 1, static_cast<int>(std::max<std::int64_t>(left.count(), 0)));
        if (ready >= 0 || errno != EINTR) return ready > 0;
    }
}

/// Whether the instance that listens there has taken the request.
bool handOver(const std::string& socketFile, std::string_view message, Clock::time_point deadline)
{
    const auto address = addressOf(socketFile);
    const FileDescriptor socket = localSocket();
    if (!address || !socket.isOpen()) return false;
    if (connect(socket.get(), reinterpret_cast<const sockaddr*>(&*address), sizeof *address) != 0)
        return false;
    while (!message.empty()) {
        const ssize_t sent = send(socket.get(), message.data(), message.size(), MSG_NOSIGNAL);
        if (sent >= 0)
            message.remove_prefix(static_cast<std::size_t>(sent));
        else if (errno != EAGAIN || !waitFor(socket, POLLOUT, deadline))
            return false;
    }
    if (!waitFor(socket, POLLIN, deadline)) return false;
    char answer{};
    return recv(socket.get(), &answer, 1, 0) == 1 && answer == taken;
}

/// Whether somebody else holds the lock; otherwise `lock` is it, or closed when there can be none
/// here. The system lets go of it however the process ends, so that none is ever left behind.
bool isTaken(const std::string& file, FileDescriptor& lock)
{
    FileDescriptor opened(open(file.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!opened.isOpen()) return false;
    if (flock(opened.get(), LOCK_EX | LOCK_NB) != 0) return errno == EWOULDBLOCK;
    // A lock on a file that is gone from the folder keeps nobody out.
    struct stat held {};
    struct stat named {};
    const bool isThere = fstat(opened.get(), &held) == 0 && stat(file.c_str(), &named) == 0 &&
                         held.st_ino == named.st_ino && held.st_dev == named.st_dev;
    if (!isThere) return true;
    static_cast<void>(fchmod(opened.get(), ownersAlone));
    lock = std::move(opened);
    return false;
}

FileDescriptor listenAt(const std::string& socketFile)
{
    const auto address = addressOf(socketFile);
    FileDescriptor socket = localSocket();
    if (!address || !socket.isOpen()) return {};
    // One that is there was left behind: its owner would hold the lock.
    static_cast<void>(unlink(socketFile.c_str()));
    constexpr int waiting = 32; // more than anybody starts at once; further ones try again
    if (bind(socket.get(), reinterpret_cast<const sockaddr*>(&*address), sizeof *address) != 0 ||
        ::listen(socket.get(), waiting) != 0)
        return {};
    static_cast<void>(chmod(socketFile.c_str(), ownersAlone));
    return socket;
}

} // namespace

std::optional<fs::path> runtimeFolder()
{
    const char* const named = std::getenv("XDG_RUNTIME_DIR");
    const std::string user = std::to_string(geteuid());
    for (const fs::path& folder :
         {fs::path(named == nullptr ? "" : named), "/run/user/" / fs::path(user)})
        if (folder.is_absolute() && belongsToThisUser(folder)) return folder;
    std::error_code error;
    const fs::path own = fs::temp_directory_path(error) / ("quillmark-" + user);
    if (error) return std::nullopt;
    static_cast<void>(mkdir(own.c_str(), 0700));
    if (!belongsToThisUser(own)) return std::nullopt;
    return own;
}

void comeToFront(QWidget& window, const std::string& activationToken)
{
    // Where Qt looks for it under Wayland, which lets nobody to the front without one.
    if (!activationToken.empty())
        qputenv("XDG_ACTIVATION_TOKEN", QByteArray::fromStdString(activationToken));
    if (window.isMinimized()) window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    window.raise();
    // To a window that waits for its dialog the toolkit would give the keyboard without asking the
    // window manager, and the dialog would never have it back: no key would do anything.
    QWidget* const dialog = QApplication::activeModalWidget();
    // A panel of the desktop's own is drawn by others, who keep it with the window.
    const bool blocks = dialog != nullptr && !dialog->testAttribute(Qt::WA_DontShowOnScreen);
    (blocks ? *dialog : window).activateWindow();
}

SingleInstance::SingleInstance(const fs::path& runtimeFolder, const fs::path& dataFolder)
{
    std::error_code ignored;
    const fs::path whole = fs::weakly_canonical(absolutePath(dataFolder), ignored);
    constexpr qsizetype enough = 16; // digits, to tell a handful of folders apart
    const std::string name =
        "quillmark-" + QCryptographicHash::hash(QByteArray::fromStdString(whole.native()),
                                                QCryptographicHash::Sha256)
                           .toHex()
                           .first(enough)
                           .toStdString();
    m_lockFile = runtimeFolder / (name + ".lock");
    m_socketFile = runtimeFolder / (name + ".socket");
}

SingleInstance::~SingleInstance()
{
    // Nobody is to find a socket at which nobody answers. The lock goes last, with its field.
    m_server.reset();
    if (m_lock.isOpen()) static_cast<void>(unlink(m_socketFile.c_str()));
}

SingleInstance::Role SingleInstance::enter(const StartRequest& request,
                                           std::chrono::milliseconds patience)
{
    const std::string message = withLength(request);
    const auto deadline = Clock::now() + patience;
    for (;;) {
        if (!isTaken(m_lockFile, m_lock)) {
            if (m_lock.isOpen()) m_socket = listenAt(m_socketFile);
            return Role::first;
        }
        // The first one may be about to listen, or about to end.
        if (message.size() > longestRequest) return Role::noAnswer;
        if (handOver(m_socketFile, message, deadline)) return Role::handedOver;
        if (Clock::now() > deadline) return Role::noAnswer;
        std::this_thread::sleep_for(betweenTries);
    }
}

void SingleInstance::listen()
{
    if (!m_socket.isOpen()) return;
    m_server = std::make_unique<QLocalServer>();
    connect(m_server.get(), &QLocalServer::newConnection, this, [this] {
        while (QLocalSocket* const socket = m_server->nextPendingConnection())
            receive(socket);
    });
    if (m_server->listen(static_cast<qintptr>(m_socket.get())))
        static_cast<void>(m_socket.release()); // the server closes it
}

void SingleInstance::receive(QLocalSocket* socket)
{
    ++m_connections;
    connect(socket, &QObject::destroyed, this, [this] { --m_connections; });
    connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
    if (m_connections > mostConnections || socket->state() != QLocalSocket::ConnectedState) {
        socket->abort();
        socket->deleteLater();
        return;
    }
    socket->setReadBufferSize(static_cast<qint64>(longestRequest));
    QTimer::singleShot(slowestSender, socket, [socket] { socket->abort(); });
    const auto read = [this, socket, message = std::string()]() mutable {
        const QByteArray more = socket->readAll();
        message.append(more.data(), static_cast<std::size_t>(more.size()));
        if (message.size() < lengthSize) return;
        const std::size_t whole = lengthSize + lengthIn(message);
        if (message.size() < whole && whole <= longestRequest) return;
        const auto request = message.size() == whole
                                 ? requestIn(std::string_view(message).substr(lengthSize))
                                 : std::nullopt;
        if (!request) {
            socket->abort();
            return;
        }
        Q_EMIT requested(*request);
        socket->write(&taken, 1);
        socket->flush(); // whatever keeps the event loop busy next
        socket->disconnectFromServer();
    };
    connect(socket, &QLocalSocket::readyRead, socket, read);
}

} // namespace quillmark
