// Progress and messages on standard error.
#include "CommandLineFixture.h"

#include "files/FileDescriptor.h"

#include <gmock/gmock.h>

#include <chrono>
#include <sys/mman.h>
#include <thread>
#include <unistd.h>

namespace quillmark::test {
namespace {

class Progress : public CommandLineFixture {};

TEST_F(Progress, IsShownOnATerminalAndErasedAtTheEnd)
{
    addInstalled(likelyOKFont());
    errorColumns = 80;
    EXPECT_EQ(run({"installed"}).errors, "\r\x1b[KReading every installed font…"
                                         "\r\x1b[KReading every installed font… 0 of 1"
                                         "\r\x1b[KReading every installed font… 1 of 1"
                                         "\r\x1b[K");
}

TEST_F(Progress, NamesTheFolder)
{
    addFile("Fonts/a.ttf", {likelyOKFont()});
    errorColumns = 80;
    EXPECT_EQ(run({"scan", at("Fonts")}).errors, "\r\x1b[KScanning Fonts…\r\x1b[K");
}

TEST_F(Progress, IsNotShownInAPipe)
{
    addInstalled(likelyOKFont());
    EXPECT_EQ(run({"installed"}).errors, "");
}

TEST_F(Progress, IsNotShownWhenQuiet)
{
    addInstalled(likelyOKFont());
    errorColumns = 80;
    EXPECT_EQ(run({"installed", "--quiet"}).errors, "");
    EXPECT_EQ(run({"installed", "-q"}).errors, "");
}

TEST_F(Progress, StaysOnOneLineOfANarrowTerminal)
{
    addFile("Fonts/a.ttf", {likelyOKFont()});
    errorColumns = 10;
    EXPECT_EQ(run({"scan", at("Fonts")}).errors, "\r\x1b[KScanning \r\x1b[K");
}

TEST_F(Progress, ShowsNoControlSequenceOfAName)
{
    addFile("a\x1b[2J\n/a.ttf", {likelyOKFont()});
    errorColumns = 80;
    EXPECT_EQ(run({"scan", at("a\x1b[2J\n")}).errors, "\r\x1b[KScanning a\uFFFD[2J\uFFFD…\r\x1b[K");
}

TEST_F(Progress, IsErasedBeforeAMessage)
{
    addFile("Fonts/a.ttf", {likelyOKFont()});
    errorColumns = 80;
    const Outcome outcome = run({"check", at("Nowhere.pdf"), "--no-installed"});
    EXPECT_EQ(outcome.errors, "\r\x1b[KChecking Nowhere.pdf…\r\x1b[K"
                              "quillmark-cli: Nowhere.pdf couldn't be opened as a PDF.\n");
}

TEST_F(Progress, OfWhatIsDoneQuicklyIsNotShown)
{
    addInstalled(likelyOKFont());
    errorColumns = 80;
    progressDelay = std::chrono::hours(1);
    EXPECT_EQ(run({"installed"}).errors, "");
}

TEST_F(Progress, IsShownOnceSomethingTakesTime)
{
    const FileDescriptor output(memfd_create("output", 0));
    const FileDescriptor errors(memfd_create("errors", 0));
    const auto isShown = [&] { return lseek(errors.get(), 0, SEEK_END) > 0; };
    // Takes until the user has been told, without telling anything new.
    const ListingFontService waiting([&] {
        const auto latest = std::chrono::steady_clock::now() + std::chrono::seconds(60);
        while (!isShown() && std::chrono::steady_clock::now() < latest)
            std::this_thread::yield();
    });
    fonts = &waiting;
    errorColumns = 80;
    progressDelay = std::chrono::milliseconds(20);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(runTo(output.get(), errors.get(), {"installed"}), 0);
    EXPECT_GE(std::chrono::steady_clock::now() - start, progressDelay);
    EXPECT_TRUE(isShown());
}

class Messages : public CommandLineFixture {};

TEST_F(Messages, ArePrintedWhenQuiet)
{
    EXPECT_EQ(run({"-q", "scan", at("Nowhere")}).errors,
              "quillmark-cli: FOLDER/Nowhere: No such file or directory\n");
}

TEST_F(Messages, ShowNoControlSequenceOfAName)
{
    EXPECT_EQ(run({"scan", at("a\x1b[2J\n\xC2\x9B\xFF")}).errors,
              "quillmark-cli: FOLDER/a\uFFFD[2J\uFFFD\uFFFD\uFFFD: No such file or directory\n");
}

} // namespace
} // namespace quillmark::test
