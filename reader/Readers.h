// Reader processes that work on lists of files. FontReaders.h and DocumentReader.h say what is
// read.
#pragma once

#include "reader/Messages.h"
#include "reader/ReaderProcess.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace quillmark::reader {

/// Takes the answers to one question after the other, those of one process.
class Answers {
public:
    virtual ~Answers() = default;
    /// A message of the answer to a question.
    [[nodiscard]] virtual Progress add(const Frame& frame) = 0;
    /// Hands on the answer to question `i`, which is complete, and is ready for the next one.
    virtual void deliver(std::size_t i) = 0;
    /// Hands on that there is no answer to question `i`: the process ended over it, did not answer
    /// in time, or answered what no sound reader does.
    virtual void lose(std::size_t i) = 0;
    /// Forgets what has come: the same question will be answered again.
    virtual void clear() = 0;
};

/// Questions that may be answered in any order.
struct Questions {
    std::size_t count{};
    /// Appends question `i`; called by several threads at once.
    std::function<void(std::size_t i, std::string& into)> write;
    /// Makes the receiver of what one process answers.
    std::function<std::unique_ptr<Answers>()> makeAnswers;
    /// How long the answer to one of them may take, if not as long as one about a file.
    std::optional<std::chrono::milliseconds> silence{};
};

/// May be used by several threads at once; each call has processes of its own.
class Readers {
public:
    explicit Readers(Settings settings);
    ~Readers();
    Readers(const Readers&) = delete;
    Readers& operator=(const Readers&) = delete;

    /// Has all questions answered, by as many processes as this one may use cores. Each question is
    /// delivered or lost once, by several threads at once. When a process ends or is silent, only
    /// the file that it had begun to read is lost: a new one goes on. Throws StartFailure, and the
    /// first exception that comes from the questions or the answers.
    void ask(const Questions& questions) const;

private:
    class Queue;
    class Lane;

    [[nodiscard]] std::unique_ptr<ReaderProcess> process() const;
    void keep(std::unique_ptr<ReaderProcess> process) const;

    Settings m_settings;
    mutable std::mutex m_mutex;
    mutable std::vector<std::unique_ptr<ReaderProcess>> m_idle;
};

/// The settings for the reader program that belongs to the running program.
[[nodiscard]] Settings besideThisProgram(Settings::Afterwards afterwards);

} // namespace quillmark::reader
