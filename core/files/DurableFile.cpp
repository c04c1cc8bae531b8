#include "files/DurableFile.h"

#include "files/Folders.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace quillmark {

namespace fs = std::filesystem;

unsigned newFileMode()
{
    const mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

fs::path endOfLinks(fs::path path)
{
    constexpr int most = 40; // as many as Linux follows
    std::error_code error;
    for (int links = 0; links < most && fs::is_symlink(path, error); ++links)
        path = path.parent_path() / fs::read_symlink(path, error);
    return path;
}

std::variant<DurableFile, FileError> DurableFile::create(const fs::path& path, unsigned newMode)
{
    struct stat status {};
    const bool exists = stat(path.c_str(), &status) == 0;
    if (!exists && errno != ENOENT) return FileError::ofSystem(errno);
    if (exists && S_ISDIR(status.st_mode)) return FileError::ofSystem(EISDIR);
    if (exists && !S_ISREG(status.st_mode)) return FileError{0, "Not a regular file"};

    std::error_code error;
    fs::path target = fs::weakly_canonical(exists ? path : endOfLinks(path), error);
    if (error) return FileError::ofSystem(error.value());
    std::string name = target.parent_path() / ".quillmark-XXXXXX";
    FileDescriptor file(mkostemp(name.data(), O_CLOEXEC)); // readable for the owner only
    if (!file.isOpen()) return FileError::ofSystem(errno);
    if (!exists)
        return DurableFile(std::move(file), std::move(name), std::move(target), {}, newMode);
    // A program's right to run as its owner is not for what takes its place.
    constexpr unsigned permissionBits = 0777;
    return DurableFile(std::move(file), std::move(name), std::move(target),
                       Owner{status.st_uid, status.st_gid}, status.st_mode & permissionBits);
}

DurableFile::DurableFile(FileDescriptor file, fs::path temporary, fs::path target,
                         std::optional<Owner> owner, unsigned mode)
    : m_file(std::move(file)), m_temporary(std::move(temporary)), m_target(std::move(target)),
      m_owner(owner), m_mode(mode)
{
}

DurableFile::DurableFile(DurableFile&& other) noexcept
    : m_file(std::move(other.m_file)), m_temporary(std::exchange(other.m_temporary, {})),
      m_target(std::move(other.m_target)), m_owner(other.m_owner), m_mode(other.m_mode)
{
}

DurableFile::~DurableFile()
{
    if (!m_temporary.empty()) unlink(m_temporary.c_str());
}

/// Zero or the system's error number. A file system without permissions gives every file the same.
int DurableFile::setRights() const
{
    unsigned mode = m_mode;
    if (m_owner && fchown(m_file.get(), m_owner->user, m_owner->group) != 0 &&
        fchown(m_file.get(), static_cast<uid_t>(-1), m_owner->group) != 0) {
        constexpr unsigned group = 0070;
        mode &= ~group | (mode << 3U);
    }
    if (fchmod(m_file.get(), mode) == 0 || errno == EPERM || errno == ENOTSUP) return 0;
    return errno;
}

std::optional<FileError> DurableFile::commit(Durability durability)
{
    const bool synced = durability == Durability::synced;
    if (const int error = setRights(); error != 0) return FileError::ofSystem(error);
    // Once the new name is on the disk its bytes must be there too, also when the power fails.
    if (const int error = synced ? syncDescriptor(m_file.get()) : 0; error != 0)
        return FileError::ofSystem(error);
    if (const int error = m_file.close(); error != 0) return FileError::ofSystem(error);
    if (rename(m_temporary.c_str(), m_target.c_str()) != 0) return FileError::ofSystem(errno);
    m_temporary.clear();
    if (const int error = synced ? syncFolder(m_target.parent_path()) : 0; error != 0)
        return FileError::ofSystem(error);
    return std::nullopt;
}

std::optional<FileError> writeDurably(const fs::path& path, std::string_view bytes,
                                      unsigned newMode)
{
    auto made = DurableFile::create(path, newMode);
    if (auto* error = std::get_if<FileError>(&made)) return std::move(*error);
    auto& file = std::get<DurableFile>(made);
    if (const int error = writeAll(file.descriptor(), bytes); error != 0)
        return FileError::ofSystem(error);
    return file.commit();
}

} // namespace quillmark
