// Which fonts are reported, and in which order.
#include "CommandLineFixture.h"
#include "support/SampleDocument.h"

#include <gmock/gmock.h>

#include <sstream>

namespace quillmark::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class Filter : public CommandLineFixture {
protected:
    Filter()
    {
        addFile("Fonts/z.ttf", {restrictedFont()});
        addFile("Fonts/y.ttf", {unknownFont()});
        addFile("Fonts/x.ttf", {likelyOKFont()});
        FontValues apple = unknownFont();
        apple.family = u"Helvetica Neue";
        apple.fullName = u"Helvetica Neue";
        apple.postScriptName = "HelveticaNeue";
        apple.copyright = u"\u00A9 2020 Apple Inc.";
        apple.manufacturer = u"Some abcd foundry";
        addFile("Fonts/w.ttf", {apple});
    }

    /// The names of the fonts in a scan with these options, in their order.
    std::vector<std::string> names(std::vector<std::string> options)
    {
        options.insert(options.begin(), {"scan", at("Fonts"), "-f", "csv"});
        const Outcome outcome = run(options);
        EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
        std::vector<std::string> names;
        std::istringstream lines(outcome.output);
        for (std::string line; std::getline(lines, line);)
            names.push_back(line.substr(0, line.find(',')));
        EXPECT_GE(names.size(), 2U);
        return {names.begin() + 1, names.end() - 1}; // without the header and the note
    }
};

TEST_F(Filter, WithoutAnyOptionKeepsEveryFontInTheLibrarysOrder)
{
    EXPECT_THAT(names({}), ElementsAre("Acme Bold", "Brook", "Cedar Regular", "Helvetica Neue"));
}

TEST_F(Filter, OfAVerdictKeepsItsFonts)
{
    EXPECT_THAT(names({"--verdict", "unknown"}), ElementsAre("Brook"));
    EXPECT_THAT(names({"--verdict", "likelyOK"}), ElementsAre("Cedar Regular"));
    EXPECT_THAT(names({"--verdict", "likelyOK,unknown"}), ElementsAre("Brook", "Cedar Regular"));
    EXPECT_THAT(names({"--verdict", "restricted"}), ElementsAre("Acme Bold", "Helvetica Neue"));
}

TEST_F(Filter, OfASourceTellsWhatCameWithTheSystemFromWhatWasAdded)
{
    EXPECT_THAT(names({"--source", "apple"}), ElementsAre("Helvetica Neue"));
    EXPECT_THAT(names({"--source", "added"}), ElementsAre("Acme Bold", "Brook", "Cedar Regular"));
    EXPECT_THAT(names({"--source", "all"}), testing::SizeIs(4));
    EXPECT_THAT(names({"--source", "apple", "--verdict", "restricted"}),
                ElementsAre("Helvetica Neue"));
    EXPECT_THAT(names({"--source", "apple", "--verdict", "unknown"}), IsEmpty());
}

TEST_F(Filter, OfASearchLooksThroughNamesAndMakersInAnyCase)
{
    EXPECT_THAT(names({"--search", "BOLD"}), ElementsAre("Acme Bold"));
    EXPECT_THAT(names({"--search", "acmeheadline-"}), ElementsAre("Acme Bold"));
    EXPECT_THAT(names({"--search", "ABCD"}), ElementsAre("Helvetica Neue"));
    EXPECT_THAT(names({"--search", " brook"}), IsEmpty()) << "taken as typed";
    EXPECT_THAT(names({"--search", ""}), testing::SizeIs(4));
}

TEST_F(Filter, OfASearchForWhatIsNoTextFindsNothing)
{
    // The byte that separates the names while they are searched.
    EXPECT_THAT(names({"--search", "\xFF"}), IsEmpty());
    EXPECT_THAT(names({"--search", "\xFF"
                                   "acmeheadline"}),
                IsEmpty());
    EXPECT_THAT(names({"--search", "acme\xE9"}), IsEmpty());
}

TEST_F(Filter, SortsByWhatIsAskedFor)
{
    EXPECT_THAT(names({"--sort", "verdict"}),
                ElementsAre("Acme Bold", "Helvetica Neue", "Brook", "Cedar Regular"));
    EXPECT_THAT(names({"--sort", "name"}),
                ElementsAre("Acme Bold", "Brook", "Cedar Regular", "Helvetica Neue"));
    EXPECT_THAT(names({"--sort", "family"}),
                ElementsAre("Acme Bold", "Brook", "Cedar Regular", "Helvetica Neue"));
    EXPECT_THAT(names({"--sort", "file"}),
                ElementsAre("Helvetica Neue", "Cedar Regular", "Brook", "Acme Bold"));
}

