#include "CommandLineFixture.h"

#include <gmock/gmock.h>

namespace quillmark::test {
namespace {

struct GateCase {
    const char* description;
    std::vector<FontValues> faces;
    std::string failOn;
    int exitCode;
};

class FailOn : public CommandLineFixture, public testing::WithParamInterface<GateCase> {};

TEST_P(FailOn, IsMetByItsVerdictAndByWorseOnes)
{
    addFile("Fonts/a.ttc", GetParam().faces);
    addFile("Fonts/z.ttf", {likelyOKFont()});
    for (const char* format : {"text", "json"}) {
        std::vector<std::string> arguments{"scan", at("Fonts"), "--format", format};
        if (!GetParam().failOn.empty()) {
            arguments.emplace_back("--fail-on");
            arguments.push_back(GetParam().failOn);
        }
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.exitCode, GetParam().exitCode) << format;
        EXPECT_EQ(outcome.errors, "");
        EXPECT_THAT(outcome.output, testing::HasSubstr("Cedar Regular"));
    }
}

INSTANTIATE_TEST_SUITE_P(ExitCode, FailOn,
                         testing::ValuesIn(std::vector<GateCase>{
                             {"RestrictedWithARestrictedFont", {restrictedFont()}, "restricted", 1},
                             {"RestrictedWithAnUnknownFont", {unknownFont()}, "restricted", 0},
                             {"RestrictedWithALikelyOKFont", {likelyOKFont()}, "restricted", 0},
                             {"UnknownWithARestrictedFont", {restrictedFont()}, "unknown", 1},
                             {"UnknownWithAnUnknownFont", {unknownFont()}, "unknown", 1},
                             {"UnknownWithALikelyOKFont", {likelyOKFont()}, "unknown", 0},
                             {"RestrictedWithAllVerdicts",
                              {likelyOKFont(), unknownFont(), restrictedFont()},
                              "restricted",
                              1},
                             {"NeverWithARestrictedFont", {restrictedFont()}, "never", 0},
                             {"NotGivenWithARestrictedFont", {restrictedFont()}, "", 0},
                             {"NotGivenWithAnUnknownFont", {unknownFont()}, "", 0},
                         }),
                         [](const auto& test) { return test.param.description; });

class ExitCode : public CommandLineFixture {};

TEST_F(ExitCode, OfAnUnreadableInputWinsOverFailOn)
{
    addFile("Fonts/a.ttf", {restrictedFont()});
    EXPECT_EQ(run({"scan", at("Fonts"), "--fail-on", "restricted"}).exitCode, 1);
    EXPECT_EQ(run({"scan", at("Fonts"), at("Nowhere"), "--fail-on", "restricted"}).exitCode, 3);
    EXPECT_EQ(run({"scan", at("Nowhere"), at("Fonts"), "--fail-on", "restricted"}).exitCode, 3);
}

TEST_F(ExitCode, OfFailOnLooksAtEveryList)
{
    addFile("Good/a.ttf", {likelyOKFont()});
    addFile("Bad/a.ttf", {restrictedFont()});
    EXPECT_EQ(run({"scan", at("Bad"), at("Good"), "--fail-on", "restricted"}).exitCode, 1);
    EXPECT_EQ(run({"scan", at("Good"), at("Bad"), "--fail-on", "restricted"}).exitCode, 1);
}

TEST_F(ExitCode, OfFailOnCountsForInstalledFontsToo)
{
    addInstalled(unknownFont());
    EXPECT_EQ(run({"installed", "--fail-on", "unknown"}).exitCode, 1);
    EXPECT_EQ(run({"installed", "--fail-on", "restricted"}).exitCode, 0);
}

TEST_F(ExitCode, OfWrongUseIsTwoWithASentenceAndTheUsageOnStandardErrorOnly)
{
    const Outcome outcome = run({"scan", "--frmat"});
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(outcome.errors, "quillmark-cli: there is no option \"--frmat\"; did you mean "
                              "\"--format\"?\n"
                              "Usage: quillmark-cli scan FOLDER|FILE... [OPTIONS]\n");
}

TEST_F(ExitCode, OfWrongUseShowsNoControlSequence)
{
    EXPECT_EQ(run({"\x1b[31m\nscan\xFF"}).errors,
              "quillmark-cli: there is no command \"\uFFFD[31m\uFFFDscan\uFFFD\"; see "
              "quillmark-cli --help.\n"
              "Usage: quillmark-cli COMMAND [OPTIONS]\n");
}

TEST_F(ExitCode, OfHelpAndVersionIsZeroAndTheyAreResults)
{
    for (const char* option : {"--help", "-h", "--help-all", "--version"}) {
        const Outcome outcome = run({option});
        EXPECT_EQ(outcome.exitCode, 0) << option;
        EXPECT_THAT(outcome.output, testing::HasSubstr("quillmark-cli"));
        EXPECT_EQ(outcome.errors, "");
    }
}

} // namespace
} // namespace quillmark::test
