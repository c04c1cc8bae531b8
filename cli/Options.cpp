#include "cli/Options.h"

#include "cli/Help.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <array>
#include <numeric>
#include <string_view>
#include <utility>

namespace quillmark::cli {
namespace {

namespace fs = std::filesystem;

template <typename Value>
struct Named {
    std::string_view name;
    Value value;
};

constexpr auto commands = std::to_array<Named<Command>>({
    {"installed", Command::installed},
    {"scan", Command::scan},
    {"check", Command::check},
});

constexpr auto formats = std::to_array<Named<Format>>({
    {"text", Format::text},
    {"json", Format::json},
    {"csv", Format::csv},
    {"pdf", Format::pdf},
});

constexpr auto colors = std::to_array<Named<Color>>({
    {"auto", Color::automatic},
    {"always", Color::always},
    {"never", Color::never},
});

constexpr auto gates = std::to_array<Named<Verdict>>({
    {"restricted", Verdict::restricted},
    {"unknown", Verdict::unknown},
});

enum class Takes { value, nothing };

constexpr auto optionNames = std::to_array<Named<Takes>>({
    {"--format", Takes::value},
    {"--output", Takes::value},
    {"--notes", Takes::value},
    {"--fail-on", Takes::value},
    {"--color", Takes::value},
    {"--quiet", Takes::nothing},
    {"--help", Takes::nothing},
    {"--version", Takes::nothing},
    {"--fonts", Takes::value},
    {"--no-installed", Takes::nothing},
});

/// What is read: results in files of these kinds would replace what was to be judged.
constexpr auto inputExtensions = std::to_array<std::string_view>(
    {".dfont", ".otc", ".otf", ".pdf", ".pfa", ".pfb", ".ttc", ".ttf", ".woff", ".woff2"});

std::string inQuotes(std::string_view text)
{
    return '"' + std::string(text) + '"';
}

/// The number of characters to insert, remove or replace that leads from one word to the other.
std::size_t editDistance(std::string_view from, std::string_view to)
{
    std::vector<std::size_t> row(to.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < from.size(); ++i) {
        std::size_t diagonal = std::exchange(row[0], i + 1);
        for (std::size_t j = 0; j < to.size(); ++j) {
            const std::size_t replaced = diagonal + (from[i] == to[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, diagonal + 1, row[j] + 1});
        }
    }
    return row.back();
}

/// The end of a sentence about an unknown `word`: what may have been meant, and a full stop.
template <typename Value, std::size_t size>
std::string suggestion(std::string_view word, const std::array<Named<Value>, size>& known)
{
    // Nothing near it is a misspelling of anything, and very long words are not worth comparing.
    constexpr std::size_t farthest = 2;
    constexpr std::size_t longest = 30;
    if (word.size() <= longest) {
        for (std::size_t distance = 1; distance <= farthest; ++distance)
            for (const auto& [name, value] : known)
                if (editDistance(word, name) == distance)
                    return "; did you mean " + inQuotes(name) + "?";
    }
    return "; see quillmark-cli --help.";
}

template <typename Value, std::size_t size>
std::string choices(const std::array<Named<Value>, size>& table)
{
    std::string text;
    for (std::size_t i = 0; i < size; ++i) {
        if (i > 0) text += i + 1 < size ? ", " : " or ";
        text += table[i].name;
    }
    return text;
}

template <typename Value, std::size_t size>
Value chosen(const std::array<Named<Value>, size>& table, std::string_view option,
             const std::string& given)
{
    for (const auto& [name, value] : table)
        if (name == given) return value;
    throw WrongUse{std::string(option) + " is " + choices(table) + ", not " + inQuotes(given) +
                   "."};
}

/// The arguments sorted into options and the rest, before the options' values are looked at.
struct Arguments {
    std::optional<std::string> format;
    std::optional<std::string> output;
    std::optional<std::string> notes;
    std::optional<std::string> failOn;
    std::optional<std::string> color;
    std::vector<std::string> fonts;
    bool noInstalled{};
    bool quiet{};
    bool help{};
    bool version{};
    std::vector<std::string> words; // the command and its inputs
};

/// CLI11 knows the options only. It does not get to see the other arguments as positional ones, for
/// it takes a name in brackets, such as "[fonts]", as a list of names.
Arguments sorted(std::span<const std::string> arguments)
{
    Arguments sorted;
    CLI::App app;
    app.set_help_flag();
    app.allow_extras();
    constexpr auto last = CLI::MultiOptionPolicy::TakeLast;
    app.add_option("-f,--format", sorted.format)->multi_option_policy(last);
    app.add_option("-o,--output", sorted.output)->multi_option_policy(last);
    app.add_option("--notes", sorted.notes)->multi_option_policy(last);
    app.add_option("--fail-on", sorted.failOn)->multi_option_policy(last);
    app.add_option("--color", sorted.color)->multi_option_policy(last);
    app.add_option("--fonts", sorted.fonts)->allow_extra_args(false);
    app.add_flag("--no-installed", sorted.noInstalled)->multi_option_policy(last);
    app.add_flag("-q,--quiet", sorted.quiet)->multi_option_policy(last);
    app.add_flag("-h,--help", sorted.help)->multi_option_policy(last);
    app.add_flag("--version", sorted.version)->multi_option_policy(last);

    const auto dashes = std::ranges::find(arguments, "--");
    std::vector<std::string> reversed(arguments.begin(), dashes); // the order that CLI11 wants
    std::ranges::reverse(reversed);
    for (const std::string& argument : reversed) {
        const std::size_t equals = argument.find('=');
        if (!argument.starts_with("--") || equals == std::string::npos) continue;
        const std::string name = argument.substr(0, equals);
        // CLI11 would take "no" for a flag that is not set.
        const auto option = std::ranges::find(optionNames, name, &Named<Takes>::name);
        if (option != optionNames.end() && option->value == Takes::nothing)
            throw WrongUse{name + " takes no value."};
        // CLI11 would take the next argument for the value.
        if (equals + 1 == argument.size()) throw WrongUse{name + " needs a value."};
    }
    try {
        app.parse(reversed);
    } catch (const CLI::ArgumentMismatch& error) {
        const std::string message = error.what();
        throw WrongUse{message.substr(0, message.find(':')) + " needs a value."};
    } catch (const CLI::ParseError& error) {
        throw WrongUse{error.what()};
    }
    for (const std::string& word : app.remaining()) {
        if (word.size() > 1 && word.starts_with('-')) {
            if (sorted.help || sorted.version) continue;
            const std::string name = word.substr(0, word.find('=', 2));
            throw WrongUse{"there is no option " + inQuotes(name) + suggestion(name, optionNames)};
        }
        sorted.words.push_back(word);
    }
    if (dashes != arguments.end())
        sorted.words.insert(sorted.words.end(), dashes + 1, arguments.end());
    return sorted;
}

Command command(const std::vector<std::string>& words)
{
    if (words.empty())
        throw WrongUse{"name a command: " + choices(commands) + "; see quillmark-cli --help."};
    for (const auto& [name, value] : commands)
        if (name == words.front()) return value;
    throw WrongUse{"there is no command " + inQuotes(words.front()) +
                   suggestion(words.front(), commands)};
}

void requireInputs(const Options& options)
{
    const bool given = !options.inputs.empty();
    switch (options.command) {
    case Command::installed:
        if (given)
            throw WrongUse{"installed takes no files or folders, but " +
                           inQuotes(options.inputs.front().native()) + " was given."};
        return;
    case Command::scan:
        if (!given) throw WrongUse{"scan needs a folder or a font file."};
        return;
    case Command::check:
        if (!given) throw WrongUse{"check needs a PDF."};
        return;
    }
}

void requireSafeOutput(const fs::path& output, Format format)
{
    std::string extension = output.extension().native();
    std::ranges::transform(extension, extension.begin(), [](char character) {
        return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a')
                                                    : character;
    });
    if (format == Format::pdf && extension == ".pdf") return;
    if (std::ranges::find(inputExtensions, extension) != inputExtensions.end())
        throw WrongUse{"--output " + inQuotes(output.native()) +
                       " has the name of a font or a PDF, which are never written" +
                       (extension == ".pdf" ? ", but for a report with --format pdf." : ".")};
}

Options checked(const Arguments& arguments)
{
    Options options;
    options.command = command(arguments.words);
    options.inputs.assign(arguments.words.begin() + 1, arguments.words.end());
    options.fontFolders.assign(arguments.fonts.begin(), arguments.fonts.end());
    options.matchInstalled = !arguments.noInstalled;
    options.quiet = arguments.quiet;
    const auto isEmpty = [](const fs::path& path) { return path.empty(); };
    if (std::ranges::any_of(options.inputs, isEmpty) ||
        std::ranges::any_of(options.fontFolders, isEmpty))
        throw WrongUse{"the name of a file or folder is empty."};
    requireInputs(options);
    if (options.command != Command::check) {
        if (!options.fontFolders.empty()) throw WrongUse{"--fonts goes with check only."};
        if (!options.matchInstalled) throw WrongUse{"--no-installed goes with check only."};
    }
    if (arguments.format) options.format = chosen(formats, "--format", *arguments.format);
    if (arguments.notes) {
        if (arguments.notes->empty()) throw WrongUse{"--notes needs a value."};
        if (options.format != Format::csv && options.format != Format::pdf)
            throw WrongUse{"--notes goes with --format csv or pdf only."};
        options.notes = *arguments.notes;
    }
    if (arguments.failOn) options.failOn = chosen(gates, "--fail-on", *arguments.failOn);
    if (arguments.color) options.color = chosen(colors, "--color", *arguments.color);
    if (arguments.output) {
        if (arguments.output->empty()) throw WrongUse{"--output needs a value."};
        requireSafeOutput(*arguments.output, options.format);
        if (*arguments.output != "-") options.output = *arguments.output;
    }
    return options;
}

} // namespace

std::variant<Options, Information, WrongUse> parse(std::span<const std::string> arguments)
{
    try {
        const Arguments found = sorted(arguments);
        if (found.help) return Information{helpText()};
        if (found.version) return Information{versionText()};
        return checked(found);
    } catch (const WrongUse& wrongUse) {
        return wrongUse;
    }
}

} // namespace quillmark::cli