TEST_F(Filter, SortsNamesByTheirCharactersAndFamiliesAsPeopleDo)
{
    for (const auto& [file, name] : std::vector<std::pair<const char*, std::u16string>>{
             {"a.ttf", u"b 10"}, {"b.ttf", u"b 9"}}) {
        FontValues font = unknownFont();
        font.family = name;
        font.fullName = name;
        font.postScriptName = file;
        addFile(std::string("Fonts/n") + file, {font});
    }
    EXPECT_THAT(names({"--sort", "name", "--search", "b "}), ElementsAre("b 10", "b 9"));
    EXPECT_THAT(names({"--sort", "family", "--search", "b "}), ElementsAre("b 9", "b 10"));
}

TEST_F(Filter, SortsTheTableOfSeveralFilesAsOne)
{
    const std::string output =
        run({"scan", at("Fonts/z.ttf"), at("Fonts/x.ttf"), at("Fonts/y.ttf"), "--sort", "file"})
            .output;
    const auto cedar = output.find("\nCedar Regular ");
    const auto brook = output.find("\nBrook ");
    const auto acme = output.find("\nAcme Bold ");
    EXPECT_LT(cedar, brook);
    EXPECT_LT(brook, acme);
    EXPECT_LT(acme, output.size());
}

TEST_F(Filter, CountsInATextWhatItDoesNotShow)
{
    EXPECT_THAT(run({"scan", at("Fonts"), "--verdict", "unknown"}).output,
                HasSubstr("\n1 fonts: 0 likely OK, 0 restricted, 1 unknown (3 more not shown)\n"));
    EXPECT_THAT(run({"scan", at("Fonts"), "--search", "nothing"}).output,
                HasSubstr("\nNone of the fonts is one of those.\n"));
    EXPECT_THAT(run({"scan", at("Fonts"), at("Fonts"), "--search", "nothing"}).output,
                HasSubstr("\nIn all, 0 fonts: 0 likely OK, 0 restricted, 0 unknown "
                          "(8 more not shown)\n"));
    EXPECT_THAT(run({"scan", at("Fonts/z.ttf"), "--search", "nothing"}).output,
                HasSubstr("\nNone of the fonts is one of those.\n"));
}

TEST_F(Filter, GoesWithEveryFormatAndWithFailOn)
{
    EXPECT_EQ(
        run({"scan", at("Fonts"), "--verdict", "unknown", "--fail-on", "restricted"}).exitCode, 0)
        << "a report and its exit code are about the same fonts";
    EXPECT_EQ(run({"scan", at("Fonts"), "--fail-on", "restricted"}).exitCode, 1);
    const std::string json = run({"scan", at("Fonts"), "--json", "--verdict", "unknown"}).output;
    EXPECT_THAT(json, HasSubstr("\"family\": \"Brook\""));
    EXPECT_EQ(json.find("Cedar"), std::string::npos);
    EXPECT_THAT(json, HasSubstr("\"text\": \"1 fonts: 0 likely OK, 0 restricted, 1 unknown\""));
}

TEST_F(Filter, GoesWithInstalledFontsAndDocuments)
{
    addInstalled(likelyOKFont());
    addInstalled(unknownFont());
    const std::string installed = run({"installed", "--verdict", "likelyOK"}).output;
    EXPECT_THAT(installed, HasSubstr("Cedar Regular"));
    EXPECT_EQ(installed.find("Brook"), std::string::npos);
    const std::string document = folder.write(
        "d.pdf", sampleDocument(2, {{.name = "Willow", .pages = {1}, .program = std::nullopt},
                                    {.name = "Elm", .pages = {2}, .program = std::nullopt}}));
    const std::string checked = run({"check", document, "--search", "elm"}).output;
    EXPECT_THAT(checked, HasSubstr("  Elm\n"));
    EXPECT_EQ(checked.find("Willow"), std::string::npos);
    EXPECT_THAT(run({"check", document, "--search", "oak"}).output,
                HasSubstr("\nNone of the fonts in this PDF is one of those.\n"));
}

} // namespace
} // namespace quillmark::test
