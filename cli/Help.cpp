#include "cli/Help.h"

#include "assessment/Classifier.h"

#include <array>
#include <optional>

namespace quillmark::cli {
namespace {

// So that nothing wraps on the usual terminal.
constexpr std::size_t width = 79;
constexpr std::size_t textColumn = 24; // where the explanations stand

constexpr std::string_view purpose = R"(
Says for every font whether it may be embedded in something that is sold, from
what the font says about itself. Fonts and PDFs are only read, never changed.
)";

constexpr std::string_view ending = R"(
After -- every argument is a name. Of an option given twice the last counts.

Examples:
  quillmark-cli installed --verdict restricted,unknown --source added
  quillmark-cli scan ~/Fonts
  quillmark-cli show Lato-Regular
  quillmark-cli check book.pdf --fonts ~/Fonts
  quillmark-cli check --fail-on restricted dist/*.pdf
  quillmark-cli scan --output audit.pdf ~/Fonts

Exit codes:
    0   done
    1   done, and a font has the verdict of --fail-on or a worse one
    2   the arguments make no sense
    3   some input could not be read; everything else is still reported
    4   the output could not be written
   70   internal error
  130   interrupted

)";

struct GroupTitle {
    OptionGroup group;
    std::string_view title;
    /// What options of the group go with, if it says so; others are introduced by what they go
    /// with.
    std::optional<CommandSet> commands{};
};
constexpr auto groupTitles = std::to_array<GroupTitle>({
    {OptionGroup::filter, "Which fonts (installed, scan and check):",
     CommandSet{Command::installed, Command::scan, Command::check}},
    {OptionGroup::input, "What is read:", CommandSet{}},
    {OptionGroup::result, "What comes out:"},
    {OptionGroup::general, "Every command:"},
});

/// Adds `label`, and `text` beside it in a column of its own.
void appendEntry(std::string& help, std::string label, std::string_view text)
{
    if (label.size() + 1 > textColumn) {
        help.append(label).append("\n");
        label.clear();
    }
    label.resize(textColumn, ' ');
    std::string line = label;
    while (!text.empty()) {
        const std::size_t space = text.find(' ');
        const std::string_view word = text.substr(0, space);
        const bool isFirst = line.size() == textColumn;
        if (!isFirst && line.size() + 1 + word.size() > width) {
            help.append(line).append("\n");
            line.assign(textColumn, ' ');
        } else if (!isFirst) {
            line += ' ';
        }
        line += word;
        text.remove_prefix(space == std::string_view::npos ? text.size() : space + 1);
    }
    help.append(line).append("\n");
}

void append(std::string& help, const CommandEntry& command)
{
    std::string label = "  ";
    label += command.name;
    if (!command.operands.empty()) label.append(" ").append(command.operands);
    appendEntry(help, std::move(label), command.summary);
}

/// Adds an option; `introduction` comes before what it does.
void append(std::string& help, const OptionEntry& option, const std::string& introduction)
{
    std::string label =
        option.shortName == 0 ? "      " : std::string{' ', ' ', '-', option.shortName, ',', ' '};
    label += option.name;
    if (!option.value.empty()) label.append(" ").append(option.value);
    appendEntry(help, std::move(label), introduction + std::string(option.help));
}

/// Such as "scan, check: ".
std::string commandNames(const CommandSet& commands)
{
    std::string names;
    for (const CommandEntry& command : commandTable) {
        if (!commands.contains(command.command)) continue;
        if (!names.empty()) names += ", ";
        names += command.name;
    }
    return names + ": ";
}

enum class Introduction { given, leftOut };

/// Adds the options that `isWanted`, under the titles of their groups.
template <typename Wanted>
void appendOptions(std::string& help, Wanted isWanted, Introduction introduction)
{
    for (const auto& [group, title, commands] : groupTitles) {
        bool isFirst = true;
        for (const OptionEntry& option : optionTable) {
            if (option.group != group || !isWanted(option)) continue;
            if (isFirst) help.append("\n").append(title).append("\n");
            isFirst = false;
            const bool isIntroduced =
                introduction == Introduction::given && commands && option.commands != *commands;
            append(help, option, isIntroduced ? commandNames(option.commands) : std::string());
        }
    }
}

} // namespace

std::string_view version()
{
    return QUILLMARK_VERSION;
}

std::string usage()
{
    return "Usage: " + std::string(programName) + " COMMAND [OPTIONS]";
}

std::string usage(Command command)
{
    std::string line = "Usage: " + std::string(programName);
    line.append(" ").append(entry(command).name);
    if (!entry(command).operands.empty()) line.append(" ").append(entry(command).operands);
    return line + " [OPTIONS]";
}

std::string helpText()
{
    std::string help = usage() + '\n';
    help += purpose;
    help += "\nCommands:\n";
    for (const CommandEntry& command : commandTable)
        append(help, command);
    appendOptions(
        help, [](const OptionEntry& /*option*/) { return true; }, Introduction::given);
    help += ending;
    help += Classifier::disclaimer;
    help += '\n';
    return help;
}

std::string helpText(Command command)
{
    std::string help = usage(command) + "\n\n";
    append(help, entry(command));
    appendOptions(
        help, [command](const OptionEntry& option) { return option.commands.contains(command); },
        Introduction::leftOut);
    return help;
}

std::string helpOfEverything()
{
    std::string help = helpText();
    for (const CommandEntry& command : commandTable)
        help += "\n" + std::string(width, '-') + "\n" + helpText(command.command);
    return help;
}

std::string versionText()
{
    std::string text(programName);
    text += ' ';
    text += version();
    text += '\n';
    return text;
}

} // namespace quillmark::cli
