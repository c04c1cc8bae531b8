#include "update/FeedProbe.h"

#include <algorithm>
#include <array>
#include <utility>

namespace quillmark {
namespace {

struct Rule {
    int first;
    int last;
    FeedState state;
};

constexpr std::array rules{
    Rule{200, 299, FeedState::reachable}, Rule{404, 404, FeedState::upToDate}, // no list yet
    Rule{405, 405, FeedState::reachable}, // the server does not know HEAD
    Rule{410, 410, FeedState::upToDate},  // no list any more
    Rule{501, 501, FeedState::reachable}, // as 405
};

} // namespace

FeedState feedState(std::optional<int> status)
{
    if (!status) return FeedState::failed;
    const auto* const rule = std::ranges::find_if(
        rules, [&](const Rule& row) { return row.first <= *status && *status <= row.last; });
    return rule == rules.end() ? FeedState::failed : rule->state;
}

HttpFeedProbe::HttpFeedProbe(FeedNetwork& network, std::chrono::milliseconds limit)
    : m_network(network), m_limit(limit)
{
}

HttpFeedProbe::~HttpFeedProbe() = default;

void HttpFeedProbe::probe(const std::string& feedURL, std::function<void(FeedState)> answer)
{
    m_request = std::make_unique<FeedRequest>(m_network, FeedMethod::head,
                                              QUrl(QString::fromStdString(feedURL)), m_limit);
    QObject::connect(m_request.get(), &FeedRequest::finished, m_request.get(),
                     [this, answer = std::move(answer)](const FeedAnswer& received) {
                         // It is what calls this.
                         m_request.release()->deleteLater();
                         answer(feedState(received.status));
                     });
}

} // namespace quillmark
