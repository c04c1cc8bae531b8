// Where results go, and what becomes of a file when writing it goes wrong.
#include "CommandLineFixture.h"

#include "files/FileDescriptor.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <stdexcept>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quillmark::test {
namespace {

using testing::AnyOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::Optional;
using testing::StartsWith;

class OutputFile : public CommandLineFixture {
protected:
    OutputFile() { addInstalled(likelyOKFont()); }
};

TEST_F(OutputFile, HoldsTheReportAndNothingIsPrinted)
{
    const Outcome outcome = run({"installed", "-o", at("report.txt")});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(outcome.errors, "");
    EXPECT_THAT(content("report.txt"), Optional(StartsWith("Installed fonts\n")));
    EXPECT_THAT(folder.names(), ElementsAre("report.txt"));
}

TEST_F(OutputFile, ReplacesAnOlderOneAndKeepsItsPermissions)
{
    folder.write("report.txt", "a much longer text that was there before");
    chmod(at("report.txt").c_str(), 0640);
    EXPECT_EQ(run({"installed", "-o", at("report.txt")}).exitCode, 0);
    EXPECT_THAT(content("report.txt"), Optional(StartsWith("Installed fonts\n")));
    EXPECT_EQ(folder.mode("report.txt"), 0640U);
}

TEST_F(OutputFile, GetsThePermissionsThatNewFilesGet)
{
    const mode_t before = umask(0027);
    EXPECT_EQ(run({"installed", "-o", at("report.txt")}).exitCode, 0);
    umask(before);
    EXPECT_EQ(folder.mode("report.txt"), 0640U);
}

TEST_F(OutputFile, BehindALinkIsReplacedAndTheLinkStays)
{
    folder.write("deep/report.txt", "old");
    std::filesystem::create_symlink("deep/report.txt", at("link.txt"));
    EXPECT_EQ(run({"installed", "-o", at("link.txt")}).exitCode, 0);
    EXPECT_TRUE(std::filesystem::is_symlink(at("link.txt")));
    EXPECT_THAT(content("deep/report.txt"), Optional(StartsWith("Installed fonts\n")));
}

TEST_F(OutputFile, IsMadeWhereALinkPointsThatLedNowhere)
{
    std::filesystem::create_directory(at("deep"));
    std::filesystem::create_symlink("report.txt", at("deep/link.txt"));
    std::filesystem::create_symlink("deep/link.txt", at("link.txt"));
    EXPECT_EQ(run({"installed", "-o", at("link.txt")}).exitCode, 0);
    EXPECT_TRUE(std::filesystem::is_symlink(at("link.txt")));
    EXPECT_TRUE(std::filesystem::is_symlink(at("deep/link.txt")));
    EXPECT_THAT(content("deep/report.txt"), Optional(StartsWith("Installed fonts\n")));
}

TEST_F(OutputFile, BehindALinkToItselfIsReported)
{
    std::filesystem::create_symlink("link.txt", at("link.txt"));
    const Outcome outcome = run({"installed", "-o", at("link.txt")});
    EXPECT_EQ(outcome.exitCode, 4);
    EXPECT_EQ(outcome.errors, "quillmark-cli: FOLDER/link.txt could not be written: Too many "
                              "levels of symbolic links.\n");
}

TEST_F(OutputFile, IsMadeInTheCurrentFolderWithoutAPath)
{
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(folder.path());
    const int exitCode = run({"installed", "-o", "report.txt"}).exitCode;
    std::filesystem::current_path(before);
    EXPECT_EQ(exitCode, 0);
    EXPECT_TRUE(content("report.txt"));
}

TEST_F(OutputFile, InAMissingFolderIsReportedBeforeAnythingIsRead)
{
    const Outcome outcome = run({"scan", at("Nowhere"), "-o", at("missing/report.txt")});
    EXPECT_EQ(outcome.exitCode, 4);
    EXPECT_EQ(outcome.errors, "quillmark-cli: FOLDER/missing/report.txt could not be written: "
                              "No such file or directory.\n");
}

TEST_F(OutputFile, ThatIsAFolderIsReported)
{
    const Outcome outcome = run({"installed", "-o", at("")});
    EXPECT_EQ(outcome.exitCode, 4);
    EXPECT_EQ(outcome.errors, "quillmark-cli: FOLDER/ could not be written: Is a directory.\n");
    EXPECT_THAT(folder.names(), ElementsAre());
}

TEST_F(OutputFile, OnAFullDeviceIsReported)
{
    const Outcome outcome = run({"installed", "-o", "/dev/full"});
    EXPECT_EQ(outcome.exitCode, 4);
    EXPECT_EQ(outcome.errors,
              "quillmark-cli: /dev/full could not be written: No space left on device.\n");
}

TEST_F(OutputFile, CanBeADevice)
{
    const Outcome outcome = run({"installed", "-o", "/dev/null"});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.output + outcome.errors, "");
}

