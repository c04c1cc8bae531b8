// Whether there is a list of updates at all, asked before the check itself so that the user gets a
// clear answer when there is none or the network is down.
#pragma once

#include "update/FeedRequest.h"

#include <chrono>
#include <functional>
#include <optional>
#include <string>

namespace quillmark {

enum class FeedState {
    reachable,
    upToDate, // nothing is published there
    failed,
};

/// What a status of HTTP says; absent when there was none.
[[nodiscard]] FeedState feedState(std::optional<int> status);

class FeedProbe {
public:
    virtual ~FeedProbe() = default;

    /// Answers once, later and on the same thread, unless the probe is destroyed before.
    virtual void probe(const std::string& feedURL, std::function<void(FeedState)> answer) = 0;
};

/// The real one. A request takes the place of one that has not ended yet.
class HttpFeedProbe final : public FeedProbe {
public:
    static constexpr std::chrono::milliseconds standardLimit = std::chrono::seconds(15);

    explicit HttpFeedProbe(FeedNetwork& network, std::chrono::milliseconds limit = standardLimit);
    ~HttpFeedProbe() override;

    void probe(const std::string& feedURL, std::function<void(FeedState)> answer) override;

private:
    FeedNetwork& m_network;
    std::chrono::milliseconds m_limit;
    std::unique_ptr<FeedRequest> m_request;
};

} // namespace quillmark
