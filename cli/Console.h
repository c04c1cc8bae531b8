// Standard error: messages, and on a terminal a line that tells what the program is doing.
#pragma once

#include "cli/Environment.h"

#include <string_view>

namespace quillmark::cli {

/// Moves to the start of the line and clears it.
inline constexpr std::string_view eraseLine = "\r\x1b[K";

/// Everything that is shown passes through `printable`. That standard error cannot be written is
/// nothing that could be reported, so it is ignored.
class Console {
public:
    enum class Progress { hidden, shown };

    /// Progress is shown on a terminal only.
    Console(const Stream& stream, Progress progress);
    ~Console();
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;

    /// Prints a line that starts with the program's name.
    void message(std::string_view sentence);
    /// Shows what is being done, in place of what stood there, cut to the terminal's width.
    void showProgress(std::string_view text);
    void eraseProgress();
    [[nodiscard]] bool showsProgress() const { return m_showsProgress; }

private:
    Stream m_stream;
    bool m_showsProgress{};
    bool m_lineShown{};
};

} // namespace quillmark::cli
