#include "model/Attachments.h"

#include "files/DurableFile.h"
#include "files/FileDescriptor.h"
#include "files/Folders.h"

#include <array>
#include <cerrno>
#include <climits>
#include <cstddef>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quillmark {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t digitsOfName = 8;

FileError invalidName(std::string_view name)
{
    return FileError::ofSystem(name.size() > NAME_MAX ? ENAMETOOLONG : EINVAL);
}

/// Zero or the system's error number.
int copyAll(int from, int to)
{
    constexpr std::size_t pieceBytes = std::size_t{1} << 16U;
    std::array<char, pieceBytes> piece{};
    while (true) {
        const ssize_t count = read(from, piece.data(), piece.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return errno;
        if (count == 0) return 0;
        if (const int error = writeAll(to, {piece.data(), static_cast<std::size_t>(count)});
            error != 0)
            return error;
    }
}

} // namespace

bool Attachments::isName(std::string_view name)
{
    constexpr std::string_view separators("/\0", 2);
    return !name.empty() && name.size() <= NAME_MAX && name != "." && name != ".." &&
           name.find_first_of(separators) == std::string_view::npos;
}

std::string Attachments::newName(const MakeUUID& makeUUID, std::string_view fileName) const
{
    constexpr int mostTries = 100; // that a name is taken happens once in billions of times
    std::string name;
    std::error_code ignored;
    for (int i = 0; i < mostTries; ++i) {
        name = makeUUID().substr(0, digitsOfName) + "-" + std::string(fileName);
        if (!fs::exists(fs::symlink_status(m_folder / name, ignored))) break;
    }
    return name;
}

std::optional<FileError> Attachments::copy(const fs::path& file, const std::string& name) const
{
    if (!isName(name)) return invalidName(name);
    if (auto error = makeFolders(m_folder)) return error;

    struct stat status {};
    // Opening a pipe would wait for somebody to write into it.
    const FileDescriptor from = openFile(file, O_RDONLY | O_NONBLOCK | O_NOCTTY);
    if (!from.isOpen() || fstat(from.get(), &status) != 0) return FileError::ofSystem(errno);
    if (S_ISDIR(status.st_mode)) return FileError::ofSystem(EISDIR);
    if (!S_ISREG(status.st_mode)) return FileError{0, "Not a regular file"};

    auto made = DurableFile::createNew(m_folder, name, S_IRUSR | S_IWUSR);
    if (auto* error = std::get_if<FileError>(&made)) return std::move(*error);
    auto& to = std::get<DurableFile>(made);
    if (const int error = copyAll(from.get(), to.descriptor()); error != 0)
        return FileError::ofSystem(error);
    auto error = to.commit();
    // No note will name it.
    if (error && error->isDone) static_cast<void>(remove(name));
    return error;
}

std::variant<fs::path, FileError> Attachments::find(const std::string& name) const
{
    if (!isName(name)) return invalidName(name);
    const FileDescriptor folder = openFolder(m_folder, O_NOFOLLOW);
    struct stat status {};
    if (!folder.isOpen() || fstatat(folder.get(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0)
        return FileError::ofSystem(errno);
    if (!S_ISREG(status.st_mode)) return FileError{0, "Not a regular file"};
    return m_folder / name;
}

std::optional<FileError> Attachments::remove(const std::string& name) const
{
    if (!isName(name)) return invalidName(name);
    const FileDescriptor folder = openFolder(m_folder, O_NOFOLLOW);
    const bool isRemoved = folder.isOpen() && unlinkat(folder.get(), name.c_str(), 0) == 0;
    return isRemoved || errno == ENOENT ? std::nullopt : std::optional(FileError::ofSystem(errno));
}

} // namespace quillmark
