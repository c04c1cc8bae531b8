#include "model/ThreadPoolRunner.h"

#include <QCoreApplication>
#include <QEventLoop>

#include <gtest/gtest.h>

#include <atomic>
#include <latch>
#include <memory>
#include <string>
#include <thread>
#include <vector>

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

TEST_F(RunnerInAnApplication, FinishingWaitsForWhatMustNotBeLostAndDeliversIt)
{
    ThreadPoolRunner runner;
    std::atomic<int> readersBegun = 0;
    std::latch readersMayEnd(1);
    bool readerDelivered = false;
    bool laterReaderWorked = false;
    std::vector<std::string> order;
    // More than there are threads.
    for (int i = 0; i < 64; ++i)
        runner.run(
            [&] {
                ++readersBegun;
                readersBegun.notify_one();
                readersMayEnd.wait();
            },
            [&] { readerDelivered = true; });
    readersBegun.wait(0);
    runner.run([&] { laterReaderWorked = true; }, [] {});
    runner.runToEnd([&] { order.emplace_back("written"); },
                    [&] {
                        order.emplace_back("delivered");
                        runner.runToEnd([&] { order.emplace_back("written again"); },
                                        [&] { order.emplace_back("delivered again"); });
                    });

    runner.finish();

    EXPECT_EQ(order, (std::vector<std::string>{"written", "delivered", "written again",
                                               "delivered again"}));
    EXPECT_TRUE(runner.isWorking());
    EXPECT_FALSE(readerDelivered);
    readersMayEnd.count_down();
    EXPECT_FALSE(laterReaderWorked);
}

TEST_F(RunnerInAnApplication, WhatMustNotBeLostDoesNotWaitForReading)
{
    ThreadPoolRunner runner;
    std::latch readersMayEnd(1);
    for (int i = 0; i < 64; ++i) // more than there are threads
        runner.run([&] { readersMayEnd.wait(); }, [] {});
    bool written = false;
    runner.runToEnd([] {}, [&] { written = true; });
    waitFor([&] { return written; });
    readersMayEnd.count_down();
    EXPECT_TRUE(written);
}

TEST_F(RunnerInAnApplication, FinishingNothingReturnsAtOnce)
{
    ThreadPoolRunner runner;
    runner.finish();
    EXPECT_FALSE(runner.isWorking());
}

} // namespace
} // namespace quillmark::test
