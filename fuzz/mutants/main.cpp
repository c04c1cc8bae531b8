// Has the reader process read mutants of fonts or documents, one after the other, and tells of each
// over which it ends, is silent, says what no sound reader says or takes too much memory; or sees
// whether a process that reads both in turn takes more and more memory; or writes mutants for other
// programs; or has other files read. Run by ../../scripts/mutants, ../../scripts/hostile and by
// CTest.

#include "Inputs.h"

#include "reader/Limits.h"
#include "reader/Messages.h"
#include "reader/ReaderProcess.h"
#include "support/PDFBytes.h"
#include "support/TemporaryFolder.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <thread>
#include <variant>
#include <vector>

namespace {

using namespace quillmark;
using namespace std::chrono;
using reader::Progress;
using reader::ReaderProcess;
using Clock = steady_clock;

/// Mutants that one process reads.
constexpr std::uint64_t perProcess = 1'000;
constexpr seconds longest{5};

struct Kind {
    std::string_view name;
    reader::Question question;
    std::string_view extension;
    std::size_t mebibytes; // that a process may take
};
constexpr std::array kinds{
    Kind{"fonts", reader::Question::faces, ".ttf", 256},
    Kind{"documents", reader::Question::document, ".pdf", 512},
};

/// What a process says of one file.
class Answer {
public:
    explicit Answer(reader::Question question) : m_question(question) {}

    [[nodiscard]] Progress add(const reader::Frame& frame)
    {
        return m_question == reader::Question::document ? m_document.add(frame)
                                                        : m_faces.add(frame);
    }
    /// Whether something could be read.
    [[nodiscard]] bool takeFound()
    {
        if (m_question != reader::Question::document) return !m_faces.take({}).empty();
        const auto reading = m_document.take();
        const auto* fonts = std::get_if<DocumentFonts>(&reading);
        return fonts && !fonts->fonts.empty();
    }

private:
    reader::Question m_question;
    reader::FacesAnswer m_faces;
    reader::DocumentAnswer m_document;
};

/// A figure of the memory of a process, in KiB; zero if there is none. VmHWM is the most that it
/// has had, RssAnon what it has of its own, without its program and libraries.
std::size_t memoryOf(pid_t process, std::string_view figure)
{
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with(figure)) return std::stoul(line.substr(figure.size() + 1));
    return 0;
}

/// What a process that has been asked nothing for a moment has of its own, in KiB.
std::size_t idleMemoryOf(pid_t process)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    return memoryOf(process, "RssAnon:");
}

void write(const std::filesystem::path& path, const test::Bytes& bytes)
{
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << test::asText(bytes);
    if (!file.flush()) throw std::runtime_error("a mutant could not be written");
}

std::string fileName(const Kind& kind, std::uint64_t number)
{
    return std::string(kind.name) + '-' + std::to_string(number) + std::string(kind.extension);
}

/// Has a process read one file: what is wrong with its answer, if anything. `readable` counts the
/// files of which something could be read.
const char* readFile(ReaderProcess& process, reader::Question question,
                     const std::filesystem::path& file, std::uint64_t& readable,
                     milliseconds patience = longest)
{
    const Clock::time_point end = Clock::now() + patience;
    writeQuestion(process.questions(), question, file.native());
    Answer answer(question);
    for (;;) {
        switch (process.wait(end)) {
        case ReaderProcess::Event::ended:
            return "a crash";
        case ReaderProcess::Event::silent:
            return "silence";
        case ReaderProcess::Event::answered:
            break;
        }
        while (const auto frame = process.answers().next()) {
            switch (answer.add(*frame)) {
            case Progress::goesOn:
                continue;
            case Progress::broken:
                return "no answer";
            case Progress::ended:
                process.countAnswer();
                if (answer.takeFound()) ++readable;
                return process.answers().isEmpty() ? nullptr : "too long an answer";
            }
        }
        if (process.answers().isBroken()) return "no answer";
    }
}

