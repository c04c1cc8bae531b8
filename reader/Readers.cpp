#include "reader/Readers.h"

#include "files/ProcessMemory.h"
#include "files/ProgramFiles.h"
#include "library/FontFiles.h"
#include "library/Parallel.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <exception>
#include <system_error>
#include <thread>
#include <utility>

namespace quillmark::reader {

using Clock = std::chrono::steady_clock;

namespace {

/// So many ordinary files take longer than another process to start.
constexpr std::size_t filesWorthAProcess = 256;
/// Files that are not ordinary show after that time.
constexpr std::chrono::milliseconds patience{4};

} // namespace

/// The questions that no process has yet.
class Readers::Queue {
public:
    Queue(std::size_t count, std::size_t lanes)
        : m_count(count), m_piece(std::clamp<std::size_t>(count / (lanes * 8), 1, mostAtOnce))
    {
    }

    /// How many questions a lane takes at once: few enough that all lanes end together.
    [[nodiscard]] std::size_t piece() const { return m_piece; }

    struct Piece {
        std::size_t begin{};
        std::size_t end{};
    };
    [[nodiscard]] Piece take()
    {
        const std::lock_guard lock(m_mutex);
        const Piece piece{m_next, std::min(m_count, m_next + m_piece)};
        m_next = piece.end;
        if (m_next == m_count) m_isEmpty.notify_all();
        return piece;
    }
    /// Leaves nothing to be taken, because of `failure`.
    void abandon(std::exception_ptr failure)
    {
        const std::lock_guard lock(m_mutex);
        if (!m_failure) m_failure = std::move(failure);
        m_next = m_count;
        m_isEmpty.notify_all();
    }
    /// Waits so long; false if all questions are taken by then.
    [[nodiscard]] bool lasts(Clock::duration time)
    {
        std::unique_lock lock(m_mutex);
        return !m_isEmpty.wait_for(lock, time, [this] { return m_next == m_count; });
    }
    [[nodiscard]] std::exception_ptr failure() const { return m_failure; }

private:
    /// Enough that neither side waits for the other after each few files.
    static constexpr std::size_t mostAtOnce = 64;

    std::size_t m_count;
    std::size_t m_piece;
    std::size_t m_next{};
    std::exception_ptr m_failure;
    std::mutex m_mutex;
    std::condition_variable m_isEmpty;
};

/// One process at a time, and what it has been asked.
class Readers::Lane {
public:
    Lane(const Readers& readers, const Questions& questions, Queue& queue)
        : m_readers(readers), m_questions(questions), m_queue(queue),
          m_silence(questions.silence.value_or(readers.m_settings.silence))
    {
    }

    void run()
    {
        askMore();
        if (m_asked.empty()) return;
        if (m_questions.count >= filesWorthAProcess) reserveMemory(keptOfAFile * m_questions.count);
        m_answers = m_questions.makeAnswers();
        while (!m_asked.empty()) {
            switch (m_process->wait(m_answeredLast + m_silence)) {
            case ReaderProcess::Event::answered:
                takeAnswers();
                break;
            case ReaderProcess::Event::ended:
            case ReaderProcess::Event::silent:
                startAgain(lostQuestion());
                break;
            }
        }
        m_readers.keep(std::move(m_process));
    }

private:
    /// Sends questions ahead, so that the process has work while its answers are taken; or, while
    /// there are some to be asked again, one alone.
    void askMore()
    {
        if (!m_again.empty()) {
            if (!m_asked.empty()) return;
            ask(m_again.front());
            m_again.pop_front();
            m_process->send();
            m_answeredLast = Clock::now();
            return;
        }
        if (m_asked.size() > m_queue.piece()) return;
        const Queue::Piece piece = m_queue.take();
        if (piece.begin == piece.end) return;
        if (!m_process) m_process = m_readers.process();
        if (m_asked.empty()) m_answeredLast = Clock::now();
        for (std::size_t i = piece.begin; i < piece.end; ++i)
            ask(i);
        m_process->send();
    }

    void ask(std::size_t i)
    {
        m_asked.push_back(i);
        m_questions.write(i, m_process->questions());
    }

