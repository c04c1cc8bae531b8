#include "CommandLineFixture.h"

#include <gmock/gmock.h>

namespace quillmark::test {
namespace {

using testing::HasSubstr;

class Installed : public CommandLineFixture {};

TEST_F(Installed, FontsAreGroupedByVerdictTheWorstFirst)
{
    addInstalled(likelyOKFont());
    addInstalled(unknownFont());
    addInstalled(restrictedFont());
    addInstalled({.family = u"Dune", .postScriptName = "Dune", .license = u"Ask."});
    const Outcome outcome = run({"installed"});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.errors, "");
    EXPECT_EQ(
        outcome.output,
        "Installed fonts\n"
        "Every font installed on this computer\n"
        "\n"
        "✗ Restricted · 1 font\n"
        "\n"
        "  The font's embedding bits forbid embedding it.\n"
        "  Restricted  Acme Bold      AcmeHeadline-Bold  TrueType  /fonts/AcmeHeadline-Bold.ttf\n"
        "\n"
        "? Unknown · 2 fonts\n"
        "\n"
        "  Has its own license; its terms decide.\n"
        "  Unknown     Dune Regular   Dune               TrueType  /fonts/Dune.ttf\n"
        "\n"
        "  No license text in the font.\n"
        "  Unknown     Brook                             TrueType  /fonts/Brook.ttf\n"
        "\n"
        "✓ Likely OK to embed · 1 font\n"
        "\n"
        "  Names the SIL Open Font License.\n"
        "  Likely OK   Cedar Regular  Cedar-Regular      TrueType  /fonts/Cedar-Regular.ttf\n"
        "\n"
        "4 fonts: 1 likely OK, 1 restricted, 2 unknown\n"
        "Check the license; this reads the font's own data. Not legal advice.\n");
}

TEST_F(Installed, FontsThatASubstituteAnswersForAreLeftOut)
{
    fakeFonts.installed.emplace_back("Alias", platformFont(likelyOKFont()));
    EXPECT_THAT(run({"installed"}).output, HasSubstr("\n0 fonts: 0 likely OK"));
}

TEST_F(Installed, NoneIsSaidInWords)
{
    const Outcome outcome = run({"installed"});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.output,
              "Installed fonts\n"
              "Every font installed on this computer\n"
              "\n"
              "No fonts found.\n"
              "\n"
              "0 fonts: 0 likely OK, 0 restricted, 0 unknown\n"
              "Check the license; this reads the font's own data. Not legal advice.\n");
}

TEST_F(Installed, FontWithoutAFileHasAnEmptyLastColumn)
{
    fakeFonts.installed.emplace_back("Cedar-Regular", platformFont(likelyOKFont()));
    EXPECT_THAT(run({"installed"}).output,
                HasSubstr("\n  Likely OK   Cedar Regular  Cedar-Regular  TrueType\n"));
}

} // namespace
} // namespace quillmark::test
