// What is being done in the background: what of it to show, and whose results still count.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace quillmark {

/// Work of one kind. The same thing can be under way twice, as when somebody asks for a rescan
/// during a scan; then the newer results stay, whichever are ready first.
class RunningWork {
public:
    /// Later work has a higher number.
    using Ticket = std::uint64_t;

    /// Work on `subject`, such as a folder's path, begins; it is shown as `name`.
    [[nodiscard]] Ticket begin(std::string subject, std::string name);
    /// The work has ended. Whether its results count: not when later work on the subject has ended.
    [[nodiscard]] bool end(Ticket ticket);

    /// The name of what began last among all that has not ended; absent when all has.
    [[nodiscard]] std::optional<std::string> latest() const;

private:
    struct Work {
        Ticket ticket{};
        std::string subject;
        std::string name;
    };
    std::vector<Work> m_running;            // in the order in which they began
    std::map<std::string, Ticket> m_newest; // of the work that has ended, by subject
    Ticket m_last{};
};

} // namespace quillmark
