// Progress and messages on standard error.
#include "CommandLineFixture.h"

#include <gmock/gmock.h>

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
