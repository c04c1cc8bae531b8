#include "CommandLineFixture.h"

#include "cli/CommandLine.h"
#include "files/FileDescriptor.h"

#include <array>
#include <chrono>
#include <fstream>
#include <iterator>
#include <sys/mman.h>
#include <unistd.h>

namespace quillmark::test {
namespace {

std::string readBack(const FileDescriptor& file)
{
    std::string text;
    std::array<char, 4096> piece{};
    lseek(file.get(), 0, SEEK_SET);
    for (auto count = read(file.get(), piece.data(), piece.size()); count > 0;
         count = read(file.get(), piece.data(), piece.size()))
        text.append(piece.data(), static_cast<std::size_t>(count));
    return text;
}

std::string replaced(std::string text, std::string_view what, std::string_view with)
{
    for (auto at = text.find(what); at != std::string::npos; at = text.find(what, at + with.size()))
        text.replace(at, what.size(), with);
    return text;
}

} // namespace

std::filesystem::path CommandLineFixture::addFile(const std::filesystem::path& relative,
                                                  const std::vector<FontValues>& faces)
{
    return test::addFile(fakeFonts, folder, relative, faces);
}

void CommandLineFixture::addInstalled(const FontValues& values)
{
    install(fakeFonts, values);
}

Outcome CommandLineFixture::run(const std::vector<std::string>& arguments)
{
    const FileDescriptor output(memfd_create("output", 0));
    const FileDescriptor errors(memfd_create("errors", 0));
    Outcome outcome;
    outcome.exitCode = runTo(output.get(), errors.get(), arguments);
    outcome.output = replaced(readBack(output), folder.path().native(), "FOLDER");
    outcome.errors = replaced(readBack(errors), folder.path().native(), "FOLDER");
    return outcome;
}

int CommandLineFixture::runTo(int output, int errors, const std::vector<std::string>& arguments)
{
    using namespace std::chrono;
    const cli::Environment environment{
        .fonts = *fonts,
        .input = standardInput,
        .output = {output, outputColumns},
        .errors = {errors, errorColumns},
        .locale = "en",
        .notes = applicationNotes,
        .plainTerminal = plainTerminal,
        .clock = [] { return sys_days(year(2026) / 11 / 21) + hours(4); },
        .progressDelay = progressDelay,
    };
    return cli::run(arguments, environment);
}

std::string CommandLineFixture::at(const std::filesystem::path& relative) const
{
    return folder.path() / relative;
}

std::optional<std::string> CommandLineFixture::content(const std::filesystem::path& relative) const
{
    std::ifstream file(folder.path() / relative, std::ios::binary);
    if (!file) return std::nullopt;
    return replaced({std::istreambuf_iterator<char>(file), {}}, folder.path().native(), "FOLDER");
}

} // namespace quillmark::test