TEST_F(OutputFile, CanBeStandardOutputByItsNameAsADevice)
{
    EXPECT_THAT(run({"installed", "-o", "/dev/stdout"}).output, StartsWith("Installed fonts\n"));
}

TEST_F(OutputFile, CanBeStandardOutputAsADash)
{
    EXPECT_THAT(run({"installed", "-o", "-"}).output, StartsWith("Installed fonts\n"));
    EXPECT_FALSE(content("-"));
}

TEST_F(OutputFile, CanBeAPipe)
{
    ASSERT_EQ(mkfifo(at("pipe").c_str(), 0600), 0);
    const FileDescriptor reader = openFile(at("pipe"), O_RDONLY | O_NONBLOCK);
    EXPECT_EQ(run({"installed", "-o", at("pipe")}).exitCode, 0);
    std::string piece(15, ' ');
    EXPECT_EQ(read(reader.get(), piece.data(), piece.size()), 15);
    EXPECT_EQ(piece, "Installed fonts");
    EXPECT_TRUE(std::filesystem::is_fifo(at("pipe")));
}

/// A terminal that the program can open by its name.
class NamedTerminal {
public:
    NamedTerminal() : m_screen(posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK))
    {
        EXPECT_EQ(grantpt(m_screen.get()), 0);
        EXPECT_EQ(unlockpt(m_screen.get()), 0);
        m_name = ptsname(m_screen.get());
        m_open = openFile(m_name, O_RDWR | O_NOCTTY);
    }
    [[nodiscard]] const std::string& name() const { return m_name; }
    /// What stands on it.
    [[nodiscard]] std::string text() const
    {
        std::string text(4096, '\0'); // it holds no more
        const auto size = read(m_screen.get(), text.data(), text.size());
        text.resize(static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
        return text;
    }

private:
    FileDescriptor m_screen;
    FileDescriptor m_open; // keeps what was written when the program closes it
    std::string m_name;
};

TEST_F(OutputFile, ThatIsATerminalCannotBeControlled)
{
    FontValues font = likelyOKFont();
    font.fullName = u"A\x1b[31m\u202E";
    addFile("Fonts/a.ttf", {font});
    for (const char* format : {"text", "json", "csv"}) {
        const NamedTerminal terminal;
        EXPECT_EQ(run({"scan", at("Fonts"), "-f", format, "-o", terminal.name()}).exitCode, 0);
        const std::string text = terminal.text();
        EXPECT_THAT(text, HasSubstr("[31m")) << format;
        EXPECT_THAT(text, Not(AnyOf(HasSubstr("\x1b"), HasSubstr("\u202E")))) << format;
    }
}

TEST_F(OutputFile, ThatIsATerminalGetsNoPDF)
{
    const NamedTerminal terminal;
    const Outcome outcome = run({"installed", "-f", "pdf", "-o", terminal.name()});
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_EQ(outcome.errors,
              "quillmark-cli: a PDF is nothing for a terminal; name a file with --output.\n");
    EXPECT_EQ(terminal.text(), "");
}

TEST_F(OutputFile, IsStandardOutputOnATerminalByItsNameAsADevice)
{
    outputColumns = 80;
    EXPECT_EQ(run({"installed", "-f", "pdf", "-o", "/dev/stdout"}).exitCode, 2);
}

TEST_F(OutputFile, NeverReplacesAnInput)
{
    const std::string text = "stands for a font";
    addFile("font.bin", {likelyOKFont()});
    std::filesystem::create_symlink("font.bin", at("link"));
    for (const char* name : {"font.bin", "link"}) {
        const Outcome outcome = run({"scan", at("font.bin"), "-o", at(name)});
        EXPECT_EQ(outcome.exitCode, 2);
        EXPECT_EQ(outcome.errors,
                  "quillmark-cli: --output would replace the input \"FOLDER/font.bin\".\n");
    }
    EXPECT_THAT(content("font.bin"), Optional(text));
}

TEST_F(OutputFile, NeverReplacesAFontOrAPDFThatALinkLeadsTo)
{
    for (const char* name : {"font.ttf", "FONT.OTF", "font.woff2", "book.pdf"})
        folder.write(name, "old");
    struct Case {
        std::string link;
        std::string target;
    };
    for (const auto& [link, target] :
         {Case{"a.json", "font.ttf"}, Case{"b", "FONT.OTF"}, Case{"c.pdf", "font.woff2"},
          Case{"d.csv", "book.pdf"}, Case{"e", "a.json"}, Case{"f.txt", "not yet.ttc"}}) {
        SCOPED_TRACE(link);
        std::filesystem::create_symlink(target, at(link));
        const Outcome outcome = run({"installed", "-o", at(link)});
        EXPECT_EQ(outcome.exitCode, 2);
        EXPECT_EQ(outcome.errors,
                  "quillmark-cli: --output \"FOLDER/" + link +
                      "\" is a link to a font or a PDF, which are never written.\n");
    }
    for (const char* name : {"font.ttf", "FONT.OTF", "font.woff2", "book.pdf"})
        EXPECT_THAT(content(name), Optional(std::string("old")));
    EXPECT_FALSE(std::filesystem::exists(at("not yet.ttc")));
}

