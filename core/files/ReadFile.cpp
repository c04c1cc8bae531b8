#include "files/ReadFile.h"

#include "files/FileDescriptor.h"

#include <cerrno>
#include <cstdint>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quillmark {

std::variant<std::string, FileError> readFile(const std::filesystem::path& path, std::size_t limit)
{
    const FileDescriptor file = openFile(path, O_RDONLY | O_NONBLOCK | O_NOCTTY);
    struct stat status {};
    if (!file.isOpen() || fstat(file.get(), &status) != 0) return FileError::ofSystem(errno);
    if (S_ISDIR(status.st_mode)) return FileError::ofSystem(EISDIR);
    if (!S_ISREG(status.st_mode)) return FileError{0, "Not a regular file"};
    if (std::cmp_greater(status.st_size, limit)) return FileError::ofSystem(EFBIG);

    // One byte more than expected shows the end of a file that has not grown meanwhile.
    std::string bytes(static_cast<std::size_t>(status.st_size) + 1, '\0');
    std::size_t size = 0;
    while (true) {
        const ssize_t count = read(file.get(), bytes.data() + size, bytes.size() - size);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return FileError::ofSystem(errno);
        size += static_cast<std::size_t>(count);
        if (size > limit) return FileError::ofSystem(EFBIG);
        if (count == 0) break;
        if (size == bytes.size()) bytes.resize(2 * size);
    }
    bytes.resize(size);
    return bytes;
}

} // namespace quillmark
