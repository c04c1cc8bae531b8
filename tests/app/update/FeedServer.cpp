#include "FeedServer.h"

#include <gtest/gtest.h>

#include <QDeadlineTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryFile>

namespace quillmark::test {

using namespace Qt::Literals::StringLiterals;

FeedServer::FeedServer(const QByteArray& list)
{
    QTemporaryFile file;
    QStringList arguments{u"" FEED_SERVER ""_s};
    if (!list.isEmpty()) {
        EXPECT_TRUE(file.open() && file.write(list) == list.size() && file.flush());
        arguments += {u"--list"_s, file.fileName()};
    }
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(u"" PYTHON ""_s, arguments);
    while (!m_process.canReadLine() && m_process.waitForReadyRead(20'000))
        continue;
    m_url = QUrl(QString::fromUtf8(m_process.readLine().trimmed()));
    EXPECT_TRUE(m_url.isValid() && !m_url.isEmpty());
}

FeedServer::~FeedServer()
{
    stop();
}

std::string FeedServer::url(const QString& behaviour) const
{
    return m_url.resolved(QUrl(u"/%1/feed.xml"_s.arg(behaviour))).toString().toStdString();
}

QList<FeedServerRequest> FeedServer::requests(qsizetype count)
{
    const QDeadlineTimer deadline(10'000);
    while (true) {
        while (m_process.canReadLine()) {
            const QJsonArray line = QJsonDocument::fromJson(m_process.readLine()).array();
            FeedServerRequest request{line[0].toString(), line[1].toString(), {}};
            const QJsonObject headers = line[2].toObject();
            for (auto header = headers.begin(); header != headers.end(); ++header)
                request.headers.insert(header.key(), header.value().toString());
            m_requests.push_back(request);
        }
        if (m_requests.size() >= count || deadline.hasExpired()) return m_requests;
        m_process.waitForReadyRead(100);
    }
}

void FeedServer::stop()
{
    m_process.closeWriteChannel();
    m_process.waitForFinished(10'000);
    EXPECT_EQ(m_process.state(), QProcess::NotRunning);
}

} // namespace quillmark::test
