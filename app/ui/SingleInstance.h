// One application per user and data folder: two would each write the whole book of notes, and lose
// each other's. A second start hands over what it was given to the first one.
#pragma once

#include "files/FileDescriptor.h"

#include <QByteArray>
#include <QObject>

#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class QLocalServer;
class QLocalSocket;
class QWidget;

namespace quillmark {

/// What a start hands over.
struct StartRequest {
    /// Permission of the desktop to come to the front (XDG_ACTIVATION_TOKEN or DESKTOP_STARTUP_ID);
    /// empty when there is none.
    std::string activationToken;
    std::vector<std::filesystem::path> files; // absolute; none: the window just comes to the front
    bool operator==(const StartRequest&) const = default;
};

/// Where sockets and locks of this user belong: $XDG_RUNTIME_DIR or, where that is missing, the
/// folder that the system has for the user, else one below the system's temporary folder. Absent
/// when none of them belongs to this user alone.
[[nodiscard]] std::optional<std::filesystem::path> runtimeFolder();

/// Brings the window before those of other programs, as far as the desktop allows it. The keyboard
/// goes to the dialog that is open in front of it, if there is one that it waits for.
void comeToFront(QWidget& window, const std::string& activationToken);

class SingleInstance final : public QObject {
    Q_OBJECT
public:
    enum class Role {
        first,      // this is the one instance, as far as the folder allows for locks
        handedOver, // the first has taken the request; there is nothing left to do
        noAnswer,   // the first has not taken it in time, or it is too long
    };

    /// `runtimeFolder` belongs to this user alone. `dataFolder` need not be there yet.
    SingleInstance(const std::filesystem::path& runtimeFolder,
                   const std::filesystem::path& dataFolder);
    ~SingleInstance() override;

    /// Called once, and before an application object is made if that is to cost nothing. Only while
    /// somebody else is the first it waits, for that long at most.
    [[nodiscard]] Role enter(const StartRequest& request,
                             std::chrono::milliseconds patience = std::chrono::seconds(10));

    /// Begins to take requests, as the first instance, in the event loop. Those that came since
    /// enter() are not lost.
    void listen();

Q_SIGNALS:
    /// The sender is told that its request was taken when this returns.
    void requested(const StartRequest& request);

private:
    void receive(QLocalSocket* socket);

    std::string m_lockFile;
    std::string m_socketFile;
    FileDescriptor m_lock;
    FileDescriptor m_socket;
    std::unique_ptr<QLocalServer> m_server;
    int m_connections{};
};

} // namespace quillmark
