#include "cli/Help.h"

#include "assessment/Classifier.h"

#include <gmock/gmock.h>

#include <sstream>
#include <string>

namespace quillmark::cli {
namespace {

using testing::HasSubstr;

TEST(Help, NamesEveryCommandOptionAndExitCode)
{
    for (const char* word : {"  installed ",
                             "  scan FOLDER|FILE...",
                             "  check PDF...",
                             "      --fonts FOLDER",
                             "      --no-installed",
                             "  -f, --format",
                             "  -o, --output FILE",
                             "      --fail-on",
                             "      --color",
                             "  -q, --quiet",
                             "      --notes FILE",
                             "  -h, --help",
                             "      --version",
                             "\n    0   ",
                             "\n    1   ",
                             "\n    2   ",
                             "\n    3   ",
                             "\n    4   ",
                             "\n   70   ",
                             "\n  130   ",
                             "Examples:"})
        EXPECT_THAT(helpText(), HasSubstr(word));
}

TEST(Help, EndsWithTheDisclaimer)
{
    EXPECT_THAT(helpText(), testing::EndsWith("\n" + std::string(Classifier::disclaimer) + "\n"));
}

TEST(Help, FitsEightyColumns)
{
    std::istringstream lines(helpText());
    for (std::string line; std::getline(lines, line);)
        EXPECT_LE(line.size(), 79U) << line;
}

TEST(Help, VersionIsThreeNumbers)
{
    EXPECT_THAT(std::string(version()), testing::MatchesRegex("[0-9]+\\.[0-9]+\\.[0-9]+"));
}

} // namespace
} // namespace quillmark::cli
