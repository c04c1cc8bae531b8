// What the completions offer; that shells understand them is tested by completion_test.py.
#include "cli/Completion.h"

#include <gmock/gmock.h>

#include <string>

namespace quillmark::cli {
namespace {

using testing::HasSubstr;

class Completion : public testing::TestWithParam<Shell> {};

TEST_P(Completion, KnowsEveryCommandOptionAndChoice)
{
    const std::string script = completionScript(GetParam());
    const bool isFish = GetParam() == Shell::fish;
    for (const CommandEntry& command : commandTable)
        EXPECT_THAT(script, HasSubstr(std::string(command.name)));
    for (const OptionEntry& option : optionTable) {
        const std::string name(option.name);
        EXPECT_THAT(script, HasSubstr(isFish ? " -l " + name.substr(2) + " " : name));
        if (option.shortName != 0) {
            EXPECT_THAT(script, HasSubstr((isFish ? " -s " : "-") + std::string{option.shortName}));
        }
        for (const std::string_view choice : option.choices)
            EXPECT_THAT(script, HasSubstr(std::string(choice)));
    }
    EXPECT_THAT(script, testing::EndsWith("\n"));
}

INSTANTIATE_TEST_SUITE_P(Completion, Completion, testing::ValuesIn(allCases<Shell>),
                         [](const auto& test) { return std::string(rawValue(test.param)); });

} // namespace
} // namespace quillmark::cli
