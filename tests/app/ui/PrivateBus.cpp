#include "PrivateBus.h"

#include <QProcess>

#include <gtest/gtest.h>

#include <memory>

namespace quillmark::test {
namespace {

class Daemon {
public:
    Daemon()
    {
        m_process.start(QStringLiteral("dbus-daemon"),
                        {QStringLiteral("--session"), QStringLiteral("--nofork"),
                         QStringLiteral("--print-address"), QStringLiteral("--nopidfile")});
        m_process.waitForReadyRead();
        m_address = QString::fromUtf8(m_process.readLine()).trimmed();
    }
    ~Daemon()
    {
        m_process.kill();
        m_process.waitForFinished();
    }
    [[nodiscard]] const QString& address() const { return m_address; }

private:
    QProcess m_process;
    QString m_address;
};

} // namespace

QDBusConnection privateBus()
{
    static const Daemon daemon;
    static const bool isSet = qputenv("DBUS_SESSION_BUS_ADDRESS", daemon.address().toUtf8());
    EXPECT_TRUE(isSet && !daemon.address().isEmpty()) << "dbus-daemon did not start";
    return QDBusConnection::connectToBus(daemon.address(), QStringLiteral("services"));
}

} // namespace quillmark::test
