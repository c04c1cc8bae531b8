#include "model/ThreadPoolRunner.h"

#include <QCoreApplication>
#include <QEventLoop>

#include <gtest/gtest.h>

#include <atomic>
#include <latch>
#include <memory>
#include <thread>

namespace quillmark::test {
namespace {

class RunnerInAnApplication : public testing::Test {
protected:
    /// Lets the main thread's events happen until `condition` holds.
    template <typename Condition>
    static void waitFor(Condition condition)
    {
        while (!condition())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }

    int m_argumentCount{};
    QCoreApplication application{m_argumentCount, nullptr};
};

TEST_F(RunnerInAnApplication, WorksElsewhereAndDeliversOnTheMainThread)
{
    ThreadPoolRunner runner;
    std::thread::id worker;
    std::thread::id receiver;
    runner.run([&] { worker = std::this_thread::get_id(); },
               [&] { receiver = std::this_thread::get_id(); });
    EXPECT_EQ(receiver, std::thread::id());
    waitFor([&] { return receiver != std::thread::id(); });
    EXPECT_EQ(receiver, std::this_thread::get_id());
    EXPECT_NE(worker, std::this_thread::get_id());
    EXPECT_NE(worker, std::thread::id());
}

TEST_F(RunnerInAnApplication, WorksOnSeveralThingsAtOnce)
{
    ThreadPoolRunner runner;
    constexpr int count = 4;
    std::latch everyoneIsHere(count); // nobody passes unless all work at the same time
    int delivered = 0;
    for (int i = 0; i < count; ++i)
        runner.run([&] { everyoneIsHere.arrive_and_wait(); }, [&] { ++delivered; });
    waitFor([&] { return delivered == count; });
    EXPECT_EQ(delivered, count);
}

TEST_F(RunnerInAnApplication, DeliversManyResultsOnceEach)
{
    ThreadPoolRunner runner;
    constexpr int count = 500;
    std::atomic<int> worked = 0;
    int delivered = 0;
    for (int i = 0; i < count; ++i)
        runner.run([&] { ++worked; }, [&] { ++delivered; });
    waitFor([&] { return delivered == count; });
    QCoreApplication::processEvents();
    EXPECT_EQ(worked, count);
    EXPECT_EQ(delivered, count);
}

TEST_F(RunnerInAnApplication, WorkMayAskForMoreWorkWhenItIsDelivered)
{
    ThreadPoolRunner runner;
    bool done = false;
    runner.run([] {}, [&] { runner.run([] {}, [&] { done = true; }); });
    waitFor([&] { return done; });
    EXPECT_TRUE(done);
}

TEST_F(RunnerInAnApplication, EndsWithTheWorkThatHasBegunAndDeliversNothing)
{
    auto runner = std::make_unique<ThreadPoolRunner>();
    std::latch begun(1);
    std::latch mayEnd(1);
    bool ended = false;
    bool delivered = false;
    runner->run(
        [&] {
            begun.count_down();
            mayEnd.wait();
            ended = true;
        },
        [&] { delivered = true; });
    begun.wait();
    mayEnd.count_down();
    runner.reset();
    QCoreApplication::processEvents();
    EXPECT_TRUE(ended);
    EXPECT_FALSE(delivered);
}

} // namespace
} // namespace quillmark::test
