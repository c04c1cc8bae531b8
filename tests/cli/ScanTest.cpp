#include "CommandLineFixture.h"

#include "cli/Inputs.h"

#include <gmock/gmock.h>

#include <sys/stat.h>
#include <unistd.h>

namespace quillmark::test {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class Scan : public CommandLineFixture {
protected:
    /// For root there is nothing that may not be read.
    Outcome runUnprivileged(const std::vector<std::string>& arguments)
    {
        constexpr uid_t nobody = 65534;
        const uid_t before = geteuid();
        if (before == 0) {
            chmod(folder.path().c_str(), 0755);
            EXPECT_EQ(seteuid(nobody), 0);
        }
        Outcome outcome = run(arguments);
        if (before == 0) {
            EXPECT_EQ(seteuid(before), 0);
        }
        return outcome;
    }
};

std::size_t position(const std::string& text, std::string_view what)
{
    const auto found = text.find(what);
    EXPECT_NE(found, std::string::npos) << what << " is not in:\n" << text;
    return found;
}

TEST_F(Scan, OfAFolderFindsTheFontsOfItsSubfolders)
{
    addFile("Fonts/a.ttf", {likelyOKFont()});
    addFile("Fonts/deep/er/b.otf", {unknownFont()});
    const Outcome outcome = run({"scan", at("Fonts")});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.errors, "");
    EXPECT_THAT(outcome.output, HasSubstr("Cedar Regular"));
    EXPECT_THAT(outcome.output, HasSubstr("deep/er/b.otf"));
    EXPECT_THAT(outcome.output, HasSubstr("\n2 fonts: 1 likely OK, 0 restricted, 1 unknown\n"));
}

TEST_F(Scan, OfSeveralFoldersGivesAListForEachInTheOrderGiven)
{
    addFile("Zebra/a.ttf", {likelyOKFont()});
    addFile("Alpha/b.ttf", {unknownFont()});
    const Outcome outcome = run({"scan", at("Zebra"), at("Alpha"), at("Zebra")});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_THAT(outcome.output, StartsWith("Zebra\nFOLDER/Zebra\n"));
    const auto alpha = position(outcome.output, "\nAlpha\nFOLDER/Alpha\n");
    EXPECT_LT(alpha, outcome.output.find("\nZebra\nFOLDER/Zebra\n", 10));
    EXPECT_THAT(outcome.output,
                HasSubstr("\nIn all, 3 fonts: 2 likely OK, 0 restricted, 1 unknown\n"));
}

TEST_F(Scan, NamesAMissingFolderAndScansTheOthers)
{
    addFile("Fonts/a.ttf", {likelyOKFont()});
    const Outcome outcome = run({"scan", at("Nowhere"), at("Fonts")});
    EXPECT_EQ(outcome.exitCode, 3);
    EXPECT_EQ(outcome.errors, "quillmark-cli: FOLDER/Nowhere: No such file or directory\n");
    EXPECT_THAT(outcome.output, HasSubstr("Cedar Regular"));
}

TEST_F(Scan, OfNothingThatCanBeReadPrintsNoReport)
{
    const Outcome outcome = run({"scan", at("Nowhere")});
    EXPECT_EQ(outcome.exitCode, 3);
    EXPECT_EQ(outcome.output, "");
}

TEST_F(Scan, NamesAFileThatMayNotBeOpened)
{
    const auto path = addFile("a.ttf", {likelyOKFont()});
    chmod(path.c_str(), 0);
    const Outcome outcome = runUnprivileged({"scan", path.native()});
    EXPECT_EQ(outcome.exitCode, 3);
    EXPECT_EQ(outcome.errors, "quillmark-cli: FOLDER/a.ttf: Permission denied\n");
}

TEST_F(Scan, NamesAFolderThatMayNotBeListed)
{
    addFile("Fonts/a.ttf", {likelyOKFont()});
    chmod(at("Fonts").c_str(), 0);
    const Outcome outcome = runUnprivileged({"scan", at("Fonts")});
    chmod(at("Fonts").c_str(), 0700);
    EXPECT_EQ(outcome.exitCode, 3);
    EXPECT_EQ(outcome.errors, "quillmark-cli: FOLDER/Fonts: Permission denied\n");
}

TEST_F(Scan, NamesAFileWithoutAFont)
{
    addFile("a.ttf", {});
    const Outcome outcome = run({"scan", at("a.ttf")});
    EXPECT_EQ(outcome.exitCode, 3);
    EXPECT_EQ(outcome.errors, "quillmark-cli: FOLDER/a.ttf: Holds no font that can be read\n");
    EXPECT_EQ(outcome.output, "");
}

TEST_F(Scan, DoesNotWaitForAPipe)
{
    ASSERT_EQ(mkfifo(at("pipe.ttf").c_str(), 0600), 0);
    const Outcome outcome = run({"scan", at("pipe.ttf")});
    EXPECT_EQ(outcome.exitCode, 3);
    EXPECT_EQ(outcome.errors,
              "quillmark-cli: FOLDER/pipe.ttf: Neither a folder nor a regular file\n");
}

TEST_F(Scan, OfAFolderWithoutFontsSaysSoAndIsDone)
{
    folder.write("Fonts/notes.txt", "no font");
    const Outcome outcome = run({"scan", at("Fonts")});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.output,
              "Fonts\n"
              "FOLDER/Fonts\n"
              "\n"
              "No font files were found in Fonts.\n"
              "\n"
              "0 fonts: 0 likely OK, 0 restricted, 0 unknown\n"
              "Check the license; this reads the font's own data. Not legal advice.\n");
}

