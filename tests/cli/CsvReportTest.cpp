#include "CommandLineFixture.h"

#include <gmock/gmock.h>

#include <sstream>

namespace quillmark::test {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr std::string_view cedarsNote = R"({"notes": {"Cedar-Regular": {
    "boughtFrom": "Tree Types", "license": "ebook", "text": "Order 17", "updated":
    "2026-03-14T09:26:53Z", "url": "https://example.com/order/17"}}})";

std::vector<std::string> lines(const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

class CsvReport : public CommandLineFixture {};

TEST_F(CsvReport, HasAHeaderARowForEachFontAndTheDisclaimer)
{
    addFile("Fonts/acme.ttf", {restrictedFont()});
    addFile("Fonts/cedar.ttf", {likelyOKFont()});
    const Outcome outcome = run({"scan", at("Fonts"), "-f", "csv"});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.errors, "");
    EXPECT_THAT(
        lines(outcome.output),
        ElementsAre(
            AllOf(StartsWith("Font,PostScript name,Family,Style,Verdict,"), EndsWith("\r")),
            AllOf(StartsWith("Acme Bold,AcmeHeadline-Bold,Acme,Bold,Restricted,"), EndsWith("\r")),
            AllOf(StartsWith("Cedar Regular,Cedar-Regular,Cedar,Regular,Likely OK to embed,"),
                  EndsWith("\r")),
            "Note,Check the license; this reads the font's own data. Not legal advice.\r"));
}

TEST_F(CsvReport, PutsSeveralListsUnderOneHeaderInTheOrderGiven)
{
    addFile("Second/acme.ttf", {restrictedFont()});
    addFile("First/cedar.ttf", {likelyOKFont()});
    const Outcome outcome = run({"scan", at("First"), at("Second"), "-fcsv"});
    EXPECT_THAT(lines(outcome.output),
                ElementsAre(StartsWith("Font,"), StartsWith("Cedar Regular,"),
                            StartsWith("Acme Bold,"), StartsWith("Note,")));
}

TEST_F(CsvReport, OfNothingThatCanBeReadHasNoRows)
{
    const Outcome outcome = run({"scan", at("Nowhere"), "-fcsv"});
    EXPECT_EQ(outcome.exitCode, 3);
    EXPECT_THAT(lines(outcome.output), ElementsAre(StartsWith("Font,"), StartsWith("Note,")));
}

TEST_F(CsvReport, GoesIntoAFile)
{
    addFile("Fonts/cedar.ttf", {likelyOKFont()});
    const Outcome outcome = run({"scan", at("Fonts"), "-fcsv", "-o", at("fonts.csv")});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(content("fonts.csv"), run({"scan", at("Fonts"), "-fcsv"}).output);
}

TEST_F(CsvReport, IsJudgedByFailOn)
{
    addFile("Fonts/acme.ttf", {restrictedFont()});
    EXPECT_EQ(run({"scan", at("Fonts"), "-fcsv", "--fail-on", "restricted"}).exitCode, 1);
    addFile("More/cedar.ttf", {likelyOKFont()});
    EXPECT_EQ(run({"scan", at("More"), "-fcsv", "--fail-on", "unknown"}).exitCode, 0);
}

TEST_F(CsvReport, CannotControlTheTerminalItIsShownOn)
{
    FontValues font = likelyOKFont();
    font.fullName = u"A\x1b[31m\u202E";
    font.copyright = u"One\nTwo\rThree";
    addFile("Fonts/a.ttf", {font});
    outputColumns = 80;
    const std::string shown = run({"scan", at("Fonts"), "-fcsv"}).output;
    EXPECT_THAT(shown, HasSubstr("\r\nA\uFFFD[31m\uFFFD,"));
    EXPECT_THAT(shown, HasSubstr("\"One\nTwo\uFFFDThree\""));
    outputColumns.reset();
    const std::string written = run({"scan", at("Fonts"), "-fcsv"}).output;
    EXPECT_THAT(written, HasSubstr("\r\nA\x1b[31m\u202E,"));
    EXPECT_THAT(written, HasSubstr("\"One\nTwo\rThree\""));
}

class PrintedNotes : public CommandLineFixture {
protected:
    PrintedNotes() { addFile("Fonts/cedar.ttf", {likelyOKFont()}); }

    [[nodiscard]] Outcome scan(const std::vector<std::string>& options)
    {
        std::vector<std::string> arguments{"scan", at("Fonts"), "-fcsv"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return run(arguments);
    }
};

TEST_F(PrintedNotes, AreThoseOfTheNamedFile)
{
    folder.write("mine.json", cedarsNote);
    const Outcome outcome = scan({"--notes", at("mine.json")});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_THAT(outcome.output,
                HasSubstr(",Ebook / ePub,Tree Types,https://example.com/order/17,,Order 17\r\n"));
}

TEST_F(PrintedNotes, AreTheApplicationsOwnOtherwise)
{
    applicationNotes = folder.write("notes.json", cedarsNote);
    EXPECT_THAT(scan({}).output, HasSubstr(",Tree Types,"));
    folder.write("empty.json", R"({"notes": {}})");
    EXPECT_THAT(scan({"--notes", at("empty.json")}).output, Not(HasSubstr("Tree Types")));
}

TEST_F(PrintedNotes, MayBeMissingWhereTheApplicationKeepsThem)
{
    applicationNotes = at("never/notes.json");
    const Outcome outcome = scan({});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.errors, "");
}

TEST_F(PrintedNotes, HaveToBeThereWhenAskedFor)
{
    const Outcome outcome = scan({"--notes", at("never.json")});
    EXPECT_EQ(outcome.exitCode, 3);
    EXPECT_EQ(outcome.errors,
              "quillmark-cli: FOLDER/never.json could not be read: No such file or directory.\n");
    EXPECT_THAT(outcome.output, HasSubstr("Cedar Regular,")); // everything else is there
}

TEST_F(PrintedNotes, ThatCannotBeUnderstoodAreNeverPassedOverSilently)
{
    applicationNotes = folder.write("notes.json", "{\"notes\": 1}");
    const Outcome outcome = scan({});
    EXPECT_EQ(outcome.exitCode, 3);
    EXPECT_EQ(outcome.errors,
              "quillmark-cli: FOLDER/notes.json could not be read as license notes: "
              "it has no \"notes\".\n");
    EXPECT_THAT(outcome.output, HasSubstr("Cedar Regular,"));
}

TEST_F(PrintedNotes, AreNotReadForAnotherFormat)
{
    applicationNotes = folder.write("notes.json", "{\"notes\": 1}");
    EXPECT_EQ(run({"scan", at("Fonts")}).exitCode, 0);
}

TEST_F(PrintedNotes, AreNeverReplacedByTheOutput)
{
    folder.write("mine.json", cedarsNote);
    const Outcome outcome = scan({"--notes", at("mine.json"), "-o", at("mine.json")});
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_EQ(outcome.errors,
              "quillmark-cli: --output would replace the input \"FOLDER/mine.json\".\n");
    EXPECT_EQ(content("mine.json"), cedarsNote);
}

TEST_F(PrintedNotes, OfTheApplicationAreNeverReplacedByTheOutput)
{
    applicationNotes = folder.write("notes.json", cedarsNote);
    EXPECT_EQ(run({"scan", at("Fonts"), "-o", at("notes.json")}).exitCode, 2);
    EXPECT_EQ(content("notes.json"), cedarsNote);
}

} // namespace
} // namespace quillmark::test
