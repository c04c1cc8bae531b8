// Names of inputs that come in a file.
#include "CommandLineFixture.h"

#include "cli/FileNames.h"
#include "files/FileDescriptor.h"
#include "support/SampleDocument.h"

#include <gmock/gmock.h>

#include <array>
#include <fcntl.h>
#include <unistd.h>

namespace quillmark::test {
namespace {

using testing::HasSubstr;
using testing::Optional;
using testing::StartsWith;

class FilesFrom : public CommandLineFixture {};

TEST_F(FilesFrom, AFileHasANameOnEachLine)
{
    addFile("a b.ttf", {likelyOKFont()});
    addFile("c.ttf", {unknownFont()});
    folder.write("list", at("a b.ttf") + "\n\n" + at("c.ttf"));
    const Outcome outcome = run({"scan", "--files-from", at("list")});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_THAT(outcome.output, StartsWith("2 font files\n"));
}

TEST_F(FilesFrom, NamesMayHaveLineEndsWhereANulEndsThem)
{
    addFile("a\nb.ttf", {likelyOKFont()});
    folder.write("list", at("a\nb.ttf") + '\0');
    EXPECT_EQ(run({"scan", "--files-from", at("list"), "-0"}).exitCode, 0);
    EXPECT_EQ(run({"scan", "--files-from", at("list")}).exitCode, 3);
}

TEST_F(FilesFrom, StandardInputHasNamesToo)
{
    addFile("caf\xE9.ttf", {likelyOKFont()});
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe(ends.data()), 0);
    const FileDescriptor reader(ends[0]);
    {
        const FileDescriptor writer(ends[1]);
        ASSERT_EQ(writeAll(writer.get(), at("caf\xE9.ttf") + "\n"), 0);
    }
    standardInput = reader.get();
    EXPECT_EQ(run({"scan", "--files-from", "-"}).exitCode, 0);
}

TEST_F(FilesFrom, ComeAfterThoseOnTheCommandLine)
{
    addFile("Zebra/a.ttf", {likelyOKFont()});
    addFile("Alpha/b.ttf", {unknownFont()});
    folder.write("list", at("Alpha") + "\n");
    const std::string output = run({"scan", "--files-from", at("list"), at("Zebra")}).output;
    EXPECT_THAT(output, StartsWith("Zebra\n"));
    EXPECT_THAT(output, HasSubstr("\nAlpha\n"));
}

TEST_F(FilesFrom, AreDocumentsForCheckAndFontsForShow)
{
    addInstalled(likelyOKFont());
    folder.write("list", at("d.pdf") + "\n");
    folder.write("d.pdf", sampleDocument(1, {}));
    EXPECT_THAT(run({"check", "--files-from", at("list")}).output, StartsWith("d.pdf\n"));
    folder.write("list", "Cedar Regular\n");
    EXPECT_THAT(run({"show", "--files-from", at("list")}).output, HasSubstr("Cedar Regular"));
}

TEST_F(FilesFrom, ThatCannotBeReadAreNamedAndTheOthersAreDone)
{
    addFile("a.ttf", {likelyOKFont()});
    const Outcome outcome = run({"scan", at("a.ttf"), "--files-from", at("gone")});
    EXPECT_EQ(outcome.exitCode, 3);
    EXPECT_EQ(outcome.errors, "quillmark-cli: FOLDER/gone: No such file or directory\n");
    EXPECT_THAT(outcome.output, HasSubstr("Cedar Regular"));
    EXPECT_EQ(run({"scan", "--files-from", at("")}).errors,
              "quillmark-cli: FOLDER/: Is a directory\n");
    EXPECT_EQ(run({"scan", "--files-from", "-"}).errors, "quillmark-cli: -: Bad file descriptor\n");
}

TEST_F(FilesFrom, ThatNameNothingGiveAnEmptyReport)
{
    folder.write("list", "");
    const Outcome outcome = run({"scan", "--files-from", at("list"), "--json"});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_THAT(outcome.output, HasSubstr("\"lists\": []"));
}

TEST_F(FilesFrom, AreNeverReplacedByTheOutput)
{
    folder.write("list.txt", "x\n");
    EXPECT_EQ(run({"scan", "--files-from", at("list.txt"), "-o", at("list.txt")}).exitCode, 2);
}

TEST_F(FilesFrom, TheFilesThatAreNamedAreNeverReplacedByTheOutput)
{
    addFile("font.bin", {likelyOKFont()});
    folder.write("list", at("font.bin") + "\n");
    const Outcome outcome = run({"scan", "--files-from", at("list"), "-o", at("font.bin")});
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_EQ(outcome.errors,
              "quillmark-cli: --output would replace the input \"FOLDER/font.bin\".\n");
    EXPECT_THAT(content("font.bin"), Optional(std::string("stands for a font")));
}

TEST_F(FilesFrom, AnEndlessListIsRefused)
{
    const Outcome outcome = run({"scan", "--files-from", "/dev/zero"});
    EXPECT_EQ(outcome.exitCode, 3);
    EXPECT_EQ(outcome.errors, "quillmark-cli: /dev/zero: File too large\n");
}

} // namespace
} // namespace quillmark::test
