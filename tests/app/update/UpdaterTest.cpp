#include "update/Updater.h"

#include "FakePresenter.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace quillmark::test {
namespace {

class FakeFramework final : public UpdateFramework {
public:
    void start() override { ++starts; }
    [[nodiscard]] std::optional<std::string> feedURL() const override { return feed; }
    void checkForUpdates() override { ++checks; }

    int starts{};
    int checks{};
    std::optional<std::string> feed{"https://example.org/feed.xml"};
};

class FakeProbe final : public FeedProbe {
public:
    void probe(const std::string& feedURL, std::function<void(FeedState)> given) override
    {
        probed.push_back(feedURL);
        answer = std::move(given);
    }

    std::vector<std::string> probed;
    std::function<void(FeedState)> answer;
};

class UpdaterTest : public testing::Test {
protected:
    void make(const BundleInfo& bundle)
    {
        updater = std::make_unique<Updater>(bundle, framework, probe, presenter);
    }

    FakeFramework framework;
    FakeProbe probe;
    FakePresenter presenter;
    std::unique_ptr<Updater> updater = std::make_unique<Updater>(
        BundleInfo{.displayName = "Quillmark", .shortVersion = "1.2"}, framework, probe, presenter);
};

TEST_F(UpdaterTest, StartsTheFrameworkAndAsksNothingByItself)
{
    EXPECT_EQ(framework.starts, 1);
    EXPECT_EQ(framework.checks, 0);
    EXPECT_TRUE(probe.probed.empty());
    EXPECT_FALSE(updater->checking());
}

TEST_F(UpdaterTest, WithoutAFeedTheFrameworkAnswersAtOnce)
{
    framework.feed.reset();
    updater->checkForUpdates();
    EXPECT_EQ(framework.checks, 1);
    EXPECT_TRUE(probe.probed.empty());
    EXPECT_FALSE(updater->checking());
}

TEST_F(UpdaterTest, AFeedThatAnswersIsTheFrameworksToCheck)
{
    updater->checkForUpdates();
    EXPECT_EQ(probe.probed, std::vector<std::string>{"https://example.org/feed.xml"});
    EXPECT_TRUE(updater->checking());
    EXPECT_EQ(framework.checks, 0);
    probe.answer(FeedState::reachable);
    EXPECT_FALSE(updater->checking());
    EXPECT_EQ(framework.checks, 1);
    EXPECT_TRUE(presenter.alerts.empty());
}

TEST_F(UpdaterTest, AFeedThatIsNotPublishedMeansUpToDate)
{
    updater->checkForUpdates();
    probe.answer(FeedState::upToDate);
    EXPECT_FALSE(updater->checking());
    EXPECT_EQ(presenter.alerts,
              (std::vector<UpdateAlert>{
                  {"You’re up to date",
                   "Quillmark 1.2 is the newest version. Quillmark checks for updates on its own "
                   "and will let you know when there’s a new one."}}));
    EXPECT_EQ(framework.checks, 0);
}

TEST_F(UpdaterTest, AFeedThatFailsIsSaidSo)
{
    updater->checkForUpdates();
    probe.answer(FeedState::failed);
    EXPECT_FALSE(updater->checking());
    EXPECT_EQ(presenter.alerts,
              (std::vector<UpdateAlert>{
                  {"Couldn’t check for updates",
                   "Check your internet connection and try again. Quillmark also checks on its own "
                   "about once a day."}}));
    EXPECT_EQ(framework.checks, 0);
}

TEST_F(UpdaterTest, TwoRequestsStartOneProbe)
{
    updater->checkForUpdates();
    updater->checkForUpdates();
    EXPECT_EQ(probe.probed.size(), 1);
    probe.answer(FeedState::reachable);
    EXPECT_EQ(framework.checks, 1);
    updater->checkForUpdates();
    EXPECT_EQ(probe.probed.size(), 2);
}

TEST_F(UpdaterTest, AnAnswerAfterItsEndIsDropped)
{
    updater->checkForUpdates();
    updater.reset();
    probe.answer(FeedState::reachable);
    probe.answer(FeedState::failed);
    EXPECT_EQ(framework.checks, 0);
    EXPECT_TRUE(presenter.alerts.empty());
}

TEST_F(UpdaterTest, WithoutAnyNameTheTextsBeginWithThisApp)
{
    make({.shortVersion = "1.2"});
    updater->checkForUpdates();
    probe.answer(FeedState::upToDate);
    updater->checkForUpdates();
    probe.answer(FeedState::failed);
    ASSERT_EQ(presenter.alerts.size(), 2);
    EXPECT_EQ(presenter.alerts[0].text,
              "This app 1.2 is the newest version. This app checks for updates on its own and will "
              "let you know when there’s a new one.");
    EXPECT_EQ(presenter.alerts[1].text, "Check your internet connection and try again. This app "
                                        "also checks on its own about once a day.");
}

TEST(BundleInfo, TheDisplayNameComesBeforeTheName)
{
    EXPECT_EQ((BundleInfo{.displayName = "Display", .name = "Name"}.appName()), "Display");
    EXPECT_EQ((BundleInfo{.name = "Name"}.appName()), "Name");
    EXPECT_EQ(BundleInfo{}.appName(), "This app");
}

TEST(BundleInfo, AMissingVersionIsEmptyInTheText)
{
    EXPECT_TRUE(UpdateTexts::upToDate({.name = "Name", .version = "7"})
                    .text.starts_with("Name  is the newest version. "));
}

TEST(BundleInfo, EitherVersionStandsInForTheOther)
{
    EXPECT_EQ((BundleInfo{.shortVersion = "1.2", .version = "42"}.comparedVersion()), "42");
    EXPECT_EQ((BundleInfo{.shortVersion = "1.2", .version = "42"}.displayVersion()), "1.2");
    EXPECT_EQ((BundleInfo{.shortVersion = "1.2"}.comparedVersion()), "1.2");
    EXPECT_EQ((BundleInfo{.version = "42"}.displayVersion()), "42");
    EXPECT_EQ(BundleInfo{}.comparedVersion(), "");
}

} // namespace
} // namespace quillmark::test
