#include "cli/Console.h"

#include "cli/Help.h"
#include "cli/Interruption.h"
#include "files/FileDescriptor.h"
#include "text/DisplayWidth.h"
#include "text/Encoding.h"
#include "text/Printable.h"

namespace quillmark::cli {

using std::chrono::steady_clock;

Console::Console(const Stream& stream, Progress progress, std::chrono::milliseconds delay)
    : m_stream(stream), m_showsProgress(progress == Progress::shown && stream.columns),
      m_due(steady_clock::now() + delay)
{
}

Console::~Console()
{
    {
        const std::scoped_lock lock(m_mutex);
        erase();
        m_isEnding = true;
    }
    m_ended.notify_one();
    if (m_timer.joinable()) m_timer.join();
}

void Console::message(std::string_view sentence)
{
    line(std::string(programName).append(": ").append(sentence));
}

void Console::line(std::string_view text)
{
    eraseProgress();
    const std::string safe = printable(repairedUtf8(text)) + '\n';
    static_cast<void>(writeAll(m_stream.descriptor, safe));
}

void Console::showProgress(std::string_view text)
{
    if (!m_showsProgress || *m_stream.columns < 2) return;
    const std::scoped_lock lock(m_mutex);
    m_progress = printable(repairedUtf8(text));
    if (steady_clock::now() >= m_due)
        draw();
    else if (!m_timer.joinable())
        m_timer = std::thread([this] { drawWhenDue(); });
}

void Console::eraseProgress()
{
    const std::scoped_lock lock(m_mutex);
    erase();
}

void Console::draw()
{
    std::string line(eraseLine);
    // In the last column the cursor would move on to the next line.
    line += prefixOfWidth(m_progress, *m_stream.columns - 1);
    Interruption::setProgressLine(m_stream.descriptor, true);
    m_lineShown = true;
    static_cast<void>(writeAll(m_stream.descriptor, line));
}

void Console::erase()
{
    m_progress.clear();
    if (!m_lineShown) return;
    static_cast<void>(writeAll(m_stream.descriptor, eraseLine));
    Interruption::setProgressLine(m_stream.descriptor, false);
    m_lineShown = false;
}

void Console::drawWhenDue()
{
    std::unique_lock lock(m_mutex);
    m_ended.wait_until(lock, m_due, [this] { return m_isEnding; });
    if (!m_isEnding && !m_progress.empty() && !m_lineShown) draw();
}

} // namespace quillmark::cli
