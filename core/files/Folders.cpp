#include "files/Folders.h"

#include "files/FileDescriptor.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace quillmark {

namespace fs = std::filesystem;

std::optional<FileError> makeFolders(const fs::path& folder)
{
    std::vector<fs::path> missing;
    struct stat status {};
    fs::path path = folder;
    while (!path.empty() && stat(path.c_str(), &status) != 0) {
        if (errno != ENOENT) return FileError::ofSystem(errno);
        // What ends in a slash is its own parent's only child, without a name.
        if (path.has_filename()) missing.push_back(path);
        path = path.parent_path();
    }
    if (!path.empty() && !S_ISDIR(status.st_mode)) return FileError::ofSystem(ENOTDIR);
    for (auto next = missing.rbegin(); next != missing.rend(); ++next) {
        // Somebody else can have made it in the meantime.
        if (mkdir(next->c_str(), S_IRWXU) != 0 && errno != EEXIST)
            return FileError::ofSystem(errno);
        if (const int error = syncFolder(next->parent_path()); error != 0)
            return FileError::ofSystem(error);
    }
    return std::nullopt;
}

int syncFolder(const fs::path& folder)
{
    const FileDescriptor open =
        openFile(folder.empty() ? fs::path(".") : folder, O_RDONLY | O_DIRECTORY);
    // Names can be changed in a folder that may not be listed.
    if (!open.isOpen()) return errno == EACCES ? 0 : errno;
    return syncDescriptor(open.get());
}

int syncDescriptor(int descriptor)
{
    while (fsync(descriptor) != 0) {
        switch (errno) {
        case EINTR:
            continue;
        case EINVAL: // no such thing in this file system
        case ENOSYS:
        case ENOTSUP:
            return 0;
        default:
            return errno;
        }
    }
    return 0;
}

} // namespace quillmark
