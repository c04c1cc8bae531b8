// Being somebody to whom files can be unreadable, for tests that run as the superuser.
#pragma once

#include <exception>
#include <filesystem>
#include <stdexcept>

#include <unistd.h>

namespace quillmark::test {

/// While it lives, the process acts for an ordinary user; `visible` is opened to that user first.
/// Does nothing for ordinary users.
class Unprivileged {
public:
    explicit Unprivileged(const std::filesystem::path& visible)
    {
        if (::geteuid() != 0) return;
        using std::filesystem::perms;
        // The group stays the superuser's.
        std::filesystem::permissions(visible,
                                     perms::group_read | perms::group_exec | perms::others_read |
                                         perms::others_exec,
                                     std::filesystem::perm_options::add);
        constexpr uid_t nobody = 65534;
        if (::seteuid(nobody) != 0) throw std::runtime_error("seteuid");
        m_wasRoot = true;
    }
    ~Unprivileged()
    {
        if (m_wasRoot && ::seteuid(0) != 0) std::terminate();
    }
    Unprivileged(const Unprivileged&) = delete;
    Unprivileged& operator=(const Unprivileged&) = delete;

private:
    bool m_wasRoot{};
};

} // namespace quillmark::test
