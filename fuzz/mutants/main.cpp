// Has the reader process read mutants of fonts or documents, one after the other, and tells of each
// over which it ends, is silent, says what no sound reader says or takes too much memory. Run by
// ../../scripts/mutants and by CTest.

#include "Inputs.h"

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
#include <string>
#include <string_view>
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

/// The most memory that a process has had, in MiB.
std::size_t mostMemory(pid_t process)
{
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with("VmHWM:")) return std::stoul(line.substr(6)) / 1024;
    return 0;
}

class Run {
public:
    Run(const Kind& kind, std::filesystem::path program, const std::filesystem::path& findings)
        : m_kind(kind), m_program(std::move(program)), m_findings(findings),
          m_file(m_folder.path() / ("mutant" + std::string(kind.extension)))
    {
    }

    void read(std::uint64_t number, const fuzz::Mutants::Mutant& mutant)
    {
        if (!m_process || number % perProcess == 0)
            m_process = std::make_unique<ReaderProcess>(m_program);
        {
            std::ofstream file(m_file, std::ios::binary | std::ios::trunc);
            file << test::asText(mutant.bytes);
            if (!file.flush()) throw std::runtime_error("a mutant could not be written");
        }
        const Clock::time_point begin = Clock::now();
        const char* problem = answered(begin + longest);
        const milliseconds time = ceil<milliseconds>(Clock::now() - begin);
        if (time > m_longestTime) {
            m_longestTime = time;
            m_slowest = number;
        }
        if (!problem) {
            const std::size_t memory = mostMemory(m_process->number());
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
    /// What is wrong with the answer, if anything.
    const char* answered(Clock::time_point end)
    {
        writeQuestion(m_process->questions(), m_kind.question, m_file.native());
        Answer answer(m_kind.question);
        for (;;) {
            switch (m_process->wait(end)) {
            case ReaderProcess::Event::ended:
                return "a crash";
            case ReaderProcess::Event::silent:
                return "silence";
            case ReaderProcess::Event::answered:
                break;
            }
            while (const auto frame = m_process->answers().next()) {
                switch (answer.add(*frame)) {
                case Progress::goesOn:
                    continue;
                case Progress::broken:
                    return "no answer";
                case Progress::ended:
                    m_process->countAnswer();
                    if (answer.takeFound()) ++m_readable;
                    return m_process->answers().isEmpty() ? nullptr : "too long an answer";
                }
            }
            if (m_process->answers().isBroken()) return "no answer";
        }
    }

    void keep(std::uint64_t number, const fuzz::Mutants::Mutant& mutant, const char* problem)
    {
        ++m_found;
        m_process.reset();
        std::filesystem::create_directories(m_findings);
        const auto path = m_findings / (std::string(m_kind.name) + '-' + std::to_string(number) +
                                        std::string(m_kind.extension));
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

std::optional<std::uint64_t> number(std::string_view text)
{
    std::uint64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return value;
}

} // namespace

int main(int argc, char** argv)
{
    const std::vector<std::string> given(argv + std::min(argc, 1), argv + argc);
    const auto kind = std::ranges::find(
        kinds, given.empty() ? std::string_view() : std::string_view(given.front()), &Kind::name);
    const auto first = given.size() == 7 ? number(given[5]) : std::nullopt;
    const auto count = given.size() == 7 ? number(given[6]) : std::nullopt;
    if (kind == kinds.end() || !first || !count) {
        std::fputs("usage: mutants fonts|documents READER SEEDS WORDS FINDINGS FIRST COUNT\n",
                   stderr);
        return EXIT_FAILURE;
    }
    std::unique_ptr<fuzz::Mutants> mutants;
    if (kind->question == reader::Question::document)
        mutants = std::make_unique<fuzz::DocumentMutants>(given[2], given[3]);
    else
        mutants = std::make_unique<fuzz::FontMutants>(given[2]);
    const Clock::time_point begin = Clock::now();
    Run run(*kind, given[1], given[4]);
    for (std::uint64_t i = 0; i < *count; ++i)
        run.read(*first + i, mutants->make(*first + i));
    return run.finish(*count, ceil<seconds>(Clock::now() - begin)) ? EXIT_SUCCESS : EXIT_FAILURE;
}
