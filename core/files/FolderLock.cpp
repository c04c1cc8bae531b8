#include "files/FolderLock.h"

#include "files/Folders.h"

#include <cerrno>
#include <sys/file.h>
#include <thread>

namespace quillmark {

std::variant<FileDescriptor, FileError> lockFolder(const std::filesystem::path& folder,
                                                   std::chrono::milliseconds patience)
{
    using Clock = std::chrono::steady_clock;
    FileDescriptor lock = openFolder(folder);
    if (!lock.isOpen()) return FileError::ofSystem(errno);
    const auto deadline = Clock::now() + patience;
    // The system's own waiting has no end that can be chosen.
    constexpr std::chrono::milliseconds pause(2);
    while (flock(lock.get(), LOCK_EX | LOCK_NB) != 0) {
        switch (errno) {
        case EINTR:
            continue;
        case EWOULDBLOCK:
            if (Clock::now() >= deadline) return FileError{EWOULDBLOCK, "It is in use"};
            std::this_thread::sleep_for(pause);
            continue;
        case EBADF: // open only to be worked in, or served from elsewhere
        case EINVAL:
        case ENOLCK:
        case ENOSYS:
        case ENOTSUP:
            return FileDescriptor();
        default:
            return FileError::ofSystem(errno);
        }
    }
    return lock;
}

} // namespace quillmark
