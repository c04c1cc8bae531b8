#include "CommandLineFixture.h"

#include "assessment/HelpText.h"

#include <gmock/gmock.h>

namespace quillmark::test {
namespace {

using testing::HasSubstr;

class Explain : public CommandLineFixture {};

TEST_F(Explain, SaysHowVerdictsAreReached)
{
    const Outcome outcome = run({"explain"});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.errors, "");
    EXPECT_THAT(outcome.output, testing::StartsWith(HelpText::title() + "\n\n"));
    EXPECT_THAT(outcome.output, HasSubstr("\n" + HelpText::introduction() + "\n"));
    const char* const headings[] = {"✓ Likely OK to embed", "✗ Restricted", "? Unknown"};
    for (std::size_t i = 0; i < HelpText::verdicts.size(); ++i)
        EXPECT_THAT(outcome.output, HasSubstr("\n" + std::string(headings[i]) + "\n  " +
                                              std::string(HelpText::verdicts[i].text) + "\n"));
    EXPECT_THAT(outcome.output, HasSubstr("\n" + std::string(HelpText::embeddingBits) + "\n"));
    EXPECT_THAT(outcome.output, HasSubstr("\n" + HelpText::matching() + "\n"));
    EXPECT_THAT(outcome.output, testing::EndsWith("Not legal advice.\n"));
}

} // namespace
} // namespace quillmark::test
