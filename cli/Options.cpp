#include "cli/Options.h"

#include "cli/Help.h"
#include "cli/Suggestion.h"
#include "text/Encoding.h"
#include "text/Utf8.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace quillmark::cli {
namespace {

namespace fs = std::filesystem;

/// The format of a file whose name ends like this, where no other is asked for.
struct Suffix {
    std::string_view suffix;
    Format format;
};
constexpr auto suffixes = std::to_array<Suffix>({
    {".csv", Format::csv},
    {".json", Format::json},
    {".jsonl", Format::jsonl},
    {".pdf", Format::pdf},
    {".txt", Format::text},
});

/// What is read: results in files of these kinds would replace what was to be judged.
constexpr auto inputExtensions = std::to_array<std::string_view>(
    {".dfont", ".otc", ".otf", ".pdf", ".pfa", ".pfb", ".ttc", ".ttf", ".woff", ".woff2"});

/// In lower case, as the tables above have it.
std::string extension(const fs::path& file)
{
    std::string text = file.extension().native();
    std::ranges::transform(text, text.begin(), Utf8::asciiLower);
    return text;
}

std::string inQuotes(std::string_view text)
{
    return '"' + std::string(text) + '"';
}

/// The end of a sentence about an unknown `word`: what may have been meant, and a full stop.
template <typename Table>
std::string suggestion(std::string_view word, const Table& known)
{
    std::vector<std::string_view> names;
    names.reserve(std::size(known));
    for (const auto& entry : known)
        names.push_back(entry.name);
    if (const auto found = nearest(word, names)) return "; did you mean " + inQuotes(*found) + "?";
    return "; see quillmark-cli --help.";
}

/// Such as "a, b or c".
std::string joined(std::span<const std::string_view> names, std::string_view last)
{
    std::string text;
    for (const std::string_view& name : names) {
        if (&name != &names.front()) {
            if (&name == &names.back())
                text.append(" ").append(last).append(" ");
            else
                text += ", ";
        }
        text += name;
    }
    return text;
}

std::string commandNames(const CommandSet& commands, std::string_view last)
{
    std::vector<std::string_view> names;
    for (const CommandEntry& known : commandTable)
        if (commands.contains(known.command)) names.push_back(known.name);
    return joined(names, last);
}

template <typename Value>
Value chosen(std::string_view what, const std::string& given)
{
    if (const auto value = fromRawValue<Value>(given)) return *value;
    throw WrongUse{std::string(what) + " is " + joined(rawValues<Value>, "or") + ", not " +
                   inQuotes(given) + "."};
}

const OptionEntry* findOption(std::string_view name)
{
    const auto found = std::ranges::find(optionTable, name, &OptionEntry::name);
    return found == optionTable.end() ? nullptr : &*found;
}

const CommandEntry* findCommand(std::string_view name)
{
    const auto found = std::ranges::find(commandTable, name, &CommandEntry::name);
    return found == commandTable.end() ? nullptr : &*found;
}

/// The arguments sorted into options and the rest, before the options' values are looked at.
struct Arguments {
    std::array<std::vector<std::string>, optionCount> values; // of each option; a flag's is empty
    std::array<bool, optionCount> flags{};
    std::vector<std::string> words; // the command and its inputs

