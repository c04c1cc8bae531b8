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
        .filesFrom = "list",
        .nullSeparated = true,
        .fontFolders = {"Fonts", "More"},
        .matchInstalled = false,
        .verdicts = {Verdict::unknown, Verdict::restricted},
        .search = "Lato",
        .sort = SortKey::family,
        .format = Format::csv,
        .output = "out.txt",
        .notes = "mine.json",
        .failOn = Verdict::unknown,
        .color = Color::never,
        .quiet = true,
        .verbose = true,
    };
    EXPECT_EQ(understood({"check",
                          "a.pdf",
                          "b.pdf",
                          "--files-from",
                          "list",
                          "--null",
                          "--fonts",
                          "Fonts",
                          "--fonts",
                          "More",
                          "--no-installed",
                          "--verdict",
                          "unknown,restricted",
                          "--search",
                          "Lato",
                          "--sort",
                          "family",
                          "--format",
                          "csv",
                          "--output",
                          "out.txt",
                          "--notes",
                          "mine.json",
                          "--fail-on",
                          "unknown",
                          "--color",
                          "never",
                          "--quiet",
                          "--verbose"}),
              expected);
    EXPECT_EQ(understood({"check", "a.pdf", "b.pdf", "--files-from=list", "-0", "--fonts=Fonts",
                          "--fonts=More", "--no-installed", "--verdict=unknown,restricted",
                          "--search=Lato", "--sort=family", "-fcsv", "-oout.txt",
                          "--notes=mine.json", "--fail-on=unknown", "--color=never", "-qv"}),
              expected);
    Options plain;
    plain.command = Command::scan;
    plain.inputs = {"Fonts"};
    plain.source = Source::added;
    plain.format = Format::json;
    plain.withNotes = false;
    EXPECT_EQ(understood({"scan", "Fonts", "--source", "added", "--json", "--no-notes"}), plain);
}