TEST_F(OutputFile, ThatIsALinkToAReportAsPDFIsReplacedByAnother)
{
    folder.write("report.pdf", "old");
    std::filesystem::create_symlink("report.pdf", at("latest"));
    EXPECT_EQ(run({"installed", "-f", "pdf", "-o", at("latest")}).exitCode, 0);
    EXPECT_THAT(content("report.pdf"), Optional(StartsWith("%PDF-")));
    EXPECT_TRUE(std::filesystem::is_symlink(at("latest")));
}

TEST_F(OutputFile, StaysAsItWasAfterAnInternalError)
{
    const ListingFontService broken([] { throw std::runtime_error("the list is \x1b[1mbroken"); });
    fonts = &broken;
    folder.write("report.txt", "old");
    const Outcome outcome = run({"installed", "-o", at("report.txt")});
    EXPECT_EQ(outcome.exitCode, 70);
    EXPECT_EQ(outcome.errors, "quillmark-cli: internal error: the list is \uFFFD[1mbroken\n");
    EXPECT_THAT(content("report.txt"), Optional(std::string("old")));
    EXPECT_THAT(folder.names(), ElementsAre("report.txt"));
}

class StandardOutput : public CommandLineFixture {
protected:
    StandardOutput() { addInstalled(likelyOKFont()); }

    FileDescriptor null{openFile("/dev/null", O_WRONLY)};
};

TEST_F(StandardOutput, ThatIsFullIsReported)
{
    const FileDescriptor full = openFile("/dev/full", O_WRONLY);
    EXPECT_EQ(runTo(full.get(), null.get(), {"installed"}), 4);
    EXPECT_EQ(runTo(full.get(), null.get(), {"installed", "-fjson"}), 4);
    EXPECT_EQ(runTo(full.get(), null.get(), {"--help"}), 4);
    EXPECT_EQ(runTo(full.get(), null.get(), {"--version"}), 4);
}

TEST_F(StandardOutput, ThatCannotBeWrittenWinsOverInputThatCannotBeRead)
{
    const FileDescriptor full = openFile("/dev/full", O_WRONLY);
    addFile("a.ttf", {likelyOKFont()});
    EXPECT_EQ(runTo(full.get(), null.get(), {"scan", at("a.ttf"), at("Nowhere")}), 4);
}

TEST_F(StandardOutput, WhoseReaderIsGoneEndsTheRunWithoutAWord)
{
    const auto previous = std::signal(SIGPIPE, SIG_IGN);
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe(ends.data()), 0);
    ASSERT_EQ(close(ends[0]), 0);
    const FileDescriptor writer(ends[1]);
    std::array<int, 2> errorEnds{};
    ASSERT_EQ(pipe(errorEnds.data()), 0);
    const FileDescriptor errorReader(errorEnds[0]);
    {
        const FileDescriptor errorWriter(errorEnds[1]);
        EXPECT_EQ(runTo(writer.get(), errorWriter.get(), {"installed"}), 141);
    }
    char byte = 0;
    EXPECT_EQ(read(errorReader.get(), &byte, 1), 0);
    static_cast<void>(std::signal(SIGPIPE, previous));
}

TEST_F(StandardOutput, IsWrittenWholeThroughAPipeThatDoesNotBlock)
{
    for (int i = 0; i < 2000; ++i) {
        FontValues font = likelyOKFont();
        font.postScriptName += std::to_string(i);
        addInstalled(font);
    }
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe2(ends.data(), O_NONBLOCK), 0);
    const FileDescriptor reader(ends[0]);
    const pid_t child = fork();
    if (child == 0) _exit(runTo(ends[1], null.get(), {"installed", "-fjson"}));
    close(ends[1]);
    fcntl(reader.get(), F_SETFL, 0);
    std::string text;
    std::string piece(65536, '\0');
    for (auto count = read(reader.get(), piece.data(), piece.size()); count > 0;
         count = read(reader.get(), piece.data(), piece.size()))
        text.append(piece, 0, static_cast<std::size_t>(count));
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    EXPECT_GT(text.size(), 500000U);
    EXPECT_TRUE(text.ends_with("advice.\"\n}\n"));
}

} // namespace
} // namespace quillmark::test
