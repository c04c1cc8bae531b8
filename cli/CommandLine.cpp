#include "cli/CommandLine.h"

#include "assessment/Classifier.h"
#include "cli/Commands.h"
#include "cli/Completion.h"
#include "cli/Console.h"
#include "cli/CsvReport.h"
#include "cli/ExitCode.h"
#include "cli/Explanation.h"
#include "cli/FileNames.h"
#include "cli/Inputs.h"
#include "cli/JsonLinesReport.h"
#include "cli/JsonReport.h"
#include "cli/NotesListing.h"
#include "cli/Options.h"
#include "cli/Output.h"
#include "cli/PdfReport.h"
#include "cli/RowSelection.h"
#include "cli/Suggestion.h"
#include "cli/TextReport.h"
#include "files/DurableFile.h"
#include "library/AbsolutePath.h"
#include "notes/NotesFile.h"

#include <algorithm>
#include <exception>
#include <filesystem>
#include <functional>
#include <iterator>
#include <optional>
#include <utility>
#include <variant>
#include <vector>

namespace quillmark::cli {
namespace {

namespace fs = std::filesystem;

Page page(const Options& options, const Environment& environment)
{
    // A file is written for whoever reads it later, not for this terminal.
    const auto columns = options.output ? std::nullopt : environment.output.columns;
    switch (options.color) {
    case Color::automatic:
        return {.colored = columns && !environment.plainTerminal, .columns = columns};
    case Color::always:
        return {.colored = true, .columns = columns};
    case Color::never:
        return {.colored = false, .columns = columns};
    }
    return {};
}

/// Adds the names that stand in a file to those on the command line. What went wrong when they
/// cannot be read.
std::optional<InputError> takeNamesFromFile(Options& options, const Environment& environment,
                                            Console& console)
{
    if (!options.filesFrom) return std::nullopt;
    const char end = options.nullSeparated ? '\0' : '\n';
    auto names = readFileNames(*options.filesFrom, end, environment.input);
    if (const auto* error = std::get_if<FileError>(&names)) {
        console.message(options.filesFrom->native() + ": " + error->reason);
        return InputError{shownPath(absolutePath(*options.filesFrom)), error->reason};
    }
    std::ranges::move(std::get<std::vector<fs::path>>(names), std::back_inserter(options.inputs));
    return std::nullopt;
}

/// A file that is there to be read and that the output would replace.
std::optional<fs::path> overwrittenInput(const Options& options, const Environment& environment)
{
    if (!options.output) return std::nullopt;
    std::vector<fs::path> inputs = options.inputs;
    for (const auto& file : {options.notes, environment.notes, options.filesFrom})
        if (file) inputs.push_back(*file);
    const auto found = std::ranges::find_if(inputs, [&](const fs::path& input) {
        std::error_code ignored;
        return fs::is_regular_file(input, ignored) &&
               fs::equivalent(input, *options.output, ignored);
    });
    return found == inputs.end() ? std::nullopt : std::optional(*found);
}

/// Whether the output is a link to a font or a PDF. Whoever writes follows links, so that these
/// would be replaced although they are not named.
bool leadsToAnInput(const Options& options)
{
    if (!options.output || *options.output == "/dev/stdout") return false;
    return isNamedLikeAnInput(endOfLinks(*options.output), options.format);
}

ExitCode outputExitCode(const OutputError& error, Console& console)
{
    if (error.kind == OutputError::Kind::closedPipe) return ExitCode::closedPipe;
    console.message(error.sentence);
    return ExitCode::unwritableOutput;
}

ExitCode wrongUse(const std::string& sentence, Console& console)
{
    console.message(sentence);
    return ExitCode::wrongUse;
}

ExitCode print(const Information& information, const Environment& environment, Console& console)
{
    Output output(std::nullopt, environment.output);
    output.buffer() += information.text;
    output.finish();
    return output.error() ? outputExitCode(*output.error(), console) : ExitCode::done;
}

struct Outcome {
    std::vector<InputError> errors;
    bool verdictMet{};    // that of --fail-on, or a worse one
    bool hasReport{true}; // else nothing is written, and a file that was there stays as it was
};

/// One run of a command, whatever the report.
struct Run {
    const Options& options;
    const Environment& environment;
    Console& console;
    Output& output;
    const std::optional<InputError>& unreadNames; // the file that would name further inputs
};

/// Runs the command and hands what it finds to the report, each font as `makeRow` makes it.
template <typename Report>
Outcome fill(Report& report, std::function<typename Report::Row(AuditRow&&)> makeRow,
             const Run& run)
{
    using Row = typename Report::Row;
    Outcome outcome;
    const auto failsOn = [&](const Row& row) { return verdict(row) <= *run.options.failOn; };
    const auto take = [&](FontList<Row> list) {
        outcome.verdictMet =
            outcome.verdictMet || (run.options.failOn && std::ranges::any_of(list.rows, failsOn));
        run.console.eraseProgress();
        report.add(std::move(list));
        return !run.output.error();
    };
    outcome.errors =
        execute<Row>(run.options, run.environment, run.console, {std::move(makeRow), take});
    if (run.unreadNames) outcome.errors.insert(outcome.errors.begin(), *run.unreadNames);
    run.console.eraseProgress();
    return outcome;
}

/// What a report makes of a row that needs all of it.
AuditRow asItIs(AuditRow&& row)
{
    return std::move(row);
}

TextSetting::Form form(const Options& options)
{
    if (options.command == Command::show) return TextSetting::Form::blocks;
    return options.verbose ? TextSetting::Form::full : TextSetting::Form::table;
}

Outcome writeText(const Run& run, const NotesBook& notes)
{
    const RowSelection selection(run.options, run.environment.locale);
    const TextSetting setting{
        .form = form(run.options),
        .tips = !run.options.quiet,
        .selection = &selection,
        .notes = run.options.printsNotes() ? &notes : nullptr,
    };
    TextReport report(run.output, page(run.options, run.environment), setting);
    Outcome outcome = fill(report, asItIs, run);
    report.finish();
    return outcome;
}

Outcome writeJson(const Run& run, const NotesBook& notes)
{
    JsonReport report(run.output, notes);
    Outcome outcome = fill(
        report, [&report](AuditRow&& row) { return report.row(row); }, run);
    report.finish(outcome.errors);
    return outcome;
}

Outcome writeJsonLines(const Run& run, const NotesBook& notes)
{
    JsonLinesReport report(run.output, notes);
    return fill(
        report, [&report](AuditRow&& row) { return report.row(row); }, run);
}

Outcome writeCsv(const Run& run, const NotesBook& notes)
{
    const auto target =
        run.output.isTerminal() ? CsvReport::Target::terminal : CsvReport::Target::file;
    CsvReport report(run.output, notes, target);
    Outcome outcome = fill(
        report, [&report](AuditRow&& row) { return report.row(row); }, run);
    report.finish();
    return outcome;
}

Outcome writePdf(const Run& run, const NotesBook& notes)
{
    PdfReport report(run.output, notes);
    Outcome outcome = fill(report, asItIs, run);
    report.finish(run.environment.clock(), run.console);
    return outcome;
}

Outcome writeFonts(const Run& run, const NotesBook& notes)
{
    switch (run.options.format) {
    case Format::text:
        return writeText(run, notes);
    case Format::json:
        return writeJson(run, notes);
    case Format::jsonl:
        return writeJsonLines(run, notes);
    case Format::csv:
        return writeCsv(run, notes);
    case Format::pdf:
        return writePdf(run, notes);
    }
    return {};
}

/// Writes notes by themselves.
Outcome writeNotes(const Run& run, const NotesBook& notes)
{
    std::vector<std::string> keys;
    for (const fs::path& input : run.options.inputs)
        keys.push_back(shownPath(input));
    FoundNotes wanted{.book = notes, .missing = {}};
    if (run.options.noteAction == NoteAction::show) wanted = notesUnder(keys, notes);

    Outcome outcome;
    std::vector<std::string_view> known;
    for (const auto& [key, note] : notes.notes)
        known.emplace_back(key);
    for (const std::string& key : wanted.missing) {
        std::string reason = "There is no note for this font";
        if (const auto near = nearest(key, known))
            reason.append("; did you mean \"").append(*near).append("\"?");
        run.console.message(std::string(key).append(": ").append(reason));
        outcome.errors.push_back({key, reason});
    }
    TextLines lines(run.output, page(run.options, run.environment));
    if (run.options.format == Format::json) {
        run.output.buffer() += notesJson(wanted.book);
    } else if (run.options.noteAction == NoteAction::list) {
        writeNotesTable(lines, wanted.book);
    } else {
        for (const auto& [key, note] : wanted.book.notes) {
            if (key != wanted.book.notes.begin()->first) lines.emptyLine();
            writeNoteInFull(lines, key, note);
        }
    }
    return outcome;
}

/// Writes a report that has the user's notes. Those that were named have to be there, those of the
/// application need not; but notes that are there and cannot be read are never left out silently.
Outcome withNotes(Outcome (*write)(const Run&, const NotesBook&), const Run& run)
{
    const auto& path = run.options.notes ? run.options.notes : run.environment.notes;
    if (!path || !run.options.printsNotes()) return write(run, {});
    const auto read = readNotesFile(*path);
    const auto* error = std::get_if<NotesError>(&read);
    if (error == nullptr) return write(run, std::get<NotesJson::Decoded>(read).book);
    if (error->kind == NotesError::Kind::missing && !run.options.notes) return write(run, {});
    run.console.message(error->sentence());
    Outcome outcome;
    // A list without them would say that there are none.
    if (run.options.command == Command::notes)
        outcome.hasReport = false;
    else
        outcome = write(run, {});
    outcome.errors.push_back({shownPath(absolutePath(*path)), error->reason});
    return outcome;
}

Outcome writeExplanation(const Run& run)
{
    TextLines lines(run.output, page(run.options, run.environment));
    writeExplanation(lines);
    return {};
}

Outcome writeCompletion(const Run& run)
{
    run.output.buffer() += completionScript(run.options.shell);
    return {};
}

Outcome writeResults(const Run& run)
{
    switch (run.options.command) {
    case Command::installed:
    case Command::scan:
    case Command::check:
    case Command::show:
        return withNotes(writeFonts, run);
    case Command::notes:
        return withNotes(writeNotes, run);
    case Command::explain:
        return writeExplanation(run);
    case Command::completion:
        return writeCompletion(run);
    }
    return {};
}

ExitCode runCommand(Options options, const Environment& environment, Console& console)
{
    const auto unreadNames = takeNamesFromFile(options, environment, console);
    if (const auto input = overwrittenInput(options, environment))
        return wrongUse("--output would replace the input \"" + input->native() + "\".", console);
    if (leadsToAnInput(options))
        return wrongUse("--output \"" + options.output->native() +
                            "\" is a link to a font or a PDF, which are never written.",
                        console);

    Output output(options.output, environment.output);
    if (output.error()) return outputExitCode(*output.error(), console);
    if (options.format == Format::pdf && output.isTerminal())
        return wrongUse("a PDF is nothing for a terminal; name a file with --output.", console);
    const Outcome outcome = writeResults({options, environment, console, output, unreadNames});
    if (outcome.hasReport) output.finish();

    if (output.error()) return outputExitCode(*output.error(), console);
    if (!outcome.errors.empty()) return ExitCode::unreadableInput;
    return outcome.verdictMet ? ExitCode::verdictMet : ExitCode::done;
}

ExitCode runParsed(std::span<const std::string> arguments, const Environment& environment)
{
    const auto parsed = parse(arguments);
    const auto* options = std::get_if<Options>(&parsed);
    const bool quiet = options != nullptr && options->quiet;
    Console console(environment.errors,
                    quiet ? Console::Progress::hidden : Console::Progress::shown,
                    environment.progressDelay);
    if (options != nullptr) return runCommand(*options, environment, console);
    if (const auto* information = std::get_if<Information>(&parsed))
        return print(*information, environment, console);
    const ExitCode exitCode = wrongUse(std::get<WrongUse>(parsed).sentence, console);
    console.line(std::get<WrongUse>(parsed).usage);
    return exitCode;
}

} // namespace

int run(std::span<const std::string> arguments, const Environment& environment)
{
    try {
        return static_cast<int>(runParsed(arguments, environment));
    } catch (const std::exception& error) {
        Console console(environment.errors, Console::Progress::hidden);
        console.message(std::string("internal error: ") + error.what());
        return static_cast<int>(ExitCode::internalError);
    }
}

} // namespace quillmark::cli
