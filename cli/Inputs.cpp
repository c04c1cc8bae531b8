#include "cli/Inputs.h"

#include "files/FileDescriptor.h"
#include "text/Encoding.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

namespace quillmark::cli {

namespace fs = std::filesystem;

std::string shownPath(const fs::path& path)
{
    return repairedUtf8(path.native());
}

std::string shownName(const fs::path& path)
{
    return shownPath(path.has_filename() ? path.filename() : path);
}

std::variant<InputKind, ReadFailure> inspect(const fs::path& path)
{
    struct stat status {};
    if (stat(path.c_str(), &status) != 0) return ReadFailure{errorText(errno)};
    const bool isFolder = S_ISDIR(status.st_mode);
    // Opening a pipe would wait for somebody to write into it.
    if (!isFolder && !S_ISREG(status.st_mode))
        return ReadFailure{"Neither a folder nor a regular file"};
    const FileDescriptor file =
        openFile(path, isFolder ? O_RDONLY | O_DIRECTORY : O_RDONLY | O_NONBLOCK);
    if (!file.isOpen()) return ReadFailure{errorText(errno)};
    return isFolder ? InputKind::folder : InputKind::file;
}

} // namespace quillmark::cli
