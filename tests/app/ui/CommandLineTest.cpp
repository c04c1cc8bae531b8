#include "ui/CommandLine.h"

#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <variant>
#include <vector>

namespace quillmark::test {
namespace {

namespace fs = std::filesystem;

using Arguments = std::vector<std::string>;

WindowStart startOf(const Arguments& arguments)
{
    const auto read = readCommandLine(arguments);
    EXPECT_TRUE(std::holds_alternative<WindowStart>(read));
    return std::holds_alternative<WindowStart>(read) ? std::get<WindowStart>(read) : WindowStart{};
}

CommandLineAnswer answerTo(const Arguments& arguments)
{
    const auto read = readCommandLine(arguments);
    EXPECT_TRUE(std::holds_alternative<CommandLineAnswer>(read));
    return std::holds_alternative<CommandLineAnswer>(read) ? std::get<CommandLineAnswer>(read)
                                                           : CommandLineAnswer{};
}

TEST(CommandLine, NothingShowsTheWindow)
{
    EXPECT_EQ(startOf({}), WindowStart());
}

TEST(CommandLine, FilesKeepTheirOrderAndTheirBytes)
{
    EXPECT_EQ(startOf({"/b c.pdf", "/Größe,\"\\", "/b\xFC.pdf", "/a"}).files,
              (std::vector<fs::path>{"/b c.pdf", "/Größe,\"\\", "/b\xFC.pdf", "/a"}));
}

TEST(CommandLine, RelativePathsBecomeAbsolute)
{
    const fs::path here = fs::current_path();
    EXPECT_EQ(startOf({"a.pdf", "./b/../c", "d/"}).files,
              (std::vector<fs::path>{here / "a.pdf", here / "c", here / "d"}));
}

TEST(CommandLine, FileURLsAreDecodedToTheirBytes)
{
    EXPECT_EQ(
        startOf({"file:///a%20b/%C3%BC%23.pdf", "file://localhost/c", "FILE:/d", "file:///%FF"})
            .files,
        (std::vector<fs::path>{"/a b/ü#.pdf", "/c", "/d", "/\xFF"}));
}

TEST(CommandLine, OtherURLsAreNoFilesOfThisComputer)
{
    // They stay what they are, and so lead to nothing that is there.
    const fs::path here = fs::current_path();
    EXPECT_EQ(
        startOf({"file://elsewhere/a.pdf", "https://example.org/a.pdf", "file:///a%00b"}).files,
        (std::vector<fs::path>{here / "file:/elsewhere/a.pdf", here / "https:/example.org/a.pdf",
                               here / "file:/a%00b"}));
}

TEST(CommandLine, AnEmptyArgumentIsNotTheCurrentFolder)
{
    EXPECT_EQ(startOf({""}).files, std::vector<fs::path>());
}

TEST(CommandLine, BehindTwoHyphensEverythingIsAFile)
{
    const fs::path here = fs::current_path();
    EXPECT_EQ(startOf({"--", "--help", "-style", "--"}).files,
              (std::vector<fs::path>{here / "--help", here / "-style", here / "--"}));
    EXPECT_EQ(startOf({"--", "-style"}).toolkitOptions, Arguments());
}

TEST(CommandLine, OptionsOfDesktopsAndSessionManagersGoToTheToolkit)
{
    const WindowStart start = startOf({"-session", "10a_20", "/a.pdf", "--platform", "wayland"});
    EXPECT_EQ(start.toolkitOptions, (Arguments{"-session", "10a_20", "--platform", "wayland"}));
    EXPECT_EQ(start.files, std::vector<fs::path>{"/a.pdf"});
}

TEST(CommandLine, HelpFitsTheTerminalAndNamesEverything)
{
    for (const char* option : {"-h", "--help"}) {
        const CommandLineAnswer answer = answerTo({"/a.pdf", option});
        EXPECT_EQ(answer.exitCode, 0);
        EXPECT_EQ(answer.errors, "");
        for (const char* part : {"Usage: quillmark [FILE|FOLDER...]\n", "--help", "--version"})
            EXPECT_NE(answer.output.find(part), std::string::npos) << part;
        std::istringstream lines(answer.output);
        for (std::string line; std::getline(lines, line);)
            EXPECT_LE(line.size(), 79U) << line;
    }
}

TEST(CommandLine, TheVersionIsOneLine)
{
    const CommandLineAnswer answer = answerTo({"--version"});
    EXPECT_EQ(answer.exitCode, 0);
    EXPECT_EQ(answer.output, "quillmark " QUILLMARK_VERSION "\n");
}

TEST(CommandLine, UnknownOptionsAreWrongUse)
{
    for (const char* option : {"--frobnicate", "-x", "--help=yes", "-style"}) {
        const CommandLineAnswer answer = answerTo({"/a.pdf", option});
        EXPECT_EQ(answer.exitCode, 2);
        EXPECT_EQ(answer.output, "");
        EXPECT_EQ(answer.errors, "quillmark: there is no option \"" + std::string(option) +
                                     "\"; see quillmark --help\n");
    }
}

TEST(CommandLine, AnOptionCannotControlTheTerminal)
{
    EXPECT_EQ(answerTo({"--\x1b[2J"}).errors,
              "quillmark: there is no option \"--\uFFFD[2J\"; see quillmark --help\n");
}

} // namespace
} // namespace quillmark::test
