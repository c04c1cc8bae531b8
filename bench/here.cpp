// quillmark-cli without reader processes: everything is read in this one. What the processes cost
// is measured against it; see scan.sh.

#include "cli/CommandLine.h"
#include "cli/Interruption.h"
#include "files/ProcessMemory.h"
#include "library/SystemFontService.h"

#include <csignal>
#include <optional>
#include <string>
#include <vector>

#include <unistd.h>

int main(int argumentCount, char** arguments)
{
    using namespace quillmark;
    keepMemory();
    static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
    cli::Interruption::install();
    // Never freed, as in the real program.
    static const FontService& fonts = *new SystemFontService;
    const cli::Environment environment{
        .fonts = fonts,
        .input = STDIN_FILENO,
        .output = {STDOUT_FILENO, std::nullopt},
        .errors = {STDERR_FILENO, std::nullopt},
        .locale = {},
        .notes = {},
        .plainTerminal = true,
        .progressDelay = std::chrono::milliseconds(500),
    };
    const std::vector<std::string> given(arguments + 1, arguments + argumentCount);
    return cli::run(given, environment);
}
