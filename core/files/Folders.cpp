#include "files/Folders.h"

#include <cerrno>
#include <cstdio>
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
        const bool isOurs = mkdir(next->c_str(), S_IRWXU) == 0;
        if (!isOurs && errno != EEXIST) return FileError::ofSystem(errno);
        if (const int error = syncFolder(next->parent_path()); error != 0) {
            // The next try would find it there, and not put it on the disk.
            if (isOurs) static_cast<void>(rmdir(next->c_str()));
            return FileError::ofSystem(error);
        }
    }
    return std::nullopt;
}

FileDescriptor openFolder(const fs::path& folder, int flags)
{
    const fs::path path = folder.empty() ? fs::path(".") : folder;
    FileDescriptor open = openFile(path, O_RDONLY | O_DIRECTORY | flags);
    // Names can be changed in a folder that may not be listed.
    if (!open.isOpen() && errno == EACCES) open = openFile(path, O_PATH | O_DIRECTORY | flags);
    return open;
}

int syncFolder(const fs::path& folder)
{
    const FileDescriptor open = openFolder(folder);
    return open.isOpen() ? syncFolder(open) : errno;
}

int syncFolder(const FileDescriptor& folder)
{
    const int error = syncDescriptor(folder.get());
    return error == EBADF ? 0 : error; // it is open only to be worked in
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

int renameToNew(int folder, const std::string& from, const std::string& to)
{
    if (renameat2(folder, from.c_str(), folder, to.c_str(), RENAME_NOREPLACE) == 0) return 0;
    if (errno != EINVAL && errno != ENOSYS) return errno;
    // A file system that cannot do that in one step has second names, or no way at all.
    if (linkat(folder, from.c_str(), folder, to.c_str(), 0) != 0) return errno;
    static_cast<void>(unlinkat(folder, from.c_str(), 0));
    return 0;
}

} // namespace quillmark
