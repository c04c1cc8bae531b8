// The manual, the manual page and --help tell the same.
#include "cli/Help.h"

#include <gmock/gmock.h>

#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <string>

namespace quillmark::cli {
namespace {

std::string document(const std::string& name)
{
    std::ifstream file(QUILLMARK_DOCS "/" + name);
    EXPECT_TRUE(file) << name;
    return {std::istreambuf_iterator<char>(file), {}};
}

std::set<std::string> matches(const std::string& text, const std::string& pattern)
{
    const std::regex expression(pattern);
    std::set<std::string> found;
    for (std::sregex_iterator match(text.begin(), text.end(), expression), end; match != end;
         ++match)
        found.insert((*match)[1]);
    return found;
}

const std::string longOption = "(--[a-z]+(?:-[a-z]+)*)";

TEST(Documentation, NamesTheOptionsOfTheHelpAndNoOthers)
{
    const auto options = matches(helpText(), longOption);
    EXPECT_EQ(options.size(), 9U);
    EXPECT_EQ(matches(document("command-line.md"), longOption), options);
    EXPECT_EQ(matches(document("man/quillmark-cli.1.scd"), longOption), options);
}

TEST(Documentation, NamesTheExitCodesOfTheHelp)
{
    const auto codes = matches(helpText(), "\n +([0-9]+)   [A-Za-z]");
    EXPECT_EQ(codes, (std::set<std::string>{"0", "1", "130", "2", "3", "4", "70"}));
    auto documented = codes;
    documented.insert("141"); // dull for most, so it is not in the help
    EXPECT_EQ(matches(document("command-line.md"), "\n\\| ([0-9]+) \\|"), documented);
    EXPECT_EQ(matches(document("man/quillmark-cli.1.scd"), "\n\\*([0-9]+)\\*\n"), documented);
}

} // namespace
} // namespace quillmark::cli
