// A request to where the list of updates is. What is sent tells the program and its version, and
// nothing about its user: docs/updates.md.
#pragma once

#include <QByteArray>
#include <QNetworkAccessManager>
#include <QObject>
#include <QTimer>
#include <QUrl>

#include <chrono>
#include <memory>
#include <optional>
#include <string>

class QNetworkReply;

namespace quillmark {

enum class FeedMethod { head, get };

struct FeedAnswer {
    std::optional<int> status; // of HTTP; absent when no answer came, or one that is not HTTP
    QByteArray body;           // at most FeedLimits::feedBytes and one more
    bool isWhole{};            // nothing went wrong on the way
};

/// Where requests come from. Nothing of the network is touched before the first one. Lives on one
/// thread, and longer than its requests.
class FeedNetwork final {
public:
    /// `version` is the program's own.
    explicit FeedNetwork(const std::string& version);
    ~FeedNetwork();

    [[nodiscard]] QNetworkReply* send(FeedMethod method, const QUrl& url);

private:
    QByteArray m_userAgent;
    std::unique_ptr<QNetworkAccessManager> m_manager;
};

/// One request, which begins with the object and ends with it. `limit` is for all of it, redirects
/// included, from now on to the answer's last byte.
class FeedRequest final : public QObject {
    Q_OBJECT
public:
    FeedRequest(FeedNetwork& network, FeedMethod method, const QUrl& url,
                std::chrono::milliseconds limit, QObject* parent = nullptr);
    ~FeedRequest() override;

Q_SIGNALS:
    /// Once, and never before the constructor has returned.
    void finished(const quillmark::FeedAnswer& answer);

private:
    void read();
    void finish();

    std::unique_ptr<QNetworkReply> m_reply;
    QTimer m_limit;
    FeedAnswer m_answer;
};

} // namespace quillmark
