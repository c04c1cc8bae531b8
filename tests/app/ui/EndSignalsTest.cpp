#include "ui/EndSignals.h"

#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QTest>

#include <csignal>

namespace quillmark::test {
namespace {

TEST(EndSignals, TheFirstOneIsToldInTheEventLoopAndTheNextOneWouldEndTheProgram)
{
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        const EndSignals signals;
        const QSignalSpy asked(&signals, &EndSignals::asked);
        ASSERT_EQ(std::raise(signal), 0);
        EXPECT_EQ(asked.count(), 0);
        EXPECT_TRUE(QTest::qWaitFor([&] { return asked.count() == 1; }));
        struct sigaction action {};
        ASSERT_EQ(sigaction(signal, nullptr, &action), 0);
        EXPECT_EQ(action.sa_handler, SIG_DFL);
    }
}

} // namespace
} // namespace quillmark::test
