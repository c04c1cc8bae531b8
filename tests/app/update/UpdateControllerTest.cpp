#include "update/UpdateController.h"

#include "FakePresenter.h"
#include "FeedServer.h"
#include "Publisher.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <QTest>

#include <memory>

namespace quillmark::test {
namespace {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

constexpr std::chrono::sys_seconds today{std::chrono::seconds(1'800'000'000)};

const UpdateAlert upToDate{"You’re up to date",
                           "Quillmark 1.2 is the newest version. Quillmark checks for updates on "
                           "its own and will let you know when there’s a new one."};
const UpdateAlert unreachable{"Couldn’t check for updates",
                              "Check your internet connection and try again. Quillmark also checks "
                              "on its own about once a day."};

QByteArray listWith(const QByteArray& items)
{
    return R"(<?xml version="1.0" encoding="utf-8"?>
<rss version="2.0" xmlns:sparkle="http://www.andymatuschak.org/xml-namespaces/sparkle"><channel>
<link>https://example.org/</link>)" +
           items + "</channel></rss>";
}

QByteArray item(const QByteArray& version, const QByteArray& more = {})
{
    return "<item><sparkle:version>" + version + "</sparkle:version>" + more + "</item>";
}

class UpdateControllerTest : public testing::Test {
protected:
    /// Puts a server with that list and a controller that asks it in place. It looks at once, and
    /// then never again.
    void serve(const QByteArray& list, const QString& behaviour = u"200"_s)
    {
        server = std::make_unique<FeedServer>(list);
        bundle.feedURL = server->url(behaviour);
        make();
    }

    /// The same server's other behaviour.
    void serve(const char* behaviour)
    {
        bundle.feedURL = server->url(QString::fromUtf8(behaviour));
        make();
    }

    void make()
    {
        controller = std::make_unique<UpdateController>(
            bundle, file, network, presenter,
            UpdateTiming{.now = [this] { return time; }, .firstLook = 0ms, .requestLimit = limit});
    }

    void consent(bool automatic) { UpdateSettings{.automaticChecks = automatic}.save(file); }

    [[nodiscard]] UpdateSettings saved() const { return UpdateSettings::load(file); }

    void checkAsUser()
    {
        const std::size_t before = shown();
        controller->checkForUpdates();
        EXPECT_EQ(shown(), before) << "the answer has to come later";
        EXPECT_TRUE(QTest::qWaitFor([&] { return shown() > before; }, 20'000));
    }

    void waitForAnswer()
    {
        EXPECT_TRUE(QTest::qWaitFor([&] { return saved().lastCheck == today; }, 20'000));
    }

    [[nodiscard]] std::size_t shown() const
    {
        return presenter.alerts.size() + presenter.offers.size();
    }

    TemporaryFolder folder;
    std::filesystem::path file{folder.path() / "settings.ini"};
    std::chrono::system_clock::time_point time{today};
    std::chrono::milliseconds limit{20s};
    BundleInfo bundle{.displayName = "Quillmark", .shortVersion = "1.2", .version = "1.2"};
    FakePresenter presenter;
    FeedNetwork network{"1.2"};
    std::unique_ptr<FeedServer> server;
    std::unique_ptr<UpdateController> controller;
};

TEST_F(UpdateControllerTest, ANewerVersionIsOfferedWithAllThatTheListSays)
{
    serve(
        listWith(item("1.3", "<link>https://example.org/1.3</link>"
                             "<pubDate>Fri, 15 Jan 2027 08:00:00 GMT</pubDate>"
                             "<description>&lt;p&gt;New&lt;img src='x'&gt;&lt;/p&gt;</description>"
                             "<sparkle:releaseNotesLink>https://example.org/notes"
                             "</sparkle:releaseNotesLink>")));
    checkAsUser();
    ASSERT_EQ(presenter.offers.size(), 1);
    EXPECT_EQ(presenter.offers[0], (UpdateOffer{
                                       .appName = "Quillmark",
                                       .version = "1.3",
                                       .installedVersion = "1.2",
                                       .published = today,
                                       .notes = "<p>New</p>",
                                       .notesPage = "https://example.org/notes",
                                       .page = "https://example.org/1.3",
                                       .critical = false,
                                       .checksAutomatically = false,
                                       .cause = UpdateOffer::Cause::user,
                                   }));
    EXPECT_EQ(saved().lastCheck, today);
}

TEST_F(UpdateControllerTest, ItsVersionIsComparedAndItsShortOneShown)
{
    bundle.shortVersion = "Two";
    bundle.version = "20";
    serve(listWith(item("21", "<sparkle:shortVersionString>Three</sparkle:shortVersionString>") +
                   item("9")));
    checkAsUser();
    ASSERT_EQ(presenter.offers.size(), 1);
    EXPECT_EQ(presenter.offers[0].version, "Three");
    EXPECT_EQ(presenter.offers[0].installedVersion, "Two");
}

TEST_F(UpdateControllerTest, OnlyPagesForABrowserAreOffered)
{
    serve(listWith(item("1.3", "<link>http://example.org/1.3</link><sparkle:releaseNotesLink>"
                               "file:///etc/passwd</sparkle:releaseNotesLink>")));
    checkAsUser();
    ASSERT_EQ(presenter.offers.size(), 1);
    EXPECT_EQ(presenter.offers[0].page, "https://example.org/"); // the publisher's
    EXPECT_EQ(presenter.offers[0].notesPage, std::nullopt);
}

TEST_F(UpdateControllerTest, PlainNotesStayPlain)
{
    serve(listWith(item("1.3", "<description sparkle:descriptionFormat='plain-text'>"
                               "a &lt;b&gt;\nc</description>")));
    checkAsUser();
    ASSERT_EQ(presenter.offers.size(), 1);
    EXPECT_EQ(presenter.offers[0].notes, "a &lt;b&gt;<br>c");
}

TEST_F(UpdateControllerTest, ATitleStandsInForNotes)
{
    serve(listWith(item("1.3", "<title>Fixes &amp; more</title>")));
    checkAsUser();
    ASSERT_EQ(presenter.offers.size(), 1);
    EXPECT_EQ(presenter.offers[0].notes, "Fixes &amp; more");
}

TEST_F(UpdateControllerTest, TheSameVersionOrAnOlderOneIsNoNews)
{
    for (const char* const version : {"1.2", "1.2.0", "1.2b1", "1.1", "0"}) {
        serve(listWith(item(version)));
        checkAsUser();
        ASSERT_FALSE(presenter.alerts.empty());
        EXPECT_EQ(presenter.alerts.back(), upToDate) << version;
    }
    EXPECT_TRUE(presenter.offers.empty());
}

TEST_F(UpdateControllerTest, AnEmptyListIsNoNews)
{
    serve(listWith(""));
    checkAsUser();
    EXPECT_EQ(presenter.alerts, std::vector{upToDate});
    EXPECT_EQ(saved().lastCheck, today);
}

TEST_F(UpdateControllerTest, AListThatIsGoneAfterTheProbeIsNoNews)
{
    serve(listWith(item("1.3")), u"gone-on-get"_s);
    checkAsUser();
    EXPECT_EQ(presenter.alerts, std::vector{upToDate});
}

TEST_F(UpdateControllerTest, NoUsableAnswerIsAFailureAndNoAnswer)
{
    server = std::make_unique<FeedServer>(listWith(item("1.3")));
    for (const char* const behaviour : {"204", "500", "401", "304", "nowhere", "loop", "reset",
                                        "garbage", "close", "cut", "insecure"}) {
        presenter.alerts.clear();
        serve(behaviour);
        checkAsUser();
        EXPECT_EQ(presenter.alerts, std::vector{unreachable}) << behaviour;
    }
    EXPECT_EQ(saved().lastCheck, std::nullopt);
    EXPECT_TRUE(presenter.offers.empty());
}

TEST_F(UpdateControllerTest, AnAnswerThatTakesTooLongIsAFailure)
{
    limit = 300ms;
    server = std::make_unique<FeedServer>(listWith(item("1.3")));
    for (const char* const behaviour : {"hang", "drip", "slow-body"}) {
        presenter.alerts.clear();
        serve(behaviour);
        checkAsUser();
        EXPECT_EQ(presenter.alerts, std::vector{unreachable}) << behaviour;
    }
}

TEST_F(UpdateControllerTest, AListWithoutEndIsGivenUpAtTheLimit)
{
    serve({}, u"endless"_s);
    checkAsUser();
    ASSERT_EQ(presenter.alerts.size(), 1);
    EXPECT_EQ(
        presenter.alerts[0],
        (UpdateAlert{"Couldn’t check for updates",
                     "The list of updates can’t be used: it is too large. Try again later."}));
}

TEST_F(UpdateControllerTest, BadXmlIsAFailureAndNeverUpToDate)
{
    serve(QByteArray("<rss><channel>"));
    checkAsUser();
    EXPECT_EQ(presenter.alerts,
              (std::vector<UpdateAlert>{{"Couldn’t check for updates",
                                         "The list of updates can’t be used: it is damaged in line "
                                         "1. Try again later."}}));
    EXPECT_EQ(saved().lastCheck, std::nullopt);
}

TEST_F(UpdateControllerTest, ARedirectIsFollowed)
{
    serve(listWith(item("1.3")), u"redirect"_s);
    checkAsUser();
    EXPECT_EQ(presenter.offers.size(), 1);
}

TEST_F(UpdateControllerTest, FetchingTellsNothingAboutTheUser)
{
    serve(listWith(""), u"cookie"_s);
    checkAsUser();
    checkAsUser();
    const auto requests = server->requests(2);
    ASSERT_EQ(requests.size(), 2);
    for (const auto& request : requests) {
        EXPECT_EQ(request.method, u"GET"_s);
        EXPECT_EQ(request.path, u"/cookie/feed.xml"_s);
        EXPECT_EQ(request.headers.keys(),
                  (QStringList{u"Accept-Encoding"_s, u"Accept-Language"_s, u"Cache-Control"_s,
                               u"Connection"_s, u"Host"_s, u"Pragma"_s, u"User-Agent"_s}));
    }
}

TEST_F(UpdateControllerTest, WithoutAFeedItTouchesNothingAndSaysWhereUpdatesComeFrom)
{
    make();
    controller->start();
    controller->checkForUpdates();
    EXPECT_EQ(presenter.alerts,
              (std::vector<UpdateAlert>{
                  {"Updates come with your system",
                   "Quillmark is kept up to date together with your system’s other packages. It "
                   "never looks for updates itself."}}));
    EXPECT_FALSE(std::filesystem::exists(file));
}

TEST_F(UpdateControllerTest, TheFirstLaunchAsksAndChecksNothing)
{
    serve(listWith(item("1.3")));
    controller->start();
    EXPECT_TRUE(presenter.questions.empty());
    EXPECT_EQ(saved(), (UpdateSettings{.launches = 1}));
}

TEST_F(UpdateControllerTest, TheSecondLaunchAsksAndChecksNothingUntilItIsAnswered)
{
    UpdateSettings{.launches = 1}.save(file);
    serve(listWith(item("1.3")));
    controller->start();
    ASSERT_EQ(presenter.questions.size(), 1);
    EXPECT_EQ(presenter.questions[0].title, "Check for updates automatically?");
    QTest::qWait(0); // the first look
    EXPECT_TRUE(server->requests(0).isEmpty());
    presenter.answerConsent(true);
    EXPECT_EQ(saved().automaticChecks, true);
    waitForAnswer();
    EXPECT_EQ(presenter.offers.size(), 1);
}

TEST_F(UpdateControllerTest, WhoHasAnsweredIsNotAskedAgain)
{
    for (const bool automatic : {true, false}) {
        UpdateSettings{.automaticChecks = automatic, .launches = 5}.save(file);
        serve(listWith(""));
        controller->start();
        EXPECT_TRUE(presenter.questions.empty());
        EXPECT_EQ(saved().launches, 6);
    }
}

TEST_F(UpdateControllerTest, WhoDeclinesIsNotChecked)
{
    UpdateSettings{.launches = 1}.save(file);
    serve(listWith(item("1.3")));
    controller->start();
    presenter.answerConsent(false);
    EXPECT_EQ(saved().automaticChecks, false);
    QTest::qWait(0);
    EXPECT_TRUE(server->requests(0).isEmpty());
}

TEST_F(UpdateControllerTest, AScheduledCheckShowsWhatIsNew)
{
    consent(true);
    serve(listWith(item("1.3")));
    controller->start();
    waitForAnswer();
    ASSERT_EQ(presenter.offers.size(), 1);
    EXPECT_EQ(presenter.offers[0].cause, UpdateOffer::Cause::schedule);
    EXPECT_TRUE(presenter.offers[0].checksAutomatically);
}

TEST_F(UpdateControllerTest, AScheduledCheckIsSilentWhenNothingIsNew)
{
    consent(true);
    serve(listWith(item("1.2")));
    controller->start();
    waitForAnswer();
    EXPECT_EQ(shown(), 0);
}

TEST_F(UpdateControllerTest, AScheduledCheckIsSilentWhenItFailsAndIsTriedAgainAtTheNextLook)
{
    consent(true);
    server = std::make_unique<FeedServer>(listWith(item("1.3")));
    bundle.feedURL = server->url(u"500"_s);
    controller = std::make_unique<UpdateController>(
        bundle, file, network, presenter,
        UpdateTiming{.now = [this] { return time; }, .firstLook = 0ms, .lookInterval = 10ms});
    controller->start();
    EXPECT_TRUE(QTest::qWaitFor([&] { return server->requests(0).size() >= 2; }, 20'000));
    EXPECT_EQ(shown(), 0);
    EXPECT_EQ(saved().lastCheck, std::nullopt);
}

TEST_F(UpdateControllerTest, NothingIsAskedBeforeACheckIsDue)
{
    UpdateSettings{.automaticChecks = true, .lastCheck = today - 23h}.save(file);
    server = std::make_unique<FeedServer>(listWith(item("1.3")));
    bundle.feedURL = server->url(u"200"_s);
    int looks = 0;
    controller = std::make_unique<UpdateController>(bundle, file, network, presenter,
                                                    UpdateTiming{.now =
                                                                     [&] {
                                                                         ++looks;
                                                                         return time;
                                                                     },
                                                                 .firstLook = 0ms,
                                                                 .lookInterval = 1ms});
    controller->start();
    EXPECT_TRUE(QTest::qWaitFor([&] { return looks >= 3; }, 20'000));
    EXPECT_TRUE(server->requests(0).isEmpty());
    time += 1h; // also while the computer slept
    EXPECT_TRUE(QTest::qWaitFor([&] { return saved().lastCheck == today + 1h; }, 20'000));
    EXPECT_EQ(server->requests(1).size(), 1);
}

TEST_F(UpdateControllerTest, TheUsualTimesAreTenSecondsAndAnHour)
{
    EXPECT_EQ(UpdateTiming{}.firstLook, 10s);
    EXPECT_EQ(UpdateTiming{}.lookInterval, 1h);
}

TEST_F(UpdateControllerTest, ASkippedVersionIsNotShownByItselfAgain)
{
    consent(true);
    serve(listWith(item("1.3")));
    checkAsUser();
    presenter.answers.skip();
    EXPECT_EQ(saved().skippedVersion, "1.3");
    time += 48h;
    make();
    controller->start();
    EXPECT_TRUE(QTest::qWaitFor([&] { return saved().lastCheck == today + 48h; }, 20'000));
    EXPECT_EQ(presenter.offers.size(), 1);
}

TEST_F(UpdateControllerTest, ASkippedVersionIsShownToWhoAsks)
{
    UpdateSettings{.skippedVersion = "1.3"}.save(file);
    serve(listWith(item("1.3")));
    controller->start();
    checkAsUser();
    EXPECT_EQ(presenter.offers.size(), 1);
}

TEST_F(UpdateControllerTest, AVersionAfterTheSkippedOneIsShown)
{
    UpdateSettings{.automaticChecks = true, .skippedVersion = "1.3"}.save(file);
    serve(listWith(item("1.3") + item("1.4")));
    controller->start();
    waitForAnswer();
    ASSERT_EQ(presenter.offers.size(), 1);
    EXPECT_EQ(presenter.offers[0].version, "1.4");
}

TEST_F(UpdateControllerTest, ACriticalUpdateIsShownAlsoWhenItWasSkipped)
{
    UpdateSettings{.automaticChecks = true, .skippedVersion = "1.3"}.save(file);
    serve(listWith(item("1.3", "<sparkle:criticalUpdate/>")));
    controller->start();
    waitForAnswer();
    ASSERT_EQ(presenter.offers.size(), 1);
    EXPECT_TRUE(presenter.offers[0].critical);
}

TEST_F(UpdateControllerTest, TheOfferTurnsAutomaticChecksOnAndOff)
{
    serve(listWith(item("1.3")));
    checkAsUser();
    presenter.answers.checkAutomatically(true);
    EXPECT_EQ(saved().automaticChecks, true);
    presenter.answers.checkAutomatically(false);
    EXPECT_EQ(saved().automaticChecks, false);
}

TEST_F(UpdateControllerTest, AUsersRequestDuringACheckMakesItTheUsers)
{
    consent(true);
    serve(listWith(item("1.2")));
    controller->start();
    EXPECT_TRUE(QTest::qWaitFor([&] { return !server->requests(0).isEmpty(); }, 20'000) ||
                saved().lastCheck == today);
    controller->checkForUpdates();
    EXPECT_TRUE(QTest::qWaitFor([&] { return shown() == 1; }, 20'000));
    EXPECT_EQ(presenter.alerts, std::vector{upToDate});
}

TEST_F(UpdateControllerTest, EndingDuringACheckIsSilent)
{
    serve({}, u"hang"_s);
    controller->checkForUpdates();
    EXPECT_EQ(server->requests(1).size(), 1);
    controller.reset();
    QCoreApplication::processEvents();
    EXPECT_EQ(shown(), 0);
}

TEST_F(UpdateControllerTest, AnAnswerToAnOfferAfterItsEndIsDropped)
{
    serve(listWith(item("1.3")));
    checkAsUser();
    controller.reset();
    presenter.answers.skip();
    presenter.answers.checkAutomatically(true);
    EXPECT_EQ(saved().skippedVersion, std::nullopt);
    EXPECT_EQ(saved().automaticChecks, std::nullopt);
}

/// For builds that know their publisher's key.
class SignedUpdateTest : public UpdateControllerTest {
protected:
    SignedUpdateTest() { bundle.publicKey = publisher.publicKey().toStdString(); }

    const Publisher publisher;
    const UpdateAlert refusal{"Couldn’t check for updates",
                              "The list of updates can’t be used: it does not carry its "
                              "publisher’s signature. Try again later."};
};

TEST_F(SignedUpdateTest, ASignedListIsUsed)
{
    serve(publisher.withSignature(listWith(item("1.3"))));
    checkAsUser();
    EXPECT_EQ(presenter.offers.size(), 1);
}

TEST_F(SignedUpdateTest, AListWithoutASignatureIsRefused)
{
    serve(listWith(item("1.3")));
    checkAsUser();
    EXPECT_EQ(presenter.alerts, std::vector{refusal});
    EXPECT_EQ(saved().lastCheck, std::nullopt);
}

TEST_F(SignedUpdateTest, AChangedListIsRefused)
{
    serve(publisher.withSignature(listWith(item("1.2"))).replace("1.2", "1.3"));
    checkAsUser();
    EXPECT_EQ(presenter.alerts, std::vector{refusal});
}

} // namespace
} // namespace quillmark::test