class Run {
public:
    Run(const Kind& kind, std::filesystem::path program, std::filesystem::path findings)
        : m_kind(kind), m_program(std::move(program)), m_findings(std::move(findings)),
          m_file(m_folder.path() / ("mutant" + std::string(kind.extension)))
    {
    }

    void read(std::uint64_t number, const fuzz::Mutants::Mutant& mutant)
    {
        if (!m_process || number % perProcess == 0)
            m_process = std::make_unique<ReaderProcess>(m_program);
        write(m_file, mutant.bytes);
        const Clock::time_point begin = Clock::now();
        const char* problem = readFile(*m_process, m_kind.question, m_file, m_readable);
        const milliseconds time = ceil<milliseconds>(Clock::now() - begin);
        if (time > m_longestTime) {
            m_longestTime = time;
            m_slowest = number;
        }
        if (!problem) {
            const std::size_t memory = memoryOf(m_process->number(), "VmHWM:") / 1024;
            if (memory == 0) problem = "memory that could not be measured";
            if (memory > m_kind.mebibytes) problem = "too much memory";
            m_mostMemory = std::max(m_mostMemory, memory);
        }
        if (problem) keep(number, mutant, problem);
    }

    /// Prints what was seen; whether nothing was found.
    [[nodiscard]] bool finish(std::uint64_t count, seconds time) const
    {
        std::printf("%llu %.*s in %lld s: something was read of %llu; the slowest (%llu) took %lld "
                    "ms, the largest process %zu MiB; %d findings\n",
                    static_cast<unsigned long long>(count), static_cast<int>(m_kind.name.size()),
                    m_kind.name.data(), static_cast<long long>(time.count()),
                    static_cast<unsigned long long>(m_readable),
                    static_cast<unsigned long long>(m_slowest),
                    static_cast<long long>(m_longestTime.count()), m_mostMemory, m_found);
        return m_found == 0;
    }

private:
    void keep(std::uint64_t number, const fuzz::Mutants::Mutant& mutant, const char* problem)
    {
        ++m_found;
        m_process.reset();
        std::filesystem::create_directories(m_findings);
        const auto path = m_findings / fileName(m_kind, number);
        std::filesystem::copy_file(m_file, path, std::filesystem::copy_options::overwrite_existing);
        std::printf("%s over mutant %llu, made of %s: %s\n", problem,
                    static_cast<unsigned long long>(number), mutant.name.c_str(), path.c_str());
    }

    const Kind& m_kind;
    std::filesystem::path m_program;
    std::filesystem::path m_findings;
    test::TemporaryFolder m_folder;
    std::filesystem::path m_file;
    std::unique_ptr<ReaderProcess> m_process;
    std::uint64_t m_readable{};
    std::uint64_t m_slowest{};
    milliseconds m_longestTime{};
    std::size_t m_mostMemory{};
    int m_found{};
};

/// Has one process read so many mutants of each kind in turn; whether its memory has grown by no
/// more than a twentieth, or than a heap of this size may be in pieces, since the first fifth.
bool staysSmall(const std::filesystem::path& program,
                const std::vector<std::unique_ptr<fuzz::Mutants>>& mutants, std::uint64_t first,
                std::uint64_t count)
{
    const test::TemporaryFolder folder;
    const auto file = folder.path() / "mutant";
    ReaderProcess process(program);
    std::uint64_t readable = 0;
    std::size_t fifth = 0;
    for (std::uint64_t i = 0; i < count; ++i) {
        for (std::size_t kind = 0; kind < kinds.size(); ++kind) {
            write(file, mutants[kind]->make(first + i).bytes);
            if (const char* problem = readFile(process, kinds[kind].question, file, readable)) {
                std::printf("%s over %s %llu\n", problem, std::string(kinds[kind].name).c_str(),
                            static_cast<unsigned long long>(first + i));
                return false;
            }
        }
        if (i == count / 5) fifth = idleMemoryOf(process.number());
    }
    const std::size_t end = idleMemoryOf(process.number());
    std::printf("%llu fonts and as many documents in one process: something was read of %llu; %zu "
                "KiB after the first fifth, %zu KiB at the end\n",
                static_cast<unsigned long long>(count), static_cast<unsigned long long>(readable),
                fifth, end);
    constexpr std::size_t pieces = 128; // KiB
    return fifth > 0 && end <= fifth + std::max(fifth / 20, pieces);
}

