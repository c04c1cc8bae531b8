#include "notes/NotesFile.h"

#include "files/DurableFile.h"
#include "files/FolderLock.h"
#include "files/Folders.h"
#include "files/ReadFile.h"
#include "notes/Limits.h"
#include "notes/NotesJson.h"
#include "text/IsoDate.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace quillmark {

namespace fs = std::filesystem;

namespace {

/// "20261122T021000Z": the colons of the longer form are not for every file system.
std::string fileNameDate(std::chrono::sys_seconds time)
{
    std::string date = isoDate(time);
    std::erase_if(date, [](char character) { return character == '-' || character == ':'; });
    return date;
}

/// Zero or the system's error number; never replaces a file.
int addName(const fs::path& file, const fs::path& name)
{
    if (link(file.c_str(), name.c_str()) == 0) return 0;
    if (errno == EEXIST) return EEXIST;
    // Not every file system has second names, nor may every file be given one.
    return renameToNew(AT_FDCWD, file, name);
}

/// A file beside `file` that begins with `stem` and is the same file; empty when there is none.
fs::path sameFile(const fs::path& file, const struct stat& status, std::string_view stem)
{
    if (status.st_nlink < 2) return {};
    const fs::path folder = file.has_parent_path() ? file.parent_path() : ".";
    std::error_code error;
    for (auto entry = fs::directory_iterator(folder, error);
         !error && entry != fs::directory_iterator(); entry.increment(error)) {
        struct stat other {};
        if (entry->path().filename().native().starts_with(stem) &&
            lstat(entry->path().c_str(), &other) == 0 && other.st_ino == status.st_ino &&
            other.st_dev == status.st_dev)
            return entry->path();
    }
    return {};
}

} // namespace

std::variant<NotesJson::Decoded, NotesError> readNotesFile(const fs::path& path)
{
    const auto read = readFile(path, Limits::notesFileBytes);
    if (const auto* error = std::get_if<FileError>(&read)) {
        const bool isMissing = error->number == ENOENT || error->number == ENOTDIR;
        const auto kind = isMissing ? NotesError::Kind::missing : NotesError::Kind::unreadable;
        return NotesError(kind, path, error->reason);
    }
    auto decoded = NotesJson::decode(std::get<std::string>(read));
    if (auto* damage = std::get_if<NotesJson::Damage>(&decoded))
        return NotesError(NotesError::Kind::malformed, path, std::move(damage->reason));
    return std::move(std::get<NotesJson::Decoded>(decoded));
}

std::variant<FileDescriptor, NotesError> lockNotesFile(const fs::path& path)
{
    const auto failed = [&path](FileError error) {
        return NotesError(NotesError::Kind::notSaved, path, std::move(error.reason));
    };
    // A save takes a moment; who takes longer has been stopped.
    constexpr std::chrono::seconds patience(10);
    if (auto error = makeFolders(path.parent_path())) return failed(*std::move(error));
    auto lock = lockFolder(endOfLinks(path).parent_path(), patience);
    if (auto* error = std::get_if<FileError>(&lock)) return failed(std::move(*error));
    return std::move(std::get<FileDescriptor>(lock));
}

std::variant<fs::path, NotesError> keepUnreadable(const fs::path& path,
                                                  std::chrono::sys_seconds now)
{
    const auto failed = [&path](FileError error) {
        return NotesError(NotesError::Kind::notSaved, path, std::move(error.reason));
    };
    const fs::path file = endOfLinks(path);
    struct stat status {};
    if (lstat(file.c_str(), &status) != 0) return failed(FileError::ofSystem(errno));
    if (!S_ISREG(status.st_mode)) return failed({0, "Not a regular file"});

    const auto onDisk = [&failed](fs::path kept) -> std::variant<fs::path, NotesError> {
        if (const int unsure = syncFolder(kept.parent_path()); unsure != 0)
            return failed(FileError::ofSystem(unsure));
        return kept;
    };
    const std::string anyTime = path.stem().native() + ".unreadable-";
    // Whoever cannot save tries again and again.
    if (fs::path kept = sameFile(file, status, anyTime); !kept.empty())
        return onDisk(std::move(kept));
    const std::string stem = anyTime + fileNameDate(now);
    constexpr int mostInOneSecond = 1000;
    for (int number = 1; number <= mostInOneSecond; ++number) {
        const std::string counted = number == 1 ? stem : stem + "-" + std::to_string(number);
        fs::path kept = file.parent_path() / (counted + path.extension().native());
        const int error = addName(file, kept);
        if (error == EEXIST) continue;
        if (error != 0) return failed(FileError::ofSystem(error));
        return onDisk(std::move(kept));
    }
    return failed(FileError::ofSystem(EEXIST));
}

} // namespace quillmark
