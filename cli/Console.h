// Standard error: messages, and on a terminal a line that tells what the program is doing.
#pragma once

#include "cli/Environment.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

namespace quillmark::cli {

/// Moves to the start of the line and clears it.
inline constexpr std::string_view eraseLine = "\r\x1b[K";

/// Everything that is shown passes through `printable`. That standard error cannot be written is
/// nothing that could be reported, so it is ignored.
class Console {
public:
    enum class Progress { hidden, shown };

    /// Progress is shown on a terminal only, and not before `delay` has passed: what is done
    /// quickly flickers otherwise.
    Console(const Stream& stream, Progress progress, std::chrono::milliseconds delay = {});
    ~Console();
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;

    /// Prints a line that starts with the program's name.
    void message(std::string_view sentence);
    /// Prints a line as it is.
    void line(std::string_view text);
    /// Shows what is being done, in place of what stood there, cut to the terminal's width.
    void showProgress(std::string_view text);
    void eraseProgress();
    [[nodiscard]] bool showsProgress() const { return m_showsProgress; }

private:
    void draw();
    void erase();
    void drawWhenDue();

    Stream m_stream;
    bool m_showsProgress{};
    std::chrono::steady_clock::time_point m_due; // when progress may be shown
    std::mutex m_mutex;                          // of what follows
    std::condition_variable m_ended;
    std::string m_progress; // what is being done; empty: nothing to show
    bool m_lineShown{};
    bool m_isEnding{};
    std::thread m_timer; // shows what was being done when the delay ended, if it takes that long
};

} // namespace quillmark::cli
