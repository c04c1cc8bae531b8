#include "cli/CommandLine.h"

#include "cli/Commands.h"
#include "cli/Console.h"
#include "cli/CsvReport.h"
#include "cli/ExitCode.h"
#include "cli/Inputs.h"
#include "cli/JsonReport.h"
#include "cli/Options.h"
#include "cli/Output.h"
#include "cli/PdfReport.h"
#include "cli/TextReport.h"
#include "library/AbsolutePath.h"
#include "notes/NotesFile.h"

#include <algorithm>
#include <exception>
#include <filesystem>
#include <functional>
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

/// A file that is there to be read and that the output would replace.
std::optional<fs::path> overwrittenInput(const Options& options, const Environment& environment)
{
    if (!options.output) return std::nullopt;
    std::vector<fs::path> inputs = options.inputs;
    for (const auto& notes : {options.notes, environment.notes})
        if (notes) inputs.push_back(*notes);
    const auto found = std::ranges::find_if(inputs, [&](const fs::path& input) {
        std::error_code ignored;
        return fs::is_regular_file(input, ignored) &&
               fs::equivalent(input, *options.output, ignored);
    });
    return found == inputs.end() ? std::nullopt : std::optional(*found);
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
    bool verdictMet{}; // that of --fail-on, or a worse one
};

/// One run of a command, whatever the report.
struct Run {
    const Options& options;
    const Environment& environment;
    Console& console;
    Output& output;
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
    run.console.eraseProgress();
    return outcome;
}

/// What a report makes of a row that needs all of it.
AuditRow asItIs(AuditRow&& row)
{
    return std::move(row);
}

Outcome writeText(const Run& run)
{
    const auto tips = run.options.quiet ? TextReport::Tips::hidden : TextReport::Tips::shown;
    TextReport report(run.output, page(run.options, run.environment), tips);
    Outcome outcome = fill(report, asItIs, run);
    report.finish();
    return outcome;
}

Outcome writeJson(const Run& run)
{
    JsonReport report(run.output);
    Outcome outcome = fill(report, JsonReport::row, run);
    report.finish(outcome.errors);
    return outcome;
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

/// Writes a report that has the user's notes. Those that were named have to be there, those of the
/// application need not; but notes that are there and cannot be read are never left out silently.
Outcome withNotes(Outcome (*write)(const Run&, const NotesBook&), const Run& run)
{
    const auto& path = run.options.notes ? run.options.notes : run.environment.notes;
    if (!path) return write(run, {});
    const auto read = readNotesFile(*path);
    const auto* error = std::get_if<NotesError>(&read);
    if (error == nullptr) return write(run, std::get<NotesBook>(read));
    if (error->kind == NotesError::Kind::missing && !run.options.notes) return write(run, {});
    run.console.message(error->sentence());
    Outcome outcome = write(run, {});
    outcome.errors.push_back({shownPath(absolutePath(*path)), error->reason});
    return outcome;
}

Outcome writeReport(const Run& run)
{
    switch (run.options.format) {
    case Format::text:
        return writeText(run);
    case Format::json:
        return writeJson(run);
    case Format::csv:
        return withNotes(writeCsv, run);
    case Format::pdf:
        return withNotes(writePdf, run);
    }
    return {};
}

ExitCode runCommand(const Options& options, const Environment& environment, Console& console)
{
    if (const auto input = overwrittenInput(options, environment))
        return wrongUse("--output would replace the input \"" + input->native() + "\".", console);

    Output output(options.output, environment.output);
    if (output.error()) return outputExitCode(*output.error(), console);
    if (options.format == Format::pdf && output.isTerminal())
        return wrongUse("a PDF is nothing for a terminal; name a file with --output.", console);
    const Outcome outcome = writeReport({options, environment, console, output});
    output.finish();

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
                    quiet ? Console::Progress::hidden : Console::Progress::shown);
    if (options != nullptr) return runCommand(*options, environment, console);
    if (const auto* information = std::get_if<Information>(&parsed))
        return print(*information, environment, console);
    return wrongUse(std::get<WrongUse>(parsed).sentence, console);
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
