#include "cli/Interruption.h"

#include "CommandLineFixture.h"

#include <gmock/gmock.h>

#include <array>
#include <csignal>
#include <unistd.h>

namespace quillmark::test {
namespace {

using testing::ElementsAre;
using testing::Optional;

class Interruption : public CommandLineFixture {
protected:
    /// Some are ignored in what a shell starts in the background.
    Interruption()
    {
        for (Handled& handled : m_handled)
            handled.before = std::signal(handled.signal, SIG_DFL);
    }
    ~Interruption() override
    {
        for (const Handled& handled : m_handled)
            static_cast<void>(std::signal(handled.signal, handled.before));
    }

    /// Runs in the process that a death test makes.
    void runInterrupted(int signal)
    {
        const ListingFontService interrupting([signal] { raise(signal); });
        fonts = &interrupting;
        errorColumns = 80;
        cli::Interruption::install();
        _exit(runTo(STDOUT_FILENO, STDERR_FILENO, {"installed", "-o", at("report.txt")}));
    }

private:
    struct Handled {
        int signal;
        void (*before)(int);
    };
    std::array<Handled, 3> m_handled{{{SIGINT, nullptr}, {SIGTERM, nullptr}, {SIGHUP, nullptr}}};
};

TEST_F(Interruption, ByCtrlCErasesTheProgressAndExitsWith130)
{
    EXPECT_EXIT(runInterrupted(SIGINT), testing::ExitedWithCode(130), "Reading.*\r\x1b\\[K$");
}

TEST_F(Interruption, LeavesNothingWhereTheOutputWasToBe)
{
    EXPECT_EXIT(runInterrupted(SIGINT), testing::ExitedWithCode(130), "");
    EXPECT_THAT(folder.names(), ElementsAre());
}

TEST_F(Interruption, LeavesAnOlderOutputAsItWas)
{
    folder.write("report.txt", "old");
    EXPECT_EXIT(runInterrupted(SIGINT), testing::ExitedWithCode(130), "");
    EXPECT_THAT(folder.names(), ElementsAre("report.txt"));
    EXPECT_THAT(content("report.txt"), Optional(std::string("old")));
}

TEST_F(Interruption, ByAnotherSignalRemovesTheTemporaryAndDiesOfIt)
{
    for (const int signal : {SIGTERM, SIGHUP}) {
        EXPECT_EXIT(runInterrupted(signal), testing::KilledBySignal(signal), "");
        EXPECT_THAT(folder.names(), ElementsAre());
    }
}

TEST_F(Interruption, ThatIsIgnoredStaysIgnored)
{
    const auto ignoring = [this] {
        std::signal(SIGHUP, SIG_IGN);
        runInterrupted(SIGHUP);
    };
    EXPECT_EXIT(ignoring(), testing::ExitedWithCode(0), "");
    EXPECT_THAT(folder.names(), ElementsAre("report.txt"));
}

} // namespace
} // namespace quillmark::test
