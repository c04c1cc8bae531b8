// One reader process as the program sees it that has started it. Readers.h has several of them work
// on a list.
#pragma once

#include "files/FileDescriptor.h"
#include "reader/Frames.h"
#include "reader/Limits.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

#include <sys/types.h>

namespace quillmark::reader {

/// How readers are started, and how long they may take.
struct Settings {
    /// What becomes of a process that has answered everything. A program that runs for a moment
    /// keeps it for what may come; one that runs for days should not.
    enum class Afterwards { kept, ended };

    std::filesystem::path program;
    Afterwards afterwards{};
    std::chrono::milliseconds silence{Limits::silence}; // for one file
};

/// The program cannot be started, or does not begin to work.
class StartFailure : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The number of the question that a process has begun to answer last, counted from 1. The process
/// writes it into memory that both see, which costs nothing for each of thousands of files; like
/// all that comes from there it may be anything.
using Begun = std::atomic<std::uint64_t>;
static_assert(Begun::is_always_lock_free);

class ReaderProcess {
public:
    enum class Event {
        answered, // something has come
        ended,
        silent, // nothing has come until the time was over
    };
    using Time = std::chrono::steady_clock::time_point;

    /// Starts the program. Throws StartFailure.
    explicit ReaderProcess(const std::filesystem::path& program);
    /// Ends the process.
    ~ReaderProcess();
    ReaderProcess(const ReaderProcess&) = delete;
    ReaderProcess& operator=(const ReaderProcess&) = delete;

    /// Where to append questions. They are on their way after the next `send` or `wait`.
    [[nodiscard]] std::string& questions() { return m_questions; }
    /// Sends as much as can be sent without waiting.
    void send();
    /// Waits until something has come, and sends meanwhile what is left.
    [[nodiscard]] Event wait(Time until);
    [[nodiscard]] FrameBuffer& answers() { return m_answers; }
    /// An answer is complete.
    void countAnswer() { ++m_answered; }
    /// How many questions behind those that are answered the process has begun last; absent when it
    /// says that it has not begun any of them. Zero is the next one.
    [[nodiscard]] std::optional<std::uint64_t> begunBehindAnswered() const;
    /// The system's number of the process.
    [[nodiscard]] pid_t number() const { return m_process; }

private:
    struct Unmap {
        void operator()(Begun* begun) const;
    };
    void start(const std::filesystem::path& program, int channel, int shared);

    FileDescriptor m_channel;
    std::unique_ptr<Begun, Unmap> m_begun;
    pid_t m_process{};
    std::uint64_t m_answered{};
    std::string m_questions;
    std::size_t m_sent{}; // of the questions
    FrameBuffer m_answers{Limits::messageBytes};
};

} // namespace quillmark::reader