TEST_F(Scan, OfAFileReadsItWhateverItsExtension)
{
    addFile("font.bin", {likelyOKFont()});
    EXPECT_EQ(run({"scan", at("font.bin")}).exitCode, 0);
}

TEST_F(Scan, OfAFileShowsEveryFace)
{
    addFile("both.ttc", {likelyOKFont(), unknownFont()});
    const Outcome outcome = run({"scan", at("both.ttc")});
    const auto unknown = position(outcome.output, "? Unknown  Brook\n");
    EXPECT_LT(unknown, position(outcome.output, "✓ Likely OK to embed  Cedar Regular\n"));
    EXPECT_THAT(outcome.output, HasSubstr("\n2 fonts: 1 likely OK, 0 restricted, 1 unknown\n"));
}

TEST_F(Scan, OfAFileListsItsFacesLikeAScanOfItsFolder)
{
    addFile("Fonts/all.ttc", {likelyOKFont(), unknownFont(), restrictedFont(), likelyOKFont()});
    const auto rowsOf = [](const std::string& json) { return json.substr(json.find("\"rows\"")); };
    const std::string file = rowsOf(run({"scan", at("Fonts/all.ttc"), "-fjson"}).output);
    EXPECT_EQ(file, rowsOf(run({"scan", at("Fonts"), "-fjson"}).output));
    EXPECT_LT(position(file, "\"family\": \"Acme\""), position(file, "\"family\": \"Brook\""));
}

TEST_F(Scan, OfFilesTakesTheLicenseFileOfEachOnesFolder)
{
    folder.write("a/OFL.txt", "SIL Open Font License, Version 1.1");
    addFile("a/one.ttf", {unknownFont()});
    addFile("a/two.ttf", {unknownFont()});
    addFile("b/three.ttf", {unknownFont()});
    const Outcome outcome =
        run({"scan", at("a/one.ttf"), at("b/three.ttf"), at("a/two.ttf"), at("a/one.ttf")});
    EXPECT_THAT(outcome.output, HasSubstr("\n4 fonts: 3 likely OK, 0 restricted, 1 unknown\n"));
}

TEST_F(Scan, OfAFileTakesTheLicenseFileBesideIt)
{
    folder.write("OFL.txt", "SIL Open Font License, Version 1.1");
    addFile("a.ttf", {unknownFont()});
    const Outcome outcome = run({"scan", at("a.ttf")});
    EXPECT_THAT(outcome.output, StartsWith("a.ttf\nFOLDER/a.ttf\n\n✓ Likely OK to embed  Brook\n"));
    EXPECT_THAT(outcome.output, HasSubstr("    License file     OFL.txt\n"));
}

TEST_F(Scan, OfAFileWithItsOwnLicenseIgnoresTheOneBesideIt)
{
    folder.write("OFL.txt", "SIL Open Font License, Version 1.1");
    addFile("a.ttf", {restrictedFont()});
    EXPECT_THAT(run({"scan", at("a.ttf")}).output, Not(HasSubstr("OFL.txt")));
}

TEST_F(Scan, OfSeveralFilesGivesOneTableOfThem)
{
    addFile("a.ttf", {likelyOKFont()});
    addFile("b.ttf", {unknownFont()});
    const Outcome outcome = run({"scan", at("a.ttf"), at("b.ttf")});
    EXPECT_EQ(outcome.output,
              "2 font files\n"
              "\n"
              "Font           Verdict      License in the font    Embedding bits                  "
              "       Source\n"
              "Brook          ? Unknown    No license text        Installable (no restriction bits "
              "set)  FOLDER/b.ttf\n"
              "Cedar Regular  ✓ Likely OK  SIL Open Font License  Installable (no restriction bits "
              "set)  FOLDER/a.ttf\n"
              "\n"
              "2 fonts: 1 likely OK, 0 restricted, 1 unknown\n"
              "Check the license; this reads the font's own data. Not legal advice.\n");
}

TEST_F(Scan, KeepsFilesAndFoldersInTheOrderGiven)
{
    addFile("a.ttf", {likelyOKFont()});
    addFile("Fonts/b.ttf", {unknownFont()});
    const Outcome outcome = run({"scan", at("a.ttf"), at("Fonts"), at("a.ttf"), at("a.ttf")});
    EXPECT_THAT(outcome.output, StartsWith("a.ttf\n"));
    const auto table = position(outcome.output, "\nFonts\nFOLDER/Fonts\n");
    EXPECT_LT(table, position(outcome.output, "\n2 font files\n"));
    EXPECT_THAT(outcome.output, HasSubstr("\nIn all, 4 fonts: 3 likely OK"));
}

TEST_F(Scan, TakesANameThatIsNotUtf8)
{
    addFile("caf\xE9/a.ttf", {likelyOKFont()});
    const Outcome outcome = run({"scan", at("caf\xE9")});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_THAT(outcome.output, StartsWith("caf\uFFFD\nFOLDER/caf\uFFFD\n"));
}

TEST(ShownName, IsTheLastComponent)
{
    EXPECT_EQ(cli::shownName("/a/b"), "b");
    EXPECT_EQ(cli::shownName("/"), "/");
}

} // namespace
} // namespace quillmark::test
