#include "cli/Options.h"

#include "cli/Help.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace quillmark::cli {
namespace {

using Words = std::vector<std::string>;

Options understood(const Words& arguments)
{
    const auto parsed = parse(arguments);
    const auto* options = std::get_if<Options>(&parsed);
    if (options != nullptr) return *options;
    const auto* wrongUse = std::get_if<WrongUse>(&parsed);
    ADD_FAILURE() << (wrongUse != nullptr ? wrongUse->sentence : "gives information");
    return {};
}

std::string sentence(const Words& arguments)
{
    const auto parsed = parse(arguments);
    const auto* wrongUse = std::get_if<WrongUse>(&parsed);
    return wrongUse != nullptr ? wrongUse->sentence : "understood";
}

TEST(Options, TextOfInstalledFontsToStandardOutputIsTheDefault)
{
    EXPECT_EQ(understood({"installed"}), Options{});
}

TEST(Options, EveryOptionIsUnderstood)
{
    const Options expected{
        .command = Command::check,
        .inputs = {"a.pdf", "b.pdf"},
        .fontFolders = {"Fonts", "More"},
        .matchInstalled = false,
        .format = Format::csv,
        .output = "out.csv",
        .notes = "mine.json",
        .failOn = Verdict::unknown,
        .color = Color::never,
        .quiet = true,
    };
    EXPECT_EQ(understood({"check", "a.pdf", "b.pdf", "--fonts", "Fonts", "--fonts", "More",
                          "--no-installed", "--format", "csv", "--output", "out.csv", "--notes",
                          "mine.json", "--fail-on", "unknown", "--color", "never", "--quiet"}),
              expected);
    EXPECT_EQ(understood({"check", "a.pdf", "b.pdf", "--fonts=Fonts", "--fonts=More",
                          "--no-installed", "-fcsv", "-oout.csv", "--notes=mine.json",
                          "--fail-on=unknown", "--color=never", "-q"}),
              expected);
}

TEST(Options, EveryValueIsUnderstood)
{
    EXPECT_EQ(understood({"installed", "-f", "text"}).format, Format::text);
    EXPECT_EQ(understood({"installed", "-f", "json"}).format, Format::json);
    EXPECT_EQ(understood({"installed", "-f", "csv"}).format, Format::csv);
    EXPECT_EQ(understood({"installed", "-f", "pdf"}).format, Format::pdf);
    EXPECT_EQ(understood({"installed", "-f", "csv", "--notes", "n.json"}).notes, "n.json");
    EXPECT_EQ(understood({"installed", "-f", "pdf", "--notes=n.json"}).notes, "n.json");
    EXPECT_EQ(understood({"installed", "--fail-on", "restricted"}).failOn, Verdict::restricted);
    EXPECT_EQ(understood({"installed", "--fail-on", "unknown"}).failOn, Verdict::unknown);
    EXPECT_EQ(understood({"installed", "--color", "auto"}).color, Color::automatic);
    EXPECT_EQ(understood({"installed", "--color", "always"}).color, Color::always);
    EXPECT_EQ(understood({"installed", "--color", "never"}).color, Color::never);
}

TEST(Options, StandBeforeBetweenAndAfterTheOtherArguments)
{
    const Options options = understood({"-q", "check", "--fonts", "Fonts", "a.pdf", "-f", "json"});
    EXPECT_EQ(options.inputs, std::vector<std::filesystem::path>{"a.pdf"});
    EXPECT_EQ(options.fontFolders, std::vector<std::filesystem::path>{"Fonts"});
    EXPECT_EQ(options.format, Format::json);
    EXPECT_TRUE(options.quiet);
}

TEST(Options, FontsTakesOneFolderEachTime)
{
    const Options options = understood({"check", "--fonts", "Fonts", "a.pdf", "b.pdf"});
    EXPECT_EQ(options.fontFolders.size(), 1U);
    EXPECT_EQ(options.inputs.size(), 2U);
}

TEST(Options, TheLastOfAnOptionGivenTwiceCounts)
{
    const Options options =
        understood({"installed", "-f", "json", "--format", "text", "-q", "-q", "--color", "always",
                    "--color", "never", "--fail-on", "unknown", "--fail-on", "restricted"});
    EXPECT_EQ(options.format, Format::text);
    EXPECT_EQ(options.color, Color::never);
    EXPECT_EQ(options.failOn, Verdict::restricted);
    EXPECT_TRUE(options.quiet);
}

TEST(Options, NothingAfterTwoDashesIsAnOption)
{
    const Options options = understood({"scan", "--", "-f", "--output", "--"});
    EXPECT_EQ(options.inputs, (std::vector<std::filesystem::path>{"-f", "--output", "--"}));
    EXPECT_EQ(options.format, Format::text);
}

TEST(Options, ADashAsOutputIsStandardOutput)
{
    EXPECT_EQ(understood({"installed", "-o", "-"}).output, std::nullopt);
}

TEST(Options, AReportAsPdfMayHaveTheNameOfAPdf)
{
    EXPECT_EQ(understood({"installed", "-f", "pdf", "-o", "audit.PDF"}).output, "audit.PDF");
}

struct NameCase {
    const char* description;
    std::string name;
};

class InputNames : public testing::TestWithParam<NameCase> {};

TEST_P(InputNames, AreTakenAsTheyStand)
{
    const Options options = understood({"scan", GetParam().name, "other"});
    EXPECT_EQ(options.inputs, (std::vector<std::filesystem::path>{GetParam().name, "other"}));
    EXPECT_EQ(understood({"check", "a.pdf", "--fonts", GetParam().name}).fontFolders,
              (std::vector<std::filesystem::path>{GetParam().name}));
}

INSTANTIATE_TEST_SUITE_P(Options, InputNames,
                         testing::ValuesIn(std::vector<NameCase>{
                             {"Brackets", "[a,b]"},
                             {"OneDash", "-"},
                             {"Command", "check"},
                             {"Spaces", " a b "},
                             {"Quotes", "\"a\""},
                             {"Braces", "{a}"},
                             {"EqualSign", "a=b"},
                             {"NotUtf8", "caf\xE9"},
                             {"Newline", "a\nb"},
                             {"Percent", "%%"},
                             {"PlusPlus", "++"},
                         }),
                         [](const auto& test) { return test.param.description; });

struct WrongUseCase {
    const char* description;
    Words arguments;
    std::string sentence;
};

class WrongUseOfTheCommandLine : public testing::TestWithParam<WrongUseCase> {};

TEST_P(WrongUseOfTheCommandLine, IsToldInOneSentence)
{
    EXPECT_EQ(sentence(GetParam().arguments), GetParam().sentence);
}

INSTANTIATE_TEST_SUITE_P(
    Options, WrongUseOfTheCommandLine,
    testing::ValuesIn(std::vector<WrongUseCase>{
        {"NoCommand", {}, "name a command: installed, scan or check; see quillmark-cli --help."},
        {"OnlyOptions",
         {"-q"},
         "name a command: installed, scan or check; see quillmark-cli --help."},
        {"MisspeltCommand", {"chekc"}, R"(there is no command "chekc"; did you mean "check"?)"},
        {"UnknownCommand",
         {"frobnicate"},
         R"(there is no command "frobnicate"; see quillmark-cli --help.)"},
        {"EmptyCommand", {""}, R"(there is no command ""; see quillmark-cli --help.)"},
        {"MisspeltOption",
         {"installed", "--ouput", "x"},
         R"(there is no option "--ouput"; did you mean "--output"?)"},
        {"MisspeltOptionWithValue",
         {"installed", "--formt=json"},
         R"(there is no option "--formt"; did you mean "--format"?)"},
        {"UnknownShortOption",
         {"installed", "-x"},
         R"(there is no option "-x"; see quillmark-cli --help.)"},
        {"UnknownShortOptionInACluster",
         {"installed", "-qx"},
         R"(there is no option "-x"; see quillmark-cli --help.)"},
        {"NumberLikeOption",
         {"scan", "-5"},
         R"(there is no option "-5"; see quillmark-cli --help.)"},
        {"FormatNotOffered",
         {"installed", "-f", "xml"},
         R"(--format is text, json, csv or pdf, not "xml".)"},
        {"FormatInCapitals",
         {"installed", "-f", "JSON"},
         R"(--format is text, json, csv or pdf, not "JSON".)"},
        {"EmptyFormat", {"installed", "-f", ""}, R"(--format is text, json, csv or pdf, not "".)"},
        {"FailOnLikelyOK",
         {"installed", "--fail-on", "likelyOK"},
         R"(--fail-on is restricted or unknown, not "likelyOK".)"},
        {"ColorNotOffered",
         {"installed", "--color", "red"},
         R"(--color is auto, always or never, not "red".)"},
        {"FormatWithoutValue", {"installed", "-f"}, "--format needs a value."},
        {"OutputWithoutValue", {"installed", "--output"}, "--output needs a value."},
        {"FontsWithoutValue", {"check", "a.pdf", "--fonts"}, "--fonts needs a value."},
        {"OutputWithNothingAfterTheEqualSign",
         {"check", "--output=", "a.pdf", "b.pdf"},
         "--output needs a value."},
        {"EmptyOutput", {"check", "-o", "", "a.pdf"}, "--output needs a value."},
        {"FlagWithValue", {"installed", "--quiet=no"}, "--quiet takes no value."},
        {"FlagWithEmptyValue", {"installed", "--quiet="}, "--quiet takes no value."},
        {"HelpWithValue", {"--help=scan"}, "--help takes no value."},
        {"VersionWithValue", {"--version=1"}, "--version takes no value."},
        {"NoInstalledWithValue",
         {"check", "--no-installed=false", "a.pdf"},
         "--no-installed takes no value."},
        {"ShortFlagWithValue",
         {"installed", "-q=no"},
         R"(there is no option "-=no"; see quillmark-cli --help.)"},
        {"UnknownOptionWithEmptyValue", {"installed", "--x="}, "--x needs a value."},
        {"InstalledWithAFolder",
         {"installed", "Fonts"},
         R"(installed takes no files or folders, but "Fonts" was given.)"},
        {"ScanOfNothing", {"scan"}, "scan needs a folder or a font file."},
        {"CheckOfNothing", {"check", "--fonts", "Fonts"}, "check needs a PDF."},
        {"EmptyInput", {"scan", ""}, "the name of a file or folder is empty."},
        {"EmptyFontFolder",
         {"check", "a.pdf", "--fonts", ""},
         "the name of a file or folder is empty."},
        {"FontsWithScan", {"scan", "x", "--fonts", "y"}, "--fonts goes with check only."},
        {"NoInstalledWithInstalled",
         {"installed", "--no-installed"},
         "--no-installed goes with check only."},
        {"OutputOverAPdf",
         {"check", "-o", "a.pdf", "b.pdf"},
         R"(--output "a.pdf" has the name of a font or a PDF, which are never written, but for a report with --format pdf.)"},
        {"PdfOverAFont",
         {"scan", "-f", "pdf", "-o", "a.otf", "x"},
         R"(--output "a.otf" has the name of a font or a PDF, which are never written.)"},
        {"CsvOverAPdf",
         {"scan", "-f", "csv", "-o", "A.PDF", "x"},
         R"(--output "A.PDF" has the name of a font or a PDF, which are never written, but for a report with --format pdf.)"},
        {"NotesWithoutValue", {"installed", "-f", "csv", "--notes"}, "--notes needs a value."},
        {"EmptyNotes", {"installed", "-f", "csv", "--notes", ""}, "--notes needs a value."},
        {"NotesWithText",
         {"installed", "--notes", "notes.json"},
         "--notes goes with --format csv or pdf only."},
        {"NotesWithJson",
         {"installed", "-f", "json", "--notes", "notes.json"},
         "--notes goes with --format csv or pdf only."},
        {"OutputOverAFontInCapitals",
         {"scan", "-o", "A.TTF", "x"},
         R"(--output "A.TTF" has the name of a font or a PDF, which are never written.)"},
    }),
    [](const auto& test) { return test.param.description; });

TEST(Options, HelpIsGivenForEveryCommandAndWhateverElseIsThere)
{
    const std::variant<Options, Information, WrongUse> help = Information{helpText()};
    for (const Words& arguments : std::vector<Words>{{"-h"},
                                                     {"--help"},
                                                     {"scan", "--help"},
                                                     {"-h", "--bogus"},
                                                     {"check", "-h", "-f", "xml"}}) {
        EXPECT_EQ(parse(arguments), help) << testing::PrintToString(arguments);
    }
}

TEST(Options, VersionIsOneLineWithNameAndNumber)
{
    const auto parsed = parse(Words{"--version"});
    ASSERT_TRUE(std::holds_alternative<Information>(parsed));
    EXPECT_EQ(std::get<Information>(parsed).text, "quillmark-cli " + std::string(version()) + "\n");
}

} // namespace
} // namespace quillmark::cli
