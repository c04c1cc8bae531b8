#include "assessment/Brand.h"
#include "cli/CommandLine.h"
#include "cli/Interruption.h"
#include "files/ProcessMemory.h"
#include "library/SystemFontService.h"
#include "reader/DocumentReader.h"
#include "reader/FontReaders.h"
#include "reader/Readers.h"

#include <charconv>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <memory>
#include <optional>
#include <string_view>
#include <sys/ioctl.h>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace {

using quillmark::cli::Stream;

/// With a standard stream closed, the next file to be opened would take its place and get what was
/// meant for it. Opened the wrong way round, the stream fails as a closed one does.
void openMissingStreams()
{
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (fcntl(descriptor, F_GETFD) == -1)
            static_cast<void>(open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY));
}

Stream stream(int descriptor)
{
    constexpr std::size_t usualWidth = 80;
    if (isatty(descriptor) == 0) return {descriptor, std::nullopt};
    winsize size{};
    if (ioctl(descriptor, TIOCGWINSZ, &size) != 0 || size.ws_col == 0)
        return {descriptor, usualWidth};
    return {descriptor, size.ws_col};
}

std::string_view variable(const char* name)
{
    const char* value = std::getenv(name);
    return value == nullptr ? std::string_view() : value;
}

/// Builds that are to give the same bytes each time set the time that stands in what they make.
quillmark::PDFFontScanner::Clock checkClock()
{
    using namespace std::chrono;
    constexpr std::int64_t latest = duration_cast<seconds>(system_clock::duration::max()).count();
    const std::string_view text = variable("SOURCE_DATE_EPOCH");
    std::int64_t count = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), count);
    const bool isWhole = error == std::errc() && end == text.data() + text.size();
    if (!isWhole || count < 0 || count > latest) return system_clock::now;
    return [count] { return system_clock::time_point(seconds(count)); };
}

/// Where the application keeps the user's notes (XDG Base Directory Specification, which has paths
/// that are not absolute ignored).
std::optional<std::filesystem::path> notesFile()
{
    std::filesystem::path data(variable("XDG_DATA_HOME"));
    if (!data.is_absolute()) {
        const std::filesystem::path home(variable("HOME"));
        if (!home.is_absolute()) return std::nullopt;
        data = home / ".local/share";
    }
    return data / quillmark::Brand / "notes.json";
}

} // namespace

int main(int argumentCount, char** arguments)
{
    quillmark::keepMemory();
    openMissingStreams();
    // A closed pipe is an error of the write, and so is a file above the limit of its size.
    static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
    static_cast<void>(std::signal(SIGXFSZ, SIG_IGN));
    quillmark::cli::Interruption::install();
    // Such a terminal knows neither colours nor how to erase the progress line.
    const bool isDumb = variable("TERM").empty() || variable("TERM") == "dumb";
    // Their processes end with this one.
    const quillmark::reader::Readers ownReaders(
        quillmark::reader::besideThisProgram(quillmark::reader::Settings::Afterwards::kept));
    const std::shared_ptr<const quillmark::reader::Readers> readers(std::shared_ptr<void>(),
                                                                    &ownReaders);
    // Never freed: the process ends right behind it, and thousands of fonts take their time.
    static const quillmark::FontService& fonts = *new quillmark::SystemFontService(
        std::make_shared<quillmark::reader::FontReaders>(readers));
    const quillmark::cli::Environment environment{
        .fonts = fonts,
        .input = STDIN_FILENO,
        .output = stream(STDOUT_FILENO),
        .errors = isDumb ? Stream{STDERR_FILENO, std::nullopt} : stream(STDERR_FILENO),
        .locale = {},
        .notes = notesFile(),
        .plainTerminal = isDumb || !variable("NO_COLOR").empty(),
        .clock = checkClock(),
        .progressDelay = std::chrono::milliseconds(500),
        .readDocument = quillmark::reader::documentReader(readers),
    };
    const std::vector<std::string> given(arguments + (argumentCount > 0 ? 1 : 0),
                                         arguments + argumentCount);
    return quillmark::cli::run(given, environment);
}