    void takeAnswers()
    {
        bool isOneComplete = false;
        while (const auto frame = m_process->answers().next()) {
            if (m_asked.empty()) { // it says more than it was asked
                m_process.reset();
                return;
            }
            switch (m_answers->add(*frame)) {
            case Progress::goesOn:
                continue;
            case Progress::ended:
                m_answers->deliver(m_asked.front());
                m_asked.pop_front();
                m_process->countAnswer();
                m_barrenStarts = 0;
                isOneComplete = true;
                askMore();
                break;
            case Progress::broken:
                startAgain(lostQuestion().value_or(0));
                return;
            }
        }
        // Once for all of them, for they are thousands.
        if (isOneComplete) m_answeredLast = Clock::now();
        if (!m_asked.empty() && m_process->answers().isBroken())
            startAgain(lostQuestion().value_or(0));
    }

    /// The place among those asked of the question that the process has begun last; absent when it
    /// has not begun any of them, or says what cannot be.
    [[nodiscard]] std::optional<std::size_t> lostQuestion() const
    {
        const auto place = m_process->begunBehindAnswered();
        if (place && m_asked.size() == 1) return 0;
        return place && *place < m_asked.size() ? place : std::nullopt;
    }

    /// Asks a new process what the last one has not answered, but for the question at `lost`. If
    /// the last one has said a false one, each is asked alone: then it shows which one it ends
    /// over.
    void startAgain(std::optional<std::size_t> lost)
    {
        const bool isFalse = !lost && m_process->begunBehindAnswered();
        m_process.reset();
        m_answers->clear();
        if (lost) {
            const auto place = m_asked.begin() + static_cast<std::ptrdiff_t>(*lost);
            m_answers->lose(*place);
            m_asked.erase(place);
            m_barrenStarts = 0;
        } else if (++m_barrenStarts == Limits::barrenStarts) {
            throw StartFailure("the program " + m_readers.m_settings.program.native() +
                               " does not work");
        }
        if (isFalse || !m_again.empty()) {
            m_again.insert(m_again.begin(), m_asked.begin(), m_asked.end());
            m_asked.clear();
        }
        if (!m_asked.empty() || !m_again.empty())
            m_process = std::make_unique<ReaderProcess>(m_readers.m_settings.program);
        if (!m_asked.empty()) {
            for (const std::size_t i : std::exchange(m_asked, {}))
                ask(i);
            m_process->send();
            m_answeredLast = Clock::now();
        }
        askMore();
    }

    const Readers& m_readers;
    const Questions& m_questions;
    Queue& m_queue;
    Clock::duration m_silence;
    std::unique_ptr<ReaderProcess> m_process;
    std::unique_ptr<Answers> m_answers;
    std::deque<std::size_t> m_asked;  // in the order in which they will be answered
    std::deque<std::size_t> m_again;  // to be asked again, each alone
    Clock::time_point m_answeredLast; // or, behind that, when the process had nothing to do
    int m_barrenStarts{};
};

Readers::Readers(Settings settings) : m_settings(std::move(settings)) {}

Readers::~Readers() = default;

void Readers::ask(const Questions& questions) const
{
    const std::size_t lanes = std::min(coreCount(), questions.count);
    if (lanes == 0) return;
    Queue queue(questions.count, lanes);
    const auto run = [&] {
        try {
            Lane(*this, questions, queue).run();
        } catch (...) {
            queue.abandon(std::current_exception());
        }
    };
    std::vector<std::jthread> threads;
    try {
        for (std::size_t i = 1; i < lanes; ++i)
            threads.emplace_back([&, i] {
                if (questions.count / filesWorthAProcess > i || queue.lasts(patience * i)) run();
            });
    } catch (const std::system_error&) {
        // The system has no more threads to give; those that there are do the work.
    }
    run();
    threads.clear(); // joins
    if (queue.failure()) std::rethrow_exception(queue.failure());
}

std::unique_ptr<ReaderProcess> Readers::process() const
{
    {
        const std::lock_guard lock(m_mutex);
        if (!m_idle.empty()) {
            auto process = std::move(m_idle.back());
            m_idle.pop_back();
            return process;
        }
    }
    return std::make_unique<ReaderProcess>(m_settings.program);
}

void Readers::keep(std::unique_ptr<ReaderProcess> process) const
{
    if (m_settings.afterwards == Settings::Afterwards::ended) return;
    if (!process || !process->answers().isEmpty()) return;
    const std::lock_guard lock(m_mutex);
    m_idle.push_back(std::move(process));
}

Settings besideThisProgram(Settings::Afterwards afterwards)
{
    return {besideProgram("lib/quillmark/quillmark-reader"), afterwards};
}

} // namespace quillmark::reader