TEST(Options, EveryValueIsUnderstood)
{
    EXPECT_EQ(understood({"installed", "-f", "text"}).format, Format::text);
    EXPECT_EQ(understood({"installed", "-f", "json"}).format, Format::json);
    EXPECT_EQ(understood({"installed", "-f", "jsonl"}).format, Format::jsonl);
    EXPECT_EQ(understood({"installed", "-f", "csv"}).format, Format::csv);
    EXPECT_EQ(understood({"installed", "-f", "pdf"}).format, Format::pdf);
    EXPECT_EQ(understood({"installed", "-f", "csv", "--notes", "n.json"}).notes, "n.json");
    EXPECT_EQ(understood({"installed", "-f", "pdf", "--notes=n.json"}).notes, "n.json");
    EXPECT_EQ(understood({"installed", "--fail-on", "restricted"}).failOn, Verdict::restricted);
    EXPECT_EQ(understood({"installed", "--fail-on", "unknown"}).failOn, Verdict::unknown);
    EXPECT_EQ(understood({"installed", "--fail-on", "never"}).failOn, std::nullopt);
    EXPECT_EQ(understood({"installed", "--verdict", "likelyOK"}).verdicts,
              std::vector{Verdict::likelyOK});
    EXPECT_EQ(understood({"installed", "--source", "all"}).source, Source::all);
    EXPECT_EQ(understood({"installed", "--source", "apple"}).source, Source::apple);
    EXPECT_EQ(understood({"installed", "--sort", "verdict"}).sort, SortKey::verdict);
    EXPECT_EQ(understood({"installed", "--sort", "name"}).sort, SortKey::name);
    EXPECT_EQ(understood({"installed", "--sort", "file"}).sort, SortKey::file);
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

TEST(Options, CommandsTakeTheirOwnWords)
{
    EXPECT_EQ(understood({"notes"}).noteAction, NoteAction::list);
    EXPECT_EQ(understood({"notes", "list"}).noteAction, NoteAction::list);
    const Options shown = understood({"notes", "show", "Lato-Regular", "list"});
    EXPECT_EQ(shown.noteAction, NoteAction::show);
    EXPECT_EQ(shown.inputs, (std::vector<std::filesystem::path>{"Lato-Regular", "list"}));
    EXPECT_EQ(understood({"completion", "bash"}).shell, Shell::bash);
    EXPECT_EQ(understood({"completion", "zsh"}).shell, Shell::zsh);
    EXPECT_EQ(understood({"completion", "fish"}).shell, Shell::fish);
    EXPECT_EQ(understood({"explain"}).command, Command::explain);
    EXPECT_EQ(understood({"show", "Lato"}).inputs, std::vector<std::filesystem::path>{"Lato"});
}

TEST(Options, InputsMayComeFromAFileAlone)
{
    EXPECT_EQ(understood({"scan", "--files-from", "-"}).filesFrom, "-");
    EXPECT_EQ(understood({"check", "--files-from", "list"}).filesFrom, "list");
    EXPECT_EQ(understood({"show", "--files-from", "list"}).filesFrom, "list");
}

TEST(Options, TheSuffixOfTheOutputChoosesTheFormatWhereNoneIsGiven)
{
    const auto format = [](const std::string& output) {
        return understood({"installed", "-o", output}).format;
    };
    EXPECT_EQ(format("a.csv"), Format::csv);
    EXPECT_EQ(format("a.json"), Format::json);
    EXPECT_EQ(format("a.jsonl"), Format::jsonl);
    EXPECT_EQ(format("dir.csv/a.PDF"), Format::pdf);
    EXPECT_EQ(format("a.txt"), Format::text);
    EXPECT_EQ(format("a.md"), Format::text);
    EXPECT_EQ(format("csv"), Format::text);
    EXPECT_EQ(understood({"installed", "-o", "a.csv", "-f", "text"}).format, Format::text);
}

TEST(Options, JsonIsAFormatLikeAnother)
{
    EXPECT_EQ(understood({"installed", "--json", "-f", "csv"}).format, Format::csv);
    EXPECT_EQ(understood({"installed", "-f", "csv", "--json"}).format, Format::json);
    EXPECT_EQ(understood({"scan", "--", "--json"}).inputs,
              std::vector<std::filesystem::path>{"--json"});
}

TEST(Options, NotesGoWithWhateverPrintsThem)
{
    for (const Words& arguments : std::vector<Words>{{"installed", "-f", "csv"},
                                                     {"scan", "x", "-f", "pdf"},
                                                     {"check", "x", "-v"},
                                                     {"show", "x"},
                                                     {"show", "x", "--json"},
                                                     {"notes"}}) {
        Words named = arguments;
        named.insert(named.end(), {"--notes", "n.json"});
        EXPECT_EQ(understood(named).notes, "n.json");
        EXPECT_TRUE(understood(arguments).printsNotes());
    }
    EXPECT_FALSE(understood({"show", "x", "--no-notes"}).printsNotes());
    EXPECT_FALSE(understood({"installed", "--json"}).printsNotes());
    EXPECT_FALSE(understood({"installed", "-f", "csv", "--no-notes"}).printsNotes());
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
        {"NoCommand",
         {},
         "name a command: installed, scan, check, show, notes, explain or completion; see "
         "quillmark-cli --help."},
        {"OnlyOptions",
         {"-q"},
         "name a command: installed, scan, check, show, notes, explain or completion; see "
         "quillmark-cli --help."},
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
         R"(--format is text, json, jsonl, csv or pdf, not "xml".)"},
        {"FormatInCapitals",
         {"installed", "-f", "JSON"},
         R"(--format is text, json, jsonl, csv or pdf, not "JSON".)"},
        {"EmptyFormat",
         {"installed", "-f", ""},
         R"(--format is text, json, jsonl, csv or pdf, not "".)"},
        {"FailOnLikelyOK",
         {"installed", "--fail-on", "likelyOK"},
         R"(--fail-on is never, restricted or unknown, not "likelyOK".)"},
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
         R"(installed takes no names, but "Fonts" was given.)"},
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
         {"check", "-f", "text", "-o", "a.pdf", "b.pdf"},
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
         "--notes goes with --format csv or pdf, --verbose, show and notes only."},
        {"NotesWithJson",
         {"installed", "-f", "json", "--notes", "notes.json"},
         "--notes goes with --format csv or pdf, --verbose, show and notes only."},
        {"NotesWithNoNotes",
         {"show", "x", "--notes", "n", "--no-notes"},
         "--notes does not go with --no-notes."},
        {"SourceWithCheck",
         {"check", "a.pdf", "--source", "added"},
         "--source goes with installed and scan only."},
        {"FilterWithShow",
         {"show", "x", "--verdict", "unknown"},
         "--verdict goes with installed, scan and check only."},
        {"NoNotesWithNotes",
         {"notes", "--no-notes"},
         "--no-notes goes with installed, scan, check and show only."},
        {"FilesFromWithInstalled",
         {"installed", "--files-from", "x"},
         "--files-from goes with scan, check and show only."},
        {"NullWithoutFilesFrom", {"scan", "x", "-0"}, "--null goes with --files-from only."},
        {"EmptyFilesFrom", {"scan", "--files-from", ""}, "the name of a file or folder is empty."},
        {"VerdictNotOffered",
         {"installed", "--verdict", "restricted,fine"},
         R"(--verdict is restricted, unknown or likelyOK, not "fine".)"},
        {"VerdictListWithAnEmptyItem",
         {"installed", "--verdict", "restricted,"},
         R"(--verdict is restricted, unknown or likelyOK, not "".)"},
        {"SourceNotOffered",
         {"installed", "--source", "mine"},
         R"(--source is all, added or apple, not "mine".)"},
        {"SortNotOffered",
         {"installed", "--sort", "size"},
         R"(--sort is verdict, name, family or file, not "size".)"},
        {"JsonWithValue", {"installed", "--json=yes"}, "--json takes no value."},
        {"ShowOfNothing", {"show"}, "show needs the name of a font, or a font file."},
        {"NotesToDoNothing", {"notes", "edit"}, R"(what notes do is list or show, not "edit".)"},
        {"NotesListOfAFont",
         {"notes", "list", "Lato"},
         R"(notes list takes no names, but "Lato" was given.)"},
        {"NotesShowOfNothing",
         {"notes", "show"},
         "notes show needs the PostScript name of a font."},
        {"NotesAsCsv", {"notes", "-f", "csv"}, "notes come as text or json only."},
        {"NotesToACsvFile", {"notes", "-o", "a.csv"}, "notes come as text or json only."},
        {"ExplainOfSomething",
         {"explain", "Lato"},
         R"(explain takes no names, but "Lato" was given.)"},
        {"CompletionOfNothing", {"completion"}, "completion needs one shell: bash, zsh or fish."},
        {"CompletionOfAnotherShell",
         {"completion", "ksh"},
         R"(a shell is bash, zsh or fish, not "ksh".)"},
        {"OutputOverAFontInCapitals",
         {"scan", "-o", "A.TTF", "x"},
         R"(--output "A.TTF" has the name of a font or a PDF, which are never written.)"},
    }),
    [](const auto& test) { return test.param.description; });

