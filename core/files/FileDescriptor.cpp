#include "files/FileDescriptor.h"

#include <cerrno>
#include <cstddef>
#include <fcntl.h>
#include <poll.h>
#include <system_error>
#include <unistd.h>

namespace quillmark {

int FileDescriptor::close()
{
    const int descriptor = std::exchange(m_descriptor, -1);
    if (descriptor < 0 || ::close(descriptor) == 0 || errno == EINTR) return 0;
    return errno;
}

FileDescriptor openFile(const std::filesystem::path& path, int flags)
{
    return openFileIn(AT_FDCWD, path.c_str(), flags);
}

FileDescriptor openFileIn(int folder, const std::string& name, int flags, unsigned mode)
{
    while (true) {
        FileDescriptor file(openat(folder, name.c_str(), flags | O_CLOEXEC, mode));
        // A file system that is served from elsewhere can be interrupted at that.
        if (file.isOpen() || errno != EINTR) return file;
    }
}

int writeAll(int descriptor, std::string_view bytes)
{
    while (!bytes.empty()) {
        const auto written = write(descriptor, bytes.data(), bytes.size());
        if (written >= 0) {
            bytes.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno == EAGAIN) {
            // Standard output can be shared with a program that has made it non-blocking.
            pollfd writable{descriptor, POLLOUT, 0};
            if (poll(&writable, 1, -1) < 0 && errno != EINTR) return errno;
        } else if (errno != EINTR) {
            return errno;
        }
    }
    return 0;
}

std::string errorText(int error)
{
    return std::generic_category().message(error);
}

} // namespace quillmark
