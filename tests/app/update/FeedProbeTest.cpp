#include "update/FeedProbe.h"

#include "FeedServer.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QTest>

#include <array>
#include <memory>
#include <optional>

namespace quillmark::test {
namespace {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

struct Row {
    const char* behaviour;
    FeedState state;
};

constexpr std::array rows{
    Row{"200", FeedState::reachable},      Row{"204", FeedState::reachable},
    Row{"redirect", FeedState::reachable}, Row{"405", FeedState::reachable},
    Row{"501", FeedState::reachable},      Row{"headless-405", FeedState::reachable},
    Row{"404", FeedState::upToDate},       Row{"410", FeedState::upToDate},
    Row{"nowhere", FeedState::failed},     Row{"304", FeedState::failed},
    Row{"401", FeedState::failed},         Row{"403", FeedState::failed},
    Row{"407", FeedState::failed},         Row{"500", FeedState::failed},
    Row{"503", FeedState::failed},         Row{"loop", FeedState::failed},
    Row{"insecure", FeedState::failed},    Row{"reset", FeedState::failed},
    Row{"garbage", FeedState::failed},     Row{"close", FeedState::failed},
};

class FeedProbeTest : public testing::Test {
protected:
    static void SetUpTestSuite() { server = std::make_unique<FeedServer>(); }
    static void TearDownTestSuite() { server.reset(); }

    std::optional<FeedState> outcome(const std::string& url, std::chrono::milliseconds limit = 20s)
    {
        HttpFeedProbe probe(network, limit);
        std::optional<FeedState> answer;
        probe.probe(url, [&](FeedState state) { answer = state; });
        EXPECT_EQ(answer, std::nullopt) << "it has to come later";
        EXPECT_TRUE(QTest::qWaitFor([&] { return answer.has_value(); }, 20'000));
        return answer;
    }

    static std::unique_ptr<FeedServer> server;
    FeedNetwork network{"1.2"};
};

std::unique_ptr<FeedServer> FeedProbeTest::server;

TEST(FeedState, EveryStatusHasItsOutcome)
{
    EXPECT_EQ(feedState(std::nullopt), FeedState::failed);
    for (int status = 100; status < 600; ++status) {
        FeedState expected = FeedState::failed;
        if ((status >= 200 && status <= 299) || status == 405 || status == 501)
            expected = FeedState::reachable;
        if (status == 404 || status == 410) expected = FeedState::upToDate;
        EXPECT_EQ(feedState(status), expected) << status;
    }
}

TEST(FeedState, TheProbeHasFifteenSeconds)
{
    EXPECT_EQ(HttpFeedProbe::standardLimit, 15s);
}

TEST_F(FeedProbeTest, EveryBehaviourOfAServerHasItsOutcome)
{
    for (const Row& row : rows)
        EXPECT_EQ(outcome(server->url(QString::fromUtf8(row.behaviour))), row.state)
            << row.behaviour;
}

TEST_F(FeedProbeTest, AnAddressWhereNobodyListensFails)
{
    FeedServer gone;
    const std::string url = gone.url(u"200"_s);
    gone.stop();
    EXPECT_EQ(outcome(url), FeedState::failed);
}

TEST_F(FeedProbeTest, AnUnknownHostFails)
{
    EXPECT_EQ(outcome("https://feed.invalid/feed.xml"), FeedState::failed);
}

TEST_F(FeedProbeTest, WhatIsNoAddressOfTheWebFails)
{
    for (const char* const url : {"file:///etc/hostname", "data:,x", "x", "mailto:a@example.org",
                                  "http://", "qrc:/x", "ftp://127.0.0.1:1/x"})
        EXPECT_EQ(outcome(url), FeedState::failed) << url;
}

TEST_F(FeedProbeTest, TheLimitIsForTheWholeProbeAndNeitherEarlyNorLate)
{
    for (const char* const behaviour : {"hang", "drip"}) { // with drip bytes keep coming
        QElapsedTimer timer;
        timer.start();
        EXPECT_EQ(outcome(server->url(QString::fromUtf8(behaviour)), 1200ms), FeedState::failed)
            << behaviour;
        EXPECT_GE(timer.elapsed(), 1200) << behaviour;
        EXPECT_LT(timer.elapsed(), 10'000) << behaviour;
    }
}

TEST_F(FeedProbeTest, ABodyIsNeitherAskedForNorWaitedFor)
{
    EXPECT_EQ(outcome(server->url(u"slow-body"_s)), FeedState::reachable);
}

TEST_F(FeedProbeTest, ItAsksWithHeadAlsoAfterARedirect)
{
    FeedServer own;
    EXPECT_EQ(outcome(own.url(u"redirect"_s)), FeedState::reachable);
    const auto requests = own.requests(2);
    ASSERT_EQ(requests.size(), 2);
    for (const auto& request : requests)
        EXPECT_EQ(request.method, u"HEAD"_s);
    EXPECT_EQ(requests[1].path, u"/200/moved.xml"_s);
}

TEST_F(FeedProbeTest, TellsTheProgramAndNothingAboutTheUser)
{
    FeedServer own;
    EXPECT_EQ(outcome(own.url(u"cookie"_s)), FeedState::reachable);
    EXPECT_EQ(outcome(own.url(u"cookie"_s)), FeedState::reachable);
    const auto requests = own.requests(2);
    ASSERT_EQ(requests.size(), 2);
    for (const auto& request : requests) {
        EXPECT_EQ(request.path, u"/cookie/feed.xml"_s);
        auto headers = request.headers;
        EXPECT_TRUE(headers.take(u"Host"_s).startsWith(u"127.0.0.1:"_s));
        const QMap<QString, QString> expected{
            {u"User-Agent"_s, u"Quillmark/1.2"_s}, {u"Accept-Language"_s, u"en"_s},
            {u"Accept-Encoding"_s, u"identity"_s}, {u"Cache-Control"_s, u"no-cache"_s},
            {u"Pragma"_s, u"no-cache"_s},          {u"Connection"_s, u"Keep-Alive"_s},
        };
        EXPECT_EQ(headers.toStdMap(), expected.toStdMap());
    }
}

TEST_F(FeedProbeTest, EndingDuringAProbeIsSilent)
{
    bool answered = false;
    FeedServer own;
    {
        FeedNetwork ownNetwork("1.2");
        HttpFeedProbe probe(ownNetwork, 20s);
        probe.probe(own.url(u"hang"_s), [&](FeedState) { answered = true; });
        EXPECT_EQ(own.requests(1).size(), 1);
    }
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(answered);
}

} // namespace
} // namespace quillmark::test
