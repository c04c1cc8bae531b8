// The server of tests/feed, run for as long as a test needs it.
#pragma once

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QProcess>
#include <QString>
#include <QUrl>

#include <string>

namespace quillmark::test {

struct FeedServerRequest {
    QString method;
    QString path;
    QMap<QString, QString> headers;
};

class FeedServer {
public:
    /// `list` is the body of its answers; a list without items unless said otherwise.
    explicit FeedServer(const QByteArray& list = {});
    ~FeedServer();

    /// The address whose request is answered in that manner.
    [[nodiscard]] std::string url(const QString& behaviour) const;
    /// What it was asked so far, at least `count` requests; fewer only after 10 seconds.
    [[nodiscard]] QList<FeedServerRequest> requests(qsizetype count);
    /// Nobody answers afterwards.
    void stop();

private:
    QProcess m_process;
    QUrl m_url;
    QList<FeedServerRequest> m_requests;
};

} // namespace quillmark::test