    [[nodiscard]] bool has(OptionID option) const
    {
        const auto at = static_cast<std::size_t>(option);
        return flags.at(at) || !values.at(at).empty();
    }
    [[nodiscard]] const std::vector<std::string>& all(OptionID option) const
    {
        return values.at(static_cast<std::size_t>(option));
    }
    /// The value that counts; null when the option was not given.
    [[nodiscard]] const std::string* value(OptionID option) const
    {
        return all(option).empty() ? nullptr : &all(option).back();
    }
};

void checkEqualSign(const std::string& argument)
{
    const std::size_t equals = argument.find('=');
    if (!argument.starts_with("--") || equals == std::string::npos) return;
    const std::string name = argument.substr(0, equals);
    // CLI11 would take "no" for a flag that is not set.
    const OptionEntry* option = findOption(name);
    if (option != nullptr && option->takes == Takes::nothing)
        throw WrongUse{name + " takes no value."};
    // CLI11 would take the next argument for the value.
    if (equals + 1 == argument.size()) throw WrongUse{name + " needs a value."};
}

/// CLI11 knows the options only. It does not get to see the other arguments as positional ones, for
/// it takes a name in brackets, such as "[fonts]", as a list of names.
Arguments sorted(std::span<const std::string> arguments)
{
    Arguments sorted;
    CLI::App app;
    app.set_help_flag();
    app.allow_extras();
    for (const OptionEntry& option : optionTable) {
        const auto at = static_cast<std::size_t>(option.id);
        std::string names(option.name);
        if (option.shortName != 0) names.insert(0, {'-', option.shortName, ','});
        if (option.takes == Takes::nothing)
            app.add_flag(names, sorted.flags.at(at))
                ->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
        else
            app.add_option(names, sorted.values.at(at))->allow_extra_args(false);
    }

    const auto dashes = std::ranges::find(arguments, "--");
    std::vector<std::string> reversed(arguments.begin(), dashes); // the order that CLI11 wants
    std::ranges::reverse(reversed);
    for (std::string& argument : reversed) {
        checkEqualSign(argument);
        // So that of --json and --format the last one counts.
        if (argument == entry(OptionID::json).name)
            argument = std::string(entry(OptionID::format).name) + "=json";
    }
    try {
        app.parse(reversed);
    } catch (const CLI::ArgumentMismatch& error) {
        const std::string message = error.what();
        throw WrongUse{message.substr(0, message.find(':')) + " needs a value."};
    } catch (const CLI::ParseError& error) {
        throw WrongUse{error.what()};
    }
    const bool informs = sorted.has(OptionID::help) || sorted.has(OptionID::helpAll) ||
                         sorted.has(OptionID::version);
    for (const std::string& word : app.remaining()) {
        if (word.size() > 1 && word.starts_with('-')) {
            if (informs) continue;
            const std::string name = word.substr(0, word.find('=', 2));
            throw WrongUse{"there is no option " + inQuotes(name) + suggestion(name, optionTable)};
        }
        sorted.words.push_back(word);
    }
    if (dashes != arguments.end())
        sorted.words.insert(sorted.words.end(), dashes + 1, arguments.end());
    return sorted;
}

const CommandEntry& command(const std::vector<std::string>& words)
{
    if (words.empty()) {
        std::vector<std::string_view> names;
        names.reserve(std::size(commandTable));
        for (const CommandEntry& known : commandTable)
            names.push_back(known.name);
        throw WrongUse{"name a command: " + joined(names, "or") + "; see quillmark-cli --help."};
    }
    if (const CommandEntry* found = findCommand(words.front())) return *found;
    throw WrongUse{"there is no command " + inQuotes(words.front()) +
                   suggestion(words.front(), commandTable)};
}

void requireMatchingOptions(const Arguments& arguments, const CommandEntry& command)
{
    for (const OptionEntry& option : optionTable)
        if (arguments.has(option.id) && !option.commands.contains(command.command))
            throw WrongUse{std::string(option.name) + " goes with " +
                           commandNames(option.commands, "and") + " only."};
}

/// Takes what follows a command's name as that command does.
void takeWords(Options& options, std::vector<std::string> words)
{
    const bool given = !words.empty() || options.filesFrom;
    const std::string name(entry(options.command).name);
    switch (entry(options.command).kind) {
    case Operands::none:
        if (given)
            throw WrongUse{name + " takes no names, but " + inQuotes(words.front()) +
                           " was given."};
        break;
    case Operands::fontFiles:
        if (!given) throw WrongUse{name + " needs a folder or a font file."};
        break;
    case Operands::documents:
        if (!given) throw WrongUse{name + " needs a PDF."};
        break;
    case Operands::fonts:
        if (!given) throw WrongUse{name + " needs the name of a font, or a font file."};
        break;
    case Operands::noteAction:
        if (!given) break;
        options.noteAction = chosen<NoteAction>("what notes do", words.front());
        words.erase(words.begin());
        if (options.noteAction == NoteAction::list && !words.empty())
            throw WrongUse{"notes list takes no names, but " + inQuotes(words.front()) +
                           " was given."};
        if (options.noteAction == NoteAction::show && words.empty())
            throw WrongUse{"notes show needs the PostScript name of a font."};
        break;
    case Operands::shell:
        if (words.size() != 1)
            throw WrongUse{name + " needs one shell: " + joined(rawValues<Shell>, "or") + "."};
        options.shell = chosen<Shell>("a shell", words.front());
        return;
    }
    options.inputs.assign(words.begin(), words.end());
}

std::vector<Verdict> verdictList(const std::string& given)
{
    std::vector<Verdict> verdicts;
    std::string_view rest = given;
    while (true) {
        const std::size_t comma = rest.find(',');
        verdicts.push_back(
            chosen<Verdict>(entry(OptionID::verdict).name, std::string(rest.substr(0, comma))));
        if (comma == std::string_view::npos) return verdicts;
        rest.remove_prefix(comma + 1);
    }
}

void requireSafeOutput(const fs::path& output, Format format)
{
    if (!isNamedLikeAnInput(output, format)) return;
    throw WrongUse{"--output " + inQuotes(output.native()) +
                   " has the name of a font or a PDF, which are never written" +
                   (extension(output) == ".pdf" ? ", but for a report with --format pdf." : ".")};
}

void takeFormatAndOutput(Options& options, const Arguments& arguments)
{
    const std::string* output = arguments.value(OptionID::output);
    if (output != nullptr) {
        if (output->empty()) throw WrongUse{"--output needs a value."};
        const auto found = std::ranges::find(suffixes, extension(*output), &Suffix::suffix);
        if (found != suffixes.end()) options.format = found->format;
    }
    if (const std::string* format = arguments.value(OptionID::format))
        options.format = chosen<Format>(entry(OptionID::format).name, *format);
    if (options.command == Command::notes && options.format != Format::text &&
        options.format != Format::json)
        throw WrongUse{"notes come as text or json only."};
    if (output != nullptr) {
        requireSafeOutput(*output, options.format);
        if (*output != "-") options.output = *output;
    }
}

void takeNotes(Options& options, const Arguments& arguments)
{
    options.withNotes = !arguments.has(OptionID::noNotes);
    const std::string* notes = arguments.value(OptionID::notes);
    if (notes == nullptr) return;
    if (notes->empty()) throw WrongUse{"--notes needs a value."};
    if (!options.withNotes) throw WrongUse{"--notes does not go with --no-notes."};
    if (!options.printsNotes())
        throw WrongUse{"--notes goes with --format csv or pdf, --verbose, show and notes only."};
    options.notes = *notes;
}

Options checked(const Arguments& arguments)
{
    const CommandEntry& found = command(arguments.words);
    requireMatchingOptions(arguments, found);
    Options options;
    options.command = found.command;
    options.quiet = arguments.has(OptionID::quiet);
    options.verbose = arguments.has(OptionID::verbose);
    options.nullSeparated = arguments.has(OptionID::null);
    options.matchInstalled = !arguments.has(OptionID::noInstalled);
    if (const std::string* file = arguments.value(OptionID::filesFrom)) options.filesFrom = *file;
    if (options.nullSeparated && !options.filesFrom)
        throw WrongUse{"--null goes with --files-from only."};
    takeWords(options, {arguments.words.begin() + 1, arguments.words.end()});
    const auto& folders = arguments.all(OptionID::fonts);
    options.fontFolders.assign(folders.begin(), folders.end());
    const auto isEmpty = [](const fs::path& path) { return path.empty(); };
    if (std::ranges::any_of(options.inputs, isEmpty) ||
        std::ranges::any_of(options.fontFolders, isEmpty) ||
        (options.filesFrom && options.filesFrom->empty()))
        throw WrongUse{"the name of a file or folder is empty."};

    if (const std::string* verdicts = arguments.value(OptionID::verdict))
        options.verdicts = verdictList(*verdicts);
    if (const std::string* source = arguments.value(OptionID::source))
        options.source = chosen<Source>(entry(OptionID::source).name, *source);
    if (const std::string* search = arguments.value(OptionID::search))
        options.search = repairedUtf8(*search);
    if (const std::string* sort = arguments.value(OptionID::sort))
        options.sort = chosen<SortKey>(entry(OptionID::sort).name, *sort);
    if (const std::string* color = arguments.value(OptionID::color))
        options.color = chosen<Color>(entry(OptionID::color).name, *color);
    if (const std::string* gate = arguments.value(OptionID::failOn)) {
        const auto& gates = entry(OptionID::failOn).choices;
        if (std::ranges::find(gates, *gate) == gates.end())
            throw WrongUse{"--fail-on is " + joined(gates, "or") + ", not " + inQuotes(*gate) +
                           "."};
        options.failOn = fromRawValue<Verdict>(*gate); // none for "never"
    }
    takeFormatAndOutput(options, arguments);
    takeNotes(options, arguments);
    return options;
}

/// The usage line of the command that seems to be meant.
std::string usageLine(std::span<const std::string> arguments)
{
    for (const std::string& argument : arguments)
        if (const CommandEntry* found = findCommand(argument)) return usage(found->command);
    return usage();
}

Information help(const std::vector<std::string>& words)
{
    const CommandEntry* found = words.empty() ? nullptr : findCommand(words.front());
    return {found != nullptr ? helpText(found->command) : helpText()};
}

} // namespace

bool isNamedLikeAnInput(const fs::path& file, Format format)
{
    const std::string ending = extension(file);
    if (format == Format::pdf && ending == ".pdf") return false;
    return std::ranges::find(inputExtensions, ending) != inputExtensions.end();
}

bool Options::printsNotes() const
{
    if (!withNotes) return false;
    if (command == Command::show || command == Command::notes) return true;
    switch (format) {
    case Format::text:
        return verbose;
    case Format::json:
    case Format::jsonl:
        return false;
    case Format::csv:
    case Format::pdf:
        return true;
    }
    return false;
}

std::variant<Options, Information, WrongUse> parse(std::span<const std::string> arguments)
{
    try {
        const Arguments found = sorted(arguments);
        if (found.has(OptionID::helpAll)) return Information{helpOfEverything()};
        if (found.has(OptionID::help)) return help(found.words);
        if (found.has(OptionID::version)) return Information{versionText()};
        return checked(found);
    } catch (const WrongUse& wrongUse) {
        return WrongUse{wrongUse.sentence, usageLine(arguments)};
    }
}

} // namespace quillmark::cli
