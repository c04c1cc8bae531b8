#include "CommandLineFixture.h"

#include <gmock/gmock.h>

namespace quillmark::test {
namespace {

using testing::HasSubstr;

class Installed : public CommandLineFixture {};

TEST_F(Installed, FontsMakeATableTheWorstVerdictFirst)
{
    addInstalled(likelyOKFont());
    addInstalled(unknownFont());
    addInstalled(restrictedFont());
    addInstalled({.family = u"Alder", .postScriptName = "Alder", .license = u"Ask."});
    const Outcome outcome = run({"installed"});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.errors, "");
    EXPECT_EQ(outcome.output,
              "Installed fonts\n"
              "Every font installed on this computer\n"
              "\n"
              "Font           Verdict       License in the font    Embedding bits                 "
              "        Source\n"
              "Acme Bold      ✗ Restricted  Own license terms      Restricted license (no embedding"
              ")      /fonts/AcmeHeadline-Bold.ttf\n"
              "Alder Regular  ? Unknown     Own license terms      No OS/2 table                  "
              "        /fonts/Alder.ttf\n"
              "Brook          ? Unknown     No license text        Installable (no restriction bits"
              " set)  /fonts/Brook.ttf\n"
              "Cedar Regular  ✓ Likely OK   SIL Open Font License  Installable (no restriction bits"
              " set)  /fonts/Cedar-Regular.ttf\n"
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
                HasSubstr("\nCedar Regular  ✓ Likely OK  SIL Open Font License  Installable (no "
                          "restriction bits set)\n"));
}

} // namespace
} // namespace quillmark::test
