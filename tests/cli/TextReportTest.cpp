// What the text report looks like on a terminal, and what can never get into it.
#include "CommandLineFixture.h"

#include "text/DisplayWidth.h"

#include <gmock/gmock.h>

#include <sstream>
#include <string_view>

namespace quillmark::test {
namespace {

using testing::HasSubstr;
using testing::Not;

class TextReport : public CommandLineFixture {
protected:
    void addThreeFonts()
    {
        addFile("Fonts/acme.ttf", {restrictedFont()});
        addFile("Fonts/brook.ttf", {unknownFont()});
        addFile("Fonts/sub/cedar.ttf", {likelyOKFont()});
    }
};

TEST_F(TextReport, IsTheApplicationsTableWithTheDisclaimerBelow)
{
    addThreeFonts();
    EXPECT_EQ(run({"scan", at("Fonts")}).output,
              "Fonts\n"
              "FOLDER/Fonts\n"
              "\n"
              "Font           Verdict       License in the font    Embedding bits                 "
              "        Source\n"
              "Acme Bold      ✗ Restricted  Own license terms      Restricted license (no embedding"
              ")      acme.ttf\n"
              "Brook          ? Unknown     No license text        Installable (no restriction bits"
              " set)  brook.ttf\n"
              "Cedar Regular  ✓ Likely OK   SIL Open Font License  Installable (no restriction bits"
              " set)  sub/cedar.ttf\n"
              "\n"
              "3 fonts: 1 likely OK, 1 restricted, 1 unknown\n"
              "Check the license; this reads the font's own data. Not legal advice.\n");
}

TEST_F(TextReport, OnATerminalCutsTheTableToItsWidth)
{
    addThreeFonts();
    outputColumns = 80;
    plainTerminal = true;
    EXPECT_EQ(run({"scan", at("Fonts")}).output,
              "Fonts\n"
              "FOLDER/Fonts\n"
              "\n"
              "Font           Verdict       License in the font    Source\n"
              "Acme Bold      ✗ Restricted  Own license terms      acme.ttf\n"
              "Brook          ? Unknown     No license text        brook.ttf\n"
              "Cedar Regular  ✓ Likely OK   SIL Open Font License  sub/cedar.ttf\n"
              "\n"
              "3 fonts: 1 likely OK, 1 restricted, 1 unknown\n"
              "Check the license; this reads the font's own data. Not legal advice.\n");
    outputColumns = 94;
    EXPECT_THAT(run({"scan", at("Fonts")}).output,
                HasSubstr("\nBrook          ? Unknown     No license text        Installable (no "
                          "restrictio…  brook.ttf\n"));
}

TEST_F(TextReport, OnANarrowTerminalLeavesOutColumnsButNoVerdict)
{
    addThreeFonts();
    plainTerminal = true;
    outputColumns = 60;
    EXPECT_THAT(run({"scan", at("Fonts")}).output,
                HasSubstr("\nAcme Bold      ✗ Restricted  acme.ttf\n"));
    outputColumns = 30;
    EXPECT_THAT(run({"scan", at("Fonts")}).output, HasSubstr("\nAcme Bold      ✗ Restricted\n"));
    outputColumns = 20;
    EXPECT_THAT(run({"scan", at("Fonts")}).output, HasSubstr("\nAcme …  ✗ Restricted\n"));
}

TEST_F(TextReport, NoLineOfATableIsWiderThanTheTerminal)
{
    addThreeFonts();
    addFile("Fonts/a-folder-with-a-long-name/and-another-one-in-it/and-one-more/cedar.ttf",
            {likelyOKFont()});
    plainTerminal = true;
    for (std::size_t columns = 20; columns <= 160; ++columns) {
        outputColumns = columns;
        const std::string output = run({"scan", at("Fonts")}).output;
        const std::string table = output.substr(0, output.find("\n\n", output.find("Verdict")));
        std::istringstream lines(table.substr(table.find("Font ")));
        for (std::string line; std::getline(lines, line);)
            EXPECT_LE(displayWidth(line), columns) << line;
    }
}

TEST_F(TextReport, OnATerminalShowsTheEndOfALongPath)
{
    addFile("Fonts/a-folder-with-a-long-name/and-another-one-in-it/cedar.ttf", {likelyOKFont()});
    outputColumns = 80;
    plainTerminal = true;
    EXPECT_THAT(run({"scan", at("Fonts")}).output, HasSubstr("  …-another-one-in-it/cedar.ttf\n"));
}

TEST_F(TextReport, SaysThatAFontCameWithTheSystemInsteadOfItsFile)
{
    FontValues font = unknownFont();
    font.copyright = u"\u00A9 2020 Apple Inc.";
    addFile("Fonts/a.ttf", {font});
    EXPECT_THAT(run({"scan", at("Fonts")}).output, HasSubstr("  Came with macOS\n"));
}

TEST_F(TextReport, AlignsWideCharactersByTheirWidth)
{
    FontValues wide = likelyOKFont();
    wide.fullName = u"\u6F22\u5B57\u3042"; // six columns
    FontValues marks = likelyOKFont();
    marks.fullName = u"e\u0301tude"; // five columns
    marks.postScriptName = "Etude";
    addFile("Fonts/a.ttf", {wide});
    addFile("Fonts/b.ttf", {marks});
    const std::string output = run({"scan", at("Fonts")}).output;
    EXPECT_THAT(output, HasSubstr("\nFont    Verdict"));
    EXPECT_THAT(output, HasSubstr("\n漢字あ  ✓ Likely OK"));
    EXPECT_THAT(output, HasSubstr("\ne\u0301tude   ✓ Likely OK"));
}

TEST_F(TextReport, OnATerminalCutsWideCharactersWhole)
{
    FontValues wide = likelyOKFont();
    wide.fullName = u"\u6F22\u5B57\u3042\u6F22\u5B57\u3042"; // twelve columns
    addFile("Fonts/a.ttf", {wide});
    outputColumns = 23;
    plainTerminal = true;
    EXPECT_THAT(run({"scan", at("Fonts")}).output, HasSubstr("\n漢字あ漢…   ✓ Likely OK\n"));
}

TEST_F(TextReport, InAPipeCutsNothing)
{
    FontValues font = likelyOKFont();
    font.fullName.assign(200, u'n');
    font.license.assign(1000, u'l');
    const std::string name(100, 'f');
    addFile("Fonts/" + name + ".ttf", {font});
    const std::string table = run({"scan", at("Fonts")}).output;
    EXPECT_THAT(table, HasSubstr("\n" + std::string(200, 'n') + "  ? Unknown"));
    EXPECT_THAT(table, HasSubstr("  " + name + ".ttf\n"));
    EXPECT_THAT(run({"scan", at("Fonts"), "-v"}).output,
                HasSubstr("    License          " + std::string(1000, 'l') + "\n"));
    EXPECT_THAT(run({"scan", at("Fonts/" + name + ".ttf")}).output,
                HasSubstr("    License          " + std::string(1000, 'l') + "\n"));
}

TEST_F(TextReport, InAPipeOneLongNameDoesNotPushTheOthersAside)
{
    FontValues font = likelyOKFont();
    font.fullName.assign(200, u'n');
    addFile("Fonts/a.ttf", {font});
    addFile("Fonts/b.ttf", {unknownFont()});
    EXPECT_THAT(run({"scan", at("Fonts")}).output,
                HasSubstr("\nBrook" + std::string(35, ' ') + "  ? Unknown  "));
}

TEST_F(TextReport, ShowsAFontFileInFull)
{
    FontValues font = restrictedFont();
    font.copyright = u"\u00A9 Acme";
    font.manufacturer = u"Acme Type";
    font.license = u"Ask us.\r\n\r\nReally.";
    font.licenseURL = u"https://acme.example/license";
    addFile("acme.ttf", {font});
    EXPECT_EQ(run({"scan", at("acme.ttf")}).output,
              "acme.ttf\n"
              "FOLDER/acme.ttf\n"
              "\n"
              "✗ Restricted  Acme Bold\n"
              "  The font's embedding bits forbid embedding it.\n"
              "  - Embedding bits (fsType 0x0002): Restricted License, which means the font must "
              "not be embedded in documents.\n"
              "  PostScript name    AcmeHeadline-Bold\n"
              "  File               FOLDER/acme.ttf\n"
              "  What the font says\n"
              "    Family           Acme\n"
              "    Copyright        © Acme\n"
              "    Maker            Acme Type\n"
              "    License          Ask us. Really.\n"
              "    License URL      https://acme.example/license\n"
              "    Embedding bits   Restricted license (no embedding) (fsType 0x0002)\n"
              "    Vendor ID        TEST\n"
              "    Format           TrueType\n"
              "\n"
              "1 fonts: 0 likely OK, 1 restricted, 0 unknown\n"
              "Check the license; this reads the font's own data. Not legal advice.\n");
}

TEST_F(TextReport, WhenVerboseShowsEveryFontInFull)
{
    addThreeFonts();
    const Outcome outcome = run({"scan", at("Fonts"), "-v"});
    EXPECT_THAT(outcome.output,
                testing::StartsWith("Fonts\nFOLDER/Fonts\n\n✗ Restricted  Acme Bold\n"));
    EXPECT_THAT(outcome.output, HasSubstr("\n    None\n\n? Unknown  Brook\n"));
    EXPECT_THAT(outcome.output, HasSubstr("\n    None\n\n✓ Likely OK to embed  Cedar Regular\n"));
    EXPECT_THAT(outcome.output, HasSubstr("\n  File               FOLDER/Fonts/sub/cedar.ttf\n"));
}

TEST_F(TextReport, SaysThatAFontHasNoEmbeddingBits)
{
    FontValues font = unknownFont();
    font.fsType.reset();
    addFile("Fonts/a.ttf", {font});
    EXPECT_THAT(run({"scan", at("Fonts/a.ttf")}).output,
                HasSubstr("\n    Embedding bits   None (no OS/2 table)\n"));
    EXPECT_THAT(run({"scan", at("Fonts")}).output, HasSubstr("  No OS/2 table  "));
}

TEST_F(TextReport, OnATerminalShowsTheStartOfALongLicenseTextUnlessVerbose)
{
    outputColumns = 1000;
    plainTerminal = true;
    FontValues font = unknownFont();
    font.license.assign(301, u'x');
    addFile("a.ttf", {font});
    EXPECT_THAT(run({"scan", at("a.ttf")}).output,
                HasSubstr("    License          " + std::string(300, 'x') + "…\n"));
    EXPECT_THAT(run({"scan", at("a.ttf"), "-v"}).output,
                HasSubstr("    License          " + std::string(301, 'x') + "\n"));
    font.license.assign(300, u'x');
    addFile("b.ttf", {font});
    EXPECT_THAT(run({"scan", at("b.ttf")}).output,
                HasSubstr("    License          " + std::string(300, 'x') + "\n"));
}

TEST_F(TextReport, BreaksLinesBetweenWordsOnATerminal)
{
    addFile("acme.ttf", {restrictedFont()});
    outputColumns = 60;
    plainTerminal = true;
    EXPECT_THAT(run({"scan", at("acme.ttf")}).output,
                HasSubstr("  - Embedding bits (fsType 0x0002): Restricted License,\n"
                          "    which means the font must not be embedded in documents.\n"
                          "  PostScript name    AcmeHeadline-Bold\n"));
}

TEST_F(TextReport, OnAWideTerminalKeepsLinesShortEnoughToRead)
{
    addFile("acme.ttf", {restrictedFont()});
    outputColumns = 300;
    plainTerminal = true;
    std::istringstream lines(run({"scan", at("acme.ttf")}).output);
    for (std::string line; std::getline(lines, line);)
        EXPECT_LE(displayWidth(line), 125U) << line;
}

TEST_F(TextReport, GivesValuesLinesOfTheirOwnOnANarrowTerminal)
{
    addFile("acme.ttf", {restrictedFont()});
    outputColumns = 49;
    plainTerminal = true;
    EXPECT_THAT(run({"scan", at("acme.ttf")}).output,
                HasSubstr("\n  PostScript name\n    AcmeHeadline-Bold\n"));
    EXPECT_THAT(run({"scan", at("acme.ttf")}).output, HasSubstr("\n    Family\n      Acme\n"));
    outputColumns = 50;
    EXPECT_THAT(run({"scan", at("acme.ttf")}).output,
                HasSubstr("\n  PostScript name    AcmeHeadline-Bold\n"));
}

TEST_F(TextReport, ColorsVerdictsOnATerminal)
{
    addThreeFonts();
    outputColumns = 80;
    const Outcome outcome = run({"scan", at("Fonts")});
    EXPECT_THAT(outcome.output, HasSubstr("\x1b[31m✗ Restricted\x1b[0m"));
    EXPECT_THAT(outcome.output, HasSubstr("\x1b[33m? Unknown\x1b[0m"));
    EXPECT_THAT(outcome.output, HasSubstr("\x1b[32m✓ Likely OK\x1b[0m"));
}

struct ColorCase {
    const char* description;
    bool terminal;
    bool plainTerminal;
    std::vector<std::string> options;
    bool colored;
};

class ColorOfTheReport : public CommandLineFixture,
                         public testing::WithParamInterface<ColorCase> {};

TEST_P(ColorOfTheReport, FollowsTheTerminalTheEnvironmentAndTheOption)
{
    addFile("Fonts/acme.ttf", {restrictedFont()});
    if (GetParam().terminal) outputColumns = 80;
    plainTerminal = GetParam().plainTerminal;
    std::vector<std::string> arguments{"scan", at("Fonts")};
    arguments.insert(arguments.end(), GetParam().options.begin(), GetParam().options.end());
    EXPECT_EQ(run(arguments).output.find('\x1b') != std::string::npos, GetParam().colored);
}

INSTANTIATE_TEST_SUITE_P(
    TextReport, ColorOfTheReport,
    testing::ValuesIn(std::vector<ColorCase>{
        {"OnATerminal", true, false, {}, true},
        {"InAPipe", false, false, {}, false},
        {"WithNoColorSet", true, true, {}, false},
        {"AlwaysInAPipe", false, false, {"--color=always"}, true},
        {"AlwaysAgainstNoColor", true, true, {"--color=always"}, true},
        {"NeverOnATerminal", true, false, {"--color=never"}, false},
        {"AutoOnATerminal", true, false, {"--color=auto"}, true},
        {"JsonOnATerminal", true, false, {"-fjson"}, false},
        {"JsonWithColorAlways", true, false, {"-fjson", "--color=always"}, false},
    }),
    [](const auto& test) { return test.param.description; });

TEST_F(TextReport, InAFileIsPlainAndUncutAlsoWhenStartedFromATerminal)
{
    addThreeFonts();
    outputColumns = 20;
    const Outcome outcome = run({"scan", at("Fonts"), "-o", at("report.txt")});
    EXPECT_EQ(outcome.output, "");
    const auto report = content("report.txt");
    ASSERT_TRUE(report);
    EXPECT_THAT(*report, Not(HasSubstr("\x1b")));
    EXPECT_THAT(*report, HasSubstr("\nAcme Bold      ✗ Restricted  "));
}

// Each of these would do something to a terminal if it got there.
constexpr std::u16string_view hostileText =
    u"A\x1b[31mred\x1b]0;title\a\u009B2J\u0085B\u202Ereversed\u2066"
    u"\r\nnew\tline\u2028C\u007F\bD\u200F";

void expectHarmless(const std::string& text)
{
    // The reports here are uncoloured: no control character but the ends of lines is ours.
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        EXPECT_TRUE(byte == '\n' || (byte >= 0x20 && byte != 0x7F)) << "byte " << int{byte};
    }
    for (const char* sequence :
         // NOLINTNEXTLINE(misc-misleading-bidirectional): nobody is misled by an escape
         {"\u009B", "\u0085", "\u202E", "\u2066", "\u2028", "\u200F", "\u200E", "\u2029"})
        EXPECT_THAT(text, Not(HasSubstr(sequence)));
}

FontValues hostileFont()
{
    const std::u16string text(hostileText);
    return {.family = text,
            .style = text,
            .fullName = text,
            .postScriptName = "P\x1b[2J\xC2\x9B"
                              "1m\nQ",
            .copyright = text,
            .manufacturer = text,
            .license = text,
            .licenseURL = text,
            .fsType = installable};
}

TEST_F(TextReport, OfAFolderLetsNoControlSequenceThrough)
{
    addFile("F\x1b[31m\u202Eolder\n/a\x9B\x1b]0;b\a\n.ttf", {hostileFont()});
    const Outcome outcome = run({"scan", at("F\x1b[31m\u202Eolder\n")});
    EXPECT_EQ(outcome.exitCode, 0);
    expectHarmless(outcome.output);
    EXPECT_THAT(outcome.output, HasSubstr("A\uFFFD[31mred\uFFFD]0;title\uFFFD\uFFFD2J B\uFFFD"
                                          "reversed\uFFFD new line C\uFFFD\uFFFDD\uFFFD"));
}

TEST_F(TextReport, OfAFileLetsNoControlSequenceThrough)
{
    addFile("a\x1b[31m\n.ttf", {hostileFont()});
    folder.write("OFL\x1b[1m.txt", "nothing");
    const Outcome outcome = run({"scan", at("a\x1b[31m\n.ttf")});
    EXPECT_EQ(outcome.exitCode, 0);
    expectHarmless(outcome.output);
}

TEST_F(TextReport, OfInstalledFontsLetsNoControlSequenceThrough)
{
    addInstalled(hostileFont());
    expectHarmless(run({"installed"}).output);
}

TEST_F(TextReport, KeepsALineOfTextOnOneLine)
{
    FontValues font = likelyOKFont();
    font.fullName = u"Two\r\n  Lines \n\n";
    addFile("Fonts/a.ttf", {font});
    EXPECT_THAT(run({"scan", at("Fonts")}).output, HasSubstr("\nTwo Lines  ✓ Likely OK  "));
}

} // namespace
} // namespace quillmark::test
