#include "cli/Console.h"

#include "cli/Help.h"
#include "cli/Interruption.h"
#include "files/FileDescriptor.h"
#include "text/DisplayWidth.h"
#include "text/Encoding.h"
#include "text/Printable.h"

#include <string>

namespace quillmark::cli {

Console::Console(const Stream& stream, Progress progress)
    : m_stream(stream), m_showsProgress(progress == Progress::shown && stream.columns)
{
}

Console::~Console()
{
    eraseProgress();
}

void Console::message(std::string_view sentence)
{
    eraseProgress();
    std::string line(programName);
    line += ": ";
    line += printable(repairedUtf8(sentence));
    line += '\n';
    static_cast<void>(writeAll(m_stream.descriptor, line));
}

void Console::showProgress(std::string_view text)
{
    if (!m_showsProgress || *m_stream.columns < 2) return;
    const std::string safe = printable(repairedUtf8(text));
    std::string line(eraseLine);
    // In the last column the cursor would move on to the next line.
    line += prefixOfWidth(safe, *m_stream.columns - 1);
    Interruption::setProgressLine(m_stream.descriptor, true);
    m_lineShown = true;
    static_cast<void>(writeAll(m_stream.descriptor, line));
}

void Console::eraseProgress()
{
    if (!m_lineShown) return;
    static_cast<void>(writeAll(m_stream.descriptor, eraseLine));
    Interruption::setProgressLine(m_stream.descriptor, false);
    m_lineShown = false;
}

} // namespace quillmark::cli