/// Has a process read each of these files; whether none of them ended it, or got no answer.
bool outlives(const std::filesystem::path& program, std::span<const std::string> files)
{
    std::uint64_t readable = 0;
    std::size_t found = 0;
    auto process = std::make_unique<ReaderProcess>(program);
    for (const std::string& file : files) {
        const auto kind = std::ranges::find(
            kinds, file.ends_with(".pdf") ? reader::Question::document : reader::Question::faces,
            &Kind::question);
        // How long they take is for others to judge, who know what else the machine does.
        const char* problem =
            readFile(*process, kind->question, file, readable, reader::Limits::silence);
        if (!problem) continue;
        std::printf("%s over %s\n", problem, file.c_str());
        ++found;
        process = std::make_unique<ReaderProcess>(program);
    }
    return found == 0;
}

std::optional<std::uint64_t> number(std::string_view text)
{
    std::uint64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return value;
}

constexpr const char* usage =
    "usage: mutants fonts|documents SEEDS WORDS FIRST COUNT READER FINDINGS\n"
    "       mutants growth SEEDS WORDS FIRST COUNT READER\n"
    "       mutants write SEEDS WORDS FIRST COUNT FOLDER\n"
    "       mutants files READER FILE...\n";

} // namespace

int main(int argc, char** argv)
{
    const std::vector<std::string> given(argv + std::min(argc, 1), argv + argc);
    const std::string what = given.empty() ? "" : given.front();
    if (what == "files" && given.size() >= 3)
        return outlives(given[1], std::span(given).subspan(2)) ? EXIT_SUCCESS : EXIT_FAILURE;
    const auto kind = std::ranges::find(kinds, std::string_view(what), &Kind::name);
    const bool isKnown = kind != kinds.end()
                             ? given.size() == 7
                             : (what == "growth" || what == "write") && given.size() == 6;
    const auto first = isKnown ? number(given[3]) : std::nullopt;
    const auto count = isKnown ? number(given[4]) : std::nullopt;
    if (!first || !count) {
        std::fputs(usage, stderr);
        return EXIT_FAILURE;
    }
    // In the order of `kinds`.
    std::vector<std::unique_ptr<fuzz::Mutants>> mutants;
    mutants.push_back(std::make_unique<fuzz::FontMutants>(given[1]));
    mutants.push_back(std::make_unique<fuzz::DocumentMutants>(given[1], given[2]));
    if (what == "growth")
        return staysSmall(given[5], mutants, *first, *count) ? EXIT_SUCCESS : EXIT_FAILURE;
    if (what == "write") {
        std::filesystem::create_directories(given[5]);
        for (std::uint64_t i = *first; i < *first + *count; ++i)
            for (std::size_t each = 0; each < kinds.size(); ++each)
                write(std::filesystem::path(given[5]) / fileName(kinds[each], i),
                      mutants[each]->make(i).bytes);
        return EXIT_SUCCESS;
    }
    const auto& chosen = *mutants[static_cast<std::size_t>(kind - kinds.begin())];
    const Clock::time_point begin = Clock::now();
    Run run(*kind, given[5], given[6]);
    for (std::uint64_t i = 0; i < *count; ++i)
        run.read(*first + i, chosen.make(*first + i));
    return run.finish(*count, ceil<seconds>(Clock::now() - begin)) ? EXIT_SUCCESS : EXIT_FAILURE;
}
