#include "cli/OptionTable.h"

#include "cli/Options.h"

#include <algorithm>

namespace quillmark::cli {
namespace {

constexpr CommandSet everyCommand{Command::installed, Command::scan,  Command::check,
                                  Command::show,      Command::notes, Command::explain,
                                  Command::completion};
/// Those that list fonts.
constexpr CommandSet lists{Command::installed, Command::scan, Command::check};
constexpr CommandSet fontReports{Command::installed, Command::scan, Command::check, Command::show};
constexpr CommandSet reports{Command::installed, Command::scan, Command::check, Command::show,
                             Command::notes};
constexpr CommandSet readers{Command::scan, Command::check, Command::show};

/// The verdicts that a build can stop at, and that it never does.
constexpr auto gates = std::to_array<std::string_view>({
    "never",
    rawValue(Verdict::restricted),
    rawValue(Verdict::unknown),
});

} // namespace

constexpr std::array<CommandEntry, 7> commandTable{{
    {Command::installed, "installed", "", Operands::none, "every installed font"},
    {Command::scan, "scan", "FOLDER|FILE...", Operands::fontFiles,
     "fonts in folders, subfolders included, or single font files, which are shown in full"},
    {Command::check, "check", "PDF...", Operands::documents,
     "fonts of PDFs, matched to the installed fonts and to those in the folders named with "
     "--fonts"},
    {Command::show, "show", "FONT|FILE...", Operands::fonts,
     "all about one font, by its name or its file: the verdict, the reasons, what the font says, "
     "and your notes on it"},
    {Command::notes, "notes", "[list|show KEY...]", Operands::noteAction,
     "your license notes; they are only read"},
    {Command::explain, "explain", "", Operands::none, "how verdicts are reached"},
    {Command::completion, "completion", "bash|zsh|fish", Operands::shell,
     "the completions for a shell, as a script"},
}};

constexpr std::array<OptionEntry, optionCount> optionTable{{
    {OptionID::verdict, OptionGroup::filter, lists, 0, "--verdict", "VERDICTS", Takes::list,
     rawValues<Verdict>,
     "only fonts with this verdict: restricted, unknown or likelyOK; several "
     "with commas between"},
    {OptionID::source,
     OptionGroup::filter,
     {Command::installed, Command::scan},
     0,
     "--source",
     "SOURCE",
     Takes::choice,
     rawValues<Source>,
     "all (the default), only those added by you, or only those that came with macOS (apple)"},
    {OptionID::search,
     OptionGroup::filter,
     lists,
     0,
     "--search",
     "TEXT",
     Takes::text,
     {},
     "only fonts with TEXT in their name, PostScript name or maker, in any case"},
    {OptionID::sort, OptionGroup::filter, lists, 0, "--sort", "KEY", Takes::choice,
     rawValues<SortKey>, "by verdict (the worst first), name, family or file"},
    {OptionID::fonts,
     OptionGroup::input,
     {Command::check},
     0,
     "--fonts",
     "FOLDER",
     Takes::folder,
     {},
     "match to the fonts in this folder too; can be repeated"},
    {OptionID::noInstalled,
     OptionGroup::input,
     {Command::check},
     0,
     "--no-installed",
     "",
     Takes::nothing,
     {},
     "do not match to installed fonts"},
    {OptionID::filesFrom,
     OptionGroup::input,
     readers,
     0,
     "--files-from",
     "FILE",
     Takes::file,
     {},
     "read more names from FILE, one a line; - is standard input"},
    {OptionID::null,
     OptionGroup::input,
     readers,
     '0',
     "--null",
     "",
     Takes::nothing,
     {},
     "with --files-from: a NUL ends each name, as from find -print0"},
    {OptionID::format, OptionGroup::result, reports, 'f', "--format", "FORMAT", Takes::choice,
     rawValues<Format>,
     "text (the default), json, jsonl (one font a line), csv (for spreadsheets) or pdf (a report "
     "to print)"},
    {OptionID::json,
     OptionGroup::result,
     reports,
     0,
     "--json",
     "",
     Takes::nothing,
     {},
     "the same as --format json"},
    {OptionID::output,
     OptionGroup::result,
     reports,
     'o',
     "--output",
     "FILE",
     Takes::file,
     {},
     "write to FILE instead of standard output; its suffix chooses the format where --format does "
     "not"},
    {OptionID::notes,
     OptionGroup::result,
     reports,
     0,
     "--notes",
     "FILE",
     Takes::file,
     {},
     "the license notes to print with the fonts by csv, pdf and show (default: the notes.json of "
     "the application)"},
    {OptionID::noNotes,
     OptionGroup::result,
     fontReports,
     0,
     "--no-notes",
     "",
     Takes::nothing,
     {},
     "print no license notes, for results that go to others"},
    {OptionID::failOn, OptionGroup::result, fontReports, 0, "--fail-on", "VERDICT", Takes::choice,
     gates,
     "never (the default), or exit with 1 when a font is restricted, or with \"unknown\" also "
     "when a verdict is unknown"},
    {OptionID::color, OptionGroup::general, everyCommand, 0, "--color", "WHEN", Takes::choice,
     rawValues<Color>, "auto (the default), always or never; NO_COLOR is respected"},
    {OptionID::quiet,
     OptionGroup::general,
     everyCommand,
     'q',
     "--quiet",
     "",
     Takes::nothing,
     {},
     "no progress and no tips, only results and errors"},
    {OptionID::verbose,
     OptionGroup::general,
     everyCommand,
     'v',
     "--verbose",
     "",
     Takes::nothing,
     {},
     "text: all about every font instead of a table"},
    {OptionID::help,
     OptionGroup::general,
     everyCommand,
     'h',
     "--help",
     "",
     Takes::nothing,
     {},
     "show this help, or with a command its own"},
    {OptionID::helpAll,
     OptionGroup::general,
     everyCommand,
     0,
     "--help-all",
     "",
     Takes::nothing,
     {},
     "show the help of every command"},
    {OptionID::version,
     OptionGroup::general,
     everyCommand,
     0,
     "--version",
     "",
     Takes::nothing,
     {},
     "show the version"},
}};

static_assert(std::ranges::is_sorted(commandTable, {}, &CommandEntry::command));
static_assert(std::ranges::is_sorted(optionTable, {}, &OptionEntry::id));

const CommandEntry& entry(Command command)
{
    return commandTable.at(static_cast<std::size_t>(command));
}

const OptionEntry& entry(OptionID option)
{
    return optionTable.at(static_cast<std::size_t>(option));
}

} // namespace quillmark::cli