TEST(Options, HelpIsGivenForEveryCommandAndWhateverElseIsThere)
{
    const std::variant<Options, Information, WrongUse> help = Information{helpText()};
    for (const Words& arguments : std::vector<Words>{
             {"-h"}, {"--help"}, {"-h", "--bogus"}, {"-h", "-f", "xml"}, {"bogus", "-h"}}) {
        EXPECT_EQ(parse(arguments), help) << testing::PrintToString(arguments);
    }
    const std::variant<Options, Information, WrongUse> helpOfScan =
        Information{helpText(Command::scan)};
    EXPECT_EQ(parse(Words{"scan", "--help"}), helpOfScan);
    EXPECT_EQ(parse(Words{"-h", "scan", "-f", "xml"}), helpOfScan);
    const std::variant<Options, Information, WrongUse> all = Information{helpOfEverything()};
    EXPECT_EQ(parse(Words{"--help-all"}), all);
    EXPECT_EQ(parse(Words{"scan", "--help-all", "-h"}), all);
}

std::string usageLine(const Words& arguments)
{
    return std::get<WrongUse>(parse(arguments)).usage;
}

TEST(Options, WrongUseComesWithTheUsageOfTheCommand)
{
    EXPECT_EQ(usageLine({}), "Usage: quillmark-cli COMMAND [OPTIONS]");
    EXPECT_EQ(usageLine({"scna"}), "Usage: quillmark-cli COMMAND [OPTIONS]");
    EXPECT_EQ(usageLine({"scan"}), "Usage: quillmark-cli scan FOLDER|FILE... [OPTIONS]");
    EXPECT_EQ(usageLine({"--bogus", "check", "x"}), "Usage: quillmark-cli check PDF... [OPTIONS]");
    EXPECT_EQ(usageLine({"installed", "x"}), "Usage: quillmark-cli installed [OPTIONS]");
}

TEST(Options, VersionIsOneLineWithNameAndNumber)
{
    const auto parsed = parse(Words{"--version"});
    ASSERT_TRUE(std::holds_alternative<Information>(parsed));
    EXPECT_EQ(std::get<Information>(parsed).text, "quillmark-cli " + std::string(version()) + "\n");
}

} // namespace
} // namespace quillmark::cli
