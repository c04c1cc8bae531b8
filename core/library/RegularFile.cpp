#include "library/RegularFile.h"

#include <cerrno>
#include <climits>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quillmark {

Location::Location(std::string path) : m_name(std::move(path))
{
    // One byte of PATH_MAX is the terminating zero.
    while (m_name.size() >= PATH_MAX) {
        const std::size_t cut = m_name.rfind('/', PATH_MAX - 2);
        if (cut == std::string::npos || cut == 0) return; // no name is that long: it will not open
        const std::string piece = m_name.substr(0, cut);
        const std::size_t rest = m_name.find_first_not_of('/', cut);
        FileDescriptor next(::openat(folder(), piece.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
        if (!next.isOpen() || rest == std::string::npos) return;
        m_folder = std::move(next);
        m_name.erase(0, rest);
    }
}

int Location::folder() const
{
    if (m_folder.isOpen()) return m_folder.get();
    return m_from >= 0 ? m_from : AT_FDCWD;
}

Location LastFolder::locate(const std::string& path)
{
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos || slash == 0) return Location(path);
    const std::string_view folder = std::string_view(path).substr(0, slash);
    if (folder != m_path) {
        m_path = folder;
        m_folder = {};
        return Location(path);
    }
    if (!m_folder.isOpen()) {
        const Location location(m_path);
        m_folder = FileDescriptor(
            ::openat(location.folder(), location.name(), O_PATH | O_DIRECTORY | O_CLOEXEC));
        if (!m_folder.isOpen()) return Location(path);
    }
    return {m_folder.get(), path.substr(slash + 1)};
}

std::optional<RegularFile> RegularFile::open(const Location& location)
{
    // Whoever lists files knows already what they are. If a pipe or a device has taken a file's
    // place since then, it is opened without waiting for anything, and left again at once.
    FileDescriptor descriptor(
        ::openat(location.folder(), location.name(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    struct stat status {};
    if (!descriptor.isOpen() || ::fstat(descriptor.get(), &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    return RegularFile(std::move(descriptor), static_cast<std::uint64_t>(status.st_size));
}

std::size_t RegularFile::read(std::uint64_t at, std::span<std::byte> into) const noexcept
{
    std::size_t done = 0;
    while (done < into.size()) {
        const ssize_t count = ::pread(m_descriptor.get(), into.data() + done, into.size() - done,
                                      static_cast<off_t>(at + done));
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) break;
        done += static_cast<std::size_t>(count);
    }
    return done;
}

} // namespace quillmark
