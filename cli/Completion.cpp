#include "cli/Completion.h"

#include "cli/Help.h"

#include <algorithm>
#include <array>
#include <span>
#include <string_view>
#include <vector>

namespace quillmark::cli {
namespace {

using Names = std::span<const std::string_view>;

/// The suffixes of the files that a command reads, in lower case.
constexpr auto fontSuffixes = std::to_array<std::string_view>(
    {"ttf", "otf", "ttc", "otc", "dfont", "woff", "woff2", "pfa", "pfb"});
constexpr auto documentSuffixes = std::to_array<std::string_view>({"pdf"});

Names suffixes(Operands operands)
{
    switch (operands) {
    case Operands::fontFiles:
    case Operands::fonts:
        return fontSuffixes;
    case Operands::documents:
        return documentSuffixes;
    case Operands::none:
    case Operands::noteAction:
    case Operands::shell:
        return {};
    }
    return {};
}

/// The words that an operand can be.
Names words(Operands operands)
{
    switch (operands) {
    case Operands::noteAction:
        return rawValues<NoteAction>;
    case Operands::shell:
        return rawValues<Shell>;
    case Operands::none:
    case Operands::fontFiles:
    case Operands::documents:
    case Operands::fonts:
        return {};
    }
    return {};
}

std::string joined(Names names, std::string_view between)
{
    std::string text;
    for (const std::string_view& name : names) {
        if (&name != &names.front()) text += between;
        text += name;
    }
    return text;
}

std::string shortName(const OptionEntry& option)
{
    return {'-', option.shortName};
}

/// The names under which options that `isWanted` are given.
template <typename Wanted>
std::string optionNames(Wanted isWanted, std::string_view between)
{
    std::string text;
    for (const OptionEntry& option : optionTable) {
        if (!isWanted(option)) continue;
        if (option.shortName != 0) text.append(shortName(option)).append(between);
        text.append(option.name).append(between);
    }
    if (!text.empty()) text.resize(text.size() - between.size());
    return text;
}

std::string commandNames(std::string_view between)
{
    std::string text;
    for (const CommandEntry& command : commandTable) {
        if (!text.empty()) text += between;
        text += command.name;
    }
    return text;
}

/// A shell pattern for names with one of the suffixes in either case.
std::string suffixPattern(Names suffixes)
{
    std::string pattern = "*.@(" + joined(suffixes, "|");
    for (const std::string_view suffix : suffixes) {
        pattern += '|';
        std::ranges::transform(suffix, std::back_inserter(pattern), [](char character) {
            return character >= 'a' && character <= 'z' ? static_cast<char>(character - 'a' + 'A')
                                                        : character;
        });
    }
    return pattern + ")";
}

// ---- bash ----

std::string bashValues(const OptionEntry& option)
{
    switch (option.takes) {
    case Takes::choice:
        return "_quillmark_cli_words '" + joined(option.choices, " ") + "'";
    case Takes::list:
        return "_quillmark_cli_list '" + joined(option.choices, " ") + "'";
    case Takes::file:
        return "_quillmark_cli_files ''";
    case Takes::folder:
        return "_quillmark_cli_folders";
    case Takes::text:
    case Takes::nothing:
        return ":"; // whatever the user likes
    }
    return {};
}

constexpr std::string_view bashStart =
    R"(# bash completion for quillmark-cli, as "quillmark-cli completion bash" prints it

_quillmark_cli_words() {
    local IFS=$' \t\n'
    COMPREPLY=($(compgen -W "$1" -- "$current"))
}

# The last of several words with commas between.
_quillmark_cli_list() {
    local IFS=$' \t\n' before=
    if [[ $current == *,* ]]; then before=${current%,*},; fi
    COMPREPLY=($(compgen -P "$before" -W "$1" -- "${current##*,}"))
    compopt -o nospace
}

_quillmark_cli_folders() {
    compopt -o filenames
    mapfile -t COMPREPLY < <(compgen -d -- "$current")
}

# Folders, and files whose names match a pattern if one is given.
_quillmark_cli_files() {
    compopt -o filenames
    if [[ -z $1 ]]; then
        mapfile -t COMPREPLY < <(compgen -f -- "$current")
        return
    fi
    local file
    while IFS= read -r file; do
        if [[ -d $file || ${file##*/} == $1 ]]; then COMPREPLY+=("$file"); fi
    done < <(compgen -f -- "$current")
}

_quillmark_cli() {
    local current previous command='' word at options='' ended=''
    COMPREPLY=()
    current=${COMP_WORDS[COMP_CWORD]}
    previous=${COMP_WORDS[COMP_CWORD-1]}
    # Bash takes an option and its value apart at the equal sign.
    if [[ $current == = ]]; then
        current=''
    elif [[ $previous == = ]] && ((COMP_CWORD > 1)); then
        previous=${COMP_WORDS[COMP_CWORD-2]}
    fi
    for ((at = 1; at < COMP_CWORD; ++at)); do
        word=${COMP_WORDS[at]}
        case $word in
)";

std::string bashScript()
{
    std::string script(bashStart);
    script += "            --) ended=1; break ;;\n            ";
    script += commandNames("|");
    script +=
        ") if [[ -z $command ]]; then command=$word; fi ;;\n"
        "            " +
        optionNames([](const OptionEntry& option) { return option.takes != Takes::nothing; }, "|") +
        ")\n"
        "                # Its value is no command.\n"
        "                if [[ ${COMP_WORDS[at+1]-} == = ]]; then ((++at)); fi\n"
        "                ((++at)) ;;\n"
        "        esac\n"
        "    done\n"
        "    if [[ -z $ended ]]; then\n"
        "        case $previous in\n";
    for (const OptionEntry& option : optionTable) {
        if (option.takes == Takes::nothing) continue;
        script += "            ";
        if (option.shortName != 0) script += shortName(option) + '|';
        script.append(option.name).append(") ").append(bashValues(option)).append("; return ;;\n");
    }
    script += "        esac\n"
              "    fi\n"
              "    case $command in\n";
    for (const CommandEntry& command : commandTable) {
        script.append("        ").append(command.name).append(") options='");
        script += optionNames(
            [&](const OptionEntry& option) { return option.commands.contains(command.command); },
            " ");
        script += "' ;;\n";
    }
    script += "        *) options='";
    script += optionNames([](const OptionEntry& /*option*/) { return true; }, " ");
    script += "' ;;\n"
              "    esac\n"
              "    if [[ -z $ended && $current == -* ]]; then\n"
              "        _quillmark_cli_words \"$options\"\n"
              "        return\n"
              "    fi\n"
              "    case $command in\n"
              "        '') _quillmark_cli_words '" +
              commandNames(" ") + "' ;;\n";
    for (const CommandEntry& command : commandTable) {
        if (!words(command.kind).empty())
            script.append("        ")
                .append(command.name)
                .append(") _quillmark_cli_words '" + joined(words(command.kind), " ") + "' ;;\n");
        else if (!suffixes(command.kind).empty())
            script.append("        ")
                .append(command.name)
                .append(") _quillmark_cli_files '" + suffixPattern(suffixes(command.kind)) +
                        "' ;;\n");
    }
    script += "    esac\n"
              "}\n"
              "\n"
              "complete -F _quillmark_cli quillmark-cli\n";
    return script;
}

// ---- zsh ----

/// `text` inside single quotes, with what is special in a description escaped.
std::string zshText(std::string_view text)
{
    std::string escaped;
    for (const char character : text) {
        if (character == '\'')
            escaped += "'\\''";
        else if (character == '[' || character == ']' || character == ':' || character == '\\')
            escaped += std::string{'\\', character};
        else
            escaped += character;
    }
    return escaped;
}

std::string zshGlob(Names suffixes)
{
    return "_files -g \"(#i)*.(" + joined(suffixes, "|") + ")(-.)\"";
}

std::string zshValues(const OptionEntry& option)
{
    const std::string value = ":" + zshText(option.value) + ":";
    switch (option.takes) {
    case Takes::choice:
        return value + "(" + joined(option.choices, " ") + ")";
    case Takes::list:
        return value + "_sequence compadd - " + joined(option.choices, " ");
    case Takes::file:
        return value + "_files";
    case Takes::folder:
        return value + "_files -/";
    case Takes::text:
        return value + " ";
    case Takes::nothing:
        return {};
    }
    return {};
}

std::string zshOption(const OptionEntry& option)
{
    const bool isRepeated = option.id == OptionID::fonts;
    std::string names;
    if (option.shortName != 0)
        names = "'(" + shortName(option) + " " + std::string(option.name) + ")'{" +
                shortName(option) + "," + std::string(option.name) + "}'";
    else
        names = (isRepeated ? "'*" : "'") + std::string(option.name);
    return names + "[" + zshText(option.help) + "]" + zshValues(option) + "'";
}

std::string zshOperands(Operands operands)
{
    switch (operands) {
    case Operands::none:
        return {};
    case Operands::fontFiles:
        return "'*:folder or font file:" + zshGlob(fontSuffixes) + "'";
    case Operands::documents:
        return "'*:PDF:" + zshGlob(documentSuffixes) + "'";
    case Operands::fonts:
        return "'*:font or font file:" + zshGlob(fontSuffixes) + "'";
    case Operands::noteAction:
        return "'1:what to do:(" + joined(rawValues<NoteAction>, " ") + ")' '*:key: '";
    case Operands::shell:
        return "'1:shell:(" + joined(rawValues<Shell>, " ") + ")'";
    }
    return {};
}

std::string zshScript()
{
    std::string script = "#compdef quillmark-cli\n"
                         "# zsh completion, as \"quillmark-cli completion zsh\" prints it\n"
                         "\n"
                         "_quillmark-cli() {\n"
                         "    local context state state_descr line\n"
                         "    typeset -A opt_args\n"
                         "    local -a commands=(\n";
    for (const CommandEntry& command : commandTable)
        script += "        '" + std::string(command.name) + ":" + zshText(command.summary) + "'\n";
    script += "    )\n"
              "    _arguments -C -S";
    for (const OptionEntry& option : optionTable)
        if (option.group == OptionGroup::general) script += " \\\n        " + zshOption(option);
    script += " \\\n        '1:command:->command' '*::operand:->operand'\n"
              "    case $state in\n"
              "        command) _describe command commands ;;\n"
              "        operand)\n"
              "            case $line[1] in\n";
    for (const CommandEntry& command : commandTable) {
        script += "                " + std::string(command.name) +
                  ")\n"
                  "                    _arguments -S";
        for (const OptionEntry& option : optionTable)
            if (option.commands.contains(command.command))
                script += " \\\n                        " + zshOption(option);
        if (const std::string operands = zshOperands(command.kind); !operands.empty())
            script += " \\\n                        " + operands;
        script += "\n                    ;;\n";
    }
    script += "            esac\n"
              "            ;;\n"
              "    esac\n"
              "}\n"
              "\n"
              "if [[ $funcstack[1] == _quillmark-cli ]]; then\n"
              "    _quillmark-cli \"$@\"\n"
              "else\n"
              "    compdef _quillmark-cli quillmark-cli\n"
              "fi\n";
    return script;
}

// ---- fish ----

std::string fishText(std::string_view text)
{
    std::string quoted = "'";
    for (const char character : text) {
        if (character == '\'' || character == '\\') quoted += '\\';
        quoted += character;
    }
    return quoted + "'";
}

/// A condition: one of these commands has been named.
std::string fishCondition(const CommandSet& commands)
{
    std::string names;
    bool isEvery = true;
    for (const CommandEntry& command : commandTable) {
        if (commands.contains(command.command))
            names.append(" ").append(command.name);
        else
            isEvery = false;
    }
    if (isEvery) return {};
    return " -n '__fish_seen_subcommand_from" + names + "'";
}

std::string fishValues(const OptionEntry& option)
{
    switch (option.takes) {
    case Takes::choice:
        return " -x -a '" + joined(option.choices, " ") + "'";
    case Takes::list:
        return " -x -a '(__fish_append , " + joined(option.choices, " ") + ")'";
    case Takes::file:
        return " -r -F";
    case Takes::folder:
        return " -x -a '(__fish_complete_directories)'";
    case Takes::text:
        return " -x";
    case Takes::nothing:
        return {};
    }
    return {};
}

std::string fishScript()
{
    const std::string start = "complete -c " + std::string(programName);
    std::string script = "# fish completion, as \"quillmark-cli completion fish\" prints it\n\n";
    script += start + " -f\n";
    for (const CommandEntry& command : commandTable)
        script += start + " -n __fish_use_subcommand -a " + std::string(command.name) + " -d " +
                  fishText(command.summary) + "\n";
    for (const OptionEntry& option : optionTable) {
        script += start + fishCondition(option.commands);
        if (option.shortName != 0) script += std::string(" -s ") + option.shortName;
        script += " -l " + std::string(option.name.substr(2));
        script += fishValues(option) + " -d " + fishText(option.help) + "\n";
    }
    for (const CommandEntry& command : commandTable) {
        const std::string condition = fishCondition({command.command});
        if (!words(command.kind).empty())
            script += start + condition + " -a '" + joined(words(command.kind), " ") + "'\n";
        if (!suffixes(command.kind).empty()) script += start + condition + " -F\n";
    }
    return script;
}

} // namespace

std::string completionScript(Shell shell)
{
    switch (shell) {
    case Shell::bash:
        return bashScript();
    case Shell::zsh:
        return zshScript();
    case Shell::fish:
        return fishScript();
    }
    return {};
}

} // namespace quillmark::cli
