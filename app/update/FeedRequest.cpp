#include "update/FeedRequest.h"

#include "assessment/Brand.h"
#include "update/Limits.h"
#include "update/Links.h"

#include <QList>
#include <QNetworkProxyFactory>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QVariant>

namespace quillmark {

using namespace Qt::Literals::StringLiterals;

namespace {

/// The user's proxy, but not for this computer itself.
class ProxyFactory final : public QNetworkProxyFactory {
public:
    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery& query) override
    {
        if (isLoopback(query.peerHostName().toStdString())) return {QNetworkProxy::NoProxy};
        return systemProxyForQuery(query);
    }
};

QNetworkRequest request(const QUrl& url, const QByteArray& userAgent)
{
    QNetworkRequest request(url);
    request.setHeader(QNetworkRequest::UserAgentHeader, userAgent);
    // Otherwise Qt lists the user's languages, and takes compressed answers, whose size it does not
    // know beforehand.
    request.setRawHeader("Accept-Language", "en");
    request.setRawHeader("Accept-Encoding", "identity");
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute,
                         QNetworkRequest::AlwaysNetwork);
    request.setAttribute(QNetworkRequest::CacheSaveControlAttribute, false);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    return request;
}

} // namespace

FeedNetwork::FeedNetwork(const std::string& version)
    : m_userAgent(QByteArray(Brand.data(), static_cast<qsizetype>(Brand.size())) + '/' +
                  QByteArray::fromStdString(version))
{
}

FeedNetwork::~FeedNetwork() = default;

QNetworkReply* FeedNetwork::send(FeedMethod method, const QUrl& url)
{
    if (!m_manager) {
        m_manager = std::make_unique<QNetworkAccessManager>();
        m_manager->setProxyFactory(new ProxyFactory);
    }
    switch (method) {
    case FeedMethod::head:
        return m_manager->head(request(url, m_userAgent));
    case FeedMethod::get:
        return m_manager->get(request(url, m_userAgent));
    }
    return nullptr;
}

FeedRequest::FeedRequest(FeedNetwork& network, FeedMethod method, const QUrl& url,
                         std::chrono::milliseconds limit, QObject* parent)
    : QObject(parent), m_reply(network.send(method, url))
{
    connect(m_reply.get(), &QNetworkReply::readyRead, this, &FeedRequest::read);
    connect(m_reply.get(), &QNetworkReply::finished, this, &FeedRequest::finish);
    // A coarse timer may be early. Qt's own limit for transfers begins anew with every byte.
    m_limit.setTimerType(Qt::PreciseTimer);
    m_limit.setSingleShot(true);
    connect(&m_limit, &QTimer::timeout, m_reply.get(), &QNetworkReply::abort);
    m_limit.start(limit);
}

FeedRequest::~FeedRequest()
{
    m_reply->disconnect(this);
}

void FeedRequest::read()
{
    if (!m_reply->isOpen()) return; // aborted
    const auto most = static_cast<qsizetype>(FeedLimits::feedBytes) + 1;
    m_answer.body += m_reply->read(most - m_answer.body.size());
    if (m_answer.body.size() == most) m_reply->abort();
}

void FeedRequest::finish()
{
    m_limit.stop();
    m_reply->disconnect(this);
    read();
    // Qt's own idea of an error is of no use for telling answers apart: some statuses are errors to
    // it that are none here. And where there is a proxy factory, a file has the status 200.
    const QVariant status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute);
    const QString scheme = m_reply->url().scheme();
    if (status.isValid() && (scheme == "https"_L1 || scheme == "http"_L1))
        m_answer.status = status.toInt();
    m_answer.isWhole = m_reply->error() == QNetworkReply::NoError;
    Q_EMIT finished(m_answer);
}

} // namespace quillmark
