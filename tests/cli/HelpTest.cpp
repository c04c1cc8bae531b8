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
    const std::string help = helpText();
    for (const CommandEntry& command : commandTable)
        EXPECT_THAT(help, HasSubstr("\n  " + std::string(command.name)));
    for (const OptionEntry& option : optionTable) {
        std::string line = option.shortName == 0
                               ? "\n      "
                               : std::string{'\n', ' ', ' ', '-', option.shortName, ',', ' '};
        line += option.name;
        if (!option.value.empty()) line.append(" ").append(option.value);
        EXPECT_THAT(help, HasSubstr(line));
    }
    for (const char* code : {"0", "1", "2", "3", "4", "70", "130"})
        EXPECT_THAT(help, HasSubstr(" " + std::string(code) + "   "));
    EXPECT_THAT(help, HasSubstr("Examples:"));
}

TEST(Help, OfACommandHasTheOptionsThatGoWithIt)
{
    for (const CommandEntry& command : commandTable) {
        const std::string help = helpText(command.command);
        EXPECT_THAT(help, testing::StartsWith(usage(command.command) + "\n"));
        for (const OptionEntry& option : optionTable) {
            const std::string name = " " + std::string(option.name);
            const bool isThere = help.find(name + " ") != std::string::npos ||
                                 help.find(name + "\n") != std::string::npos;
            EXPECT_EQ(isThere, option.commands.contains(command.command)) << command.name << name;
        }
    }
}

TEST(Help, OfEverythingHasThatOfEachCommand)
{
    const std::string help = helpOfEverything();
    EXPECT_THAT(help, testing::StartsWith(helpText()));
    for (const CommandEntry& command : commandTable)
        EXPECT_THAT(help, HasSubstr("\n" + helpText(command.command)));
}

TEST(Help, EndsWithTheDisclaimer)
{
    EXPECT_THAT(helpText(), testing::EndsWith("\n" + std::string(Classifier::disclaimer) + "\n"));
}

TEST(Help, FitsEightyColumns)
{
    std::istringstream lines(helpOfEverything());
    for (std::string line; std::getline(lines, line);)
        EXPECT_LE(line.size(), 79U) << line;
}

TEST(Help, VersionIsThreeNumbers)
{
    EXPECT_THAT(std::string(version()), testing::MatchesRegex("[0-9]+\\.[0-9]+\\.[0-9]+"));
}

} // namespace
} // namespace quillmark::cli
