#include "model/RunningWork.h"

#include <algorithm>
#include <utility>

namespace quillmark {

RunningWork::Ticket RunningWork::begin(std::string subject, std::string name)
{
    m_running.push_back({++m_last, std::move(subject), std::move(name)});
    return m_last;
}

bool RunningWork::end(Ticket ticket)
{
    const auto found = std::ranges::find(m_running, ticket, &Work::ticket);
    if (found == m_running.end()) return false;
    Ticket& newest = m_newest[found->subject];
    m_running.erase(found);
    if (newest > ticket) return false;
    newest = ticket;
    return true;
}

std::optional<std::string> RunningWork::latest() const
{
    if (m_running.empty()) return std::nullopt;
    return m_running.back().name;
}

} // namespace quillmark
