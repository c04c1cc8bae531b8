#include "files/DurableFile.h"

#include "files/Folders.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <string>
#include <sys/random.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace quillmark {

namespace fs = std::filesystem;

namespace {

/// A hidden name that nobody else has, nor can foresee.
std::string temporaryName()
{
    constexpr std::string_view letters = "0123456789abcdefghijklmnopqrstuvwxyz";
    std::array<unsigned char, 10> random{};
    // At worst it is a name that is taken, and the next one is tried.
    [[maybe_unused]] const auto got = getrandom(random.data(), random.size(), GRND_NONBLOCK);
    std::string name = ".quillmark-";
    for (const unsigned char byte : random)
        name += letters[byte % letters.size()];
    return name;
}

} // namespace

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
    const fs::path target = fs::weakly_canonical(exists ? path : endOfLinks(path), error);
    if (error) return FileError::ofSystem(error.value());
    FileDescriptor folder = openFolder(target.parent_path());
    if (!folder.isOpen()) return FileError::ofSystem(errno);
    if (!exists)
        return opened(DurableFile(std::move(folder), target, Existing::replaced, {}, newMode));
    // A program's right to run as its owner is not for what takes its place.
    constexpr unsigned permissionBits = 0777;
    // What is written must be there to be read again.
    return opened(DurableFile(std::move(folder), target, Existing::replaced,
                              Owner{status.st_uid, status.st_gid},
                              (status.st_mode & permissionBits) | S_IRUSR));
}

std::variant<DurableFile, FileError> DurableFile::createNew(const fs::path& folder,
                                                            const std::string& name, unsigned mode)
{
    FileDescriptor open = openFolder(folder, O_NOFOLLOW);
    if (!open.isOpen()) return FileError::ofSystem(errno);
    struct stat status {};
    if (fstatat(open.get(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0)
        return FileError::ofSystem(EEXIST);
    if (errno != ENOENT) return FileError::ofSystem(errno);
    return opened(DurableFile(std::move(open), folder / name, Existing::kept, {}, mode));
}

DurableFile::DurableFile(FileDescriptor folder, const fs::path& target, Existing existing,
                         std::optional<Owner> owner, unsigned mode)
    : m_folder(std::move(folder)), m_name(target.filename()), m_existing(existing), m_owner(owner),
      m_mode(mode), m_path(target.parent_path())
{
}

/// Makes the temporary file.
std::variant<DurableFile, FileError> DurableFile::opened(DurableFile file)
{
    constexpr int mostTries = 100; // that a name is taken happens once in billions of times
    for (int i = 0; i < mostTries; ++i) {
        const std::string name = temporaryName();
        constexpr unsigned ownerOnly = S_IRUSR | S_IWUSR;
        file.m_file = openFileIn(file.m_folder.get(), name, O_RDWR | O_CREAT | O_EXCL, ownerOnly);
        if (!file.m_file.isOpen() && errno == EEXIST) continue;
        if (!file.m_file.isOpen()) return FileError::ofSystem(errno);
        file.m_temporary = file.m_path / name;
        return file;
    }
    return FileError::ofSystem(EEXIST);
}

DurableFile::DurableFile(DurableFile&& other) noexcept
    : m_folder(std::move(other.m_folder)), m_file(std::move(other.m_file)),
      m_temporary(std::exchange(other.m_temporary, {})), m_name(std::move(other.m_name)),
      m_existing(other.m_existing), m_owner(other.m_owner), m_mode(other.m_mode),
      m_path(std::move(other.m_path))
{
}

DurableFile::~DurableFile()
{
    if (!m_temporary.empty()) unlinkat(m_folder.get(), m_temporary.filename().c_str(), 0);
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

/// Zero or the system's error number.
int DurableFile::putInPlace() const
{
    const int folder = m_folder.get();
    const std::string temporary = m_temporary.filename();
    if (m_existing == Existing::replaced)
        return renameat(folder, temporary.c_str(), folder, m_name.c_str()) == 0 ? 0 : errno;
    return renameToNew(folder, temporary, m_name);
}

std::optional<FileError> DurableFile::commit(Durability durability)
{
    const bool synced = durability == Durability::synced;
    if (const int error = setRights(); error != 0) return FileError::ofSystem(error);
    // Once the new name is on the disk its bytes must be there too, also when the power fails.
    if (const int error = synced ? syncDescriptor(m_file.get()) : 0; error != 0)
        return FileError::ofSystem(error);
    if (const int error = m_file.close(); error != 0) return FileError::ofSystem(error);
    if (const int error = putInPlace(); error != 0) return FileError::ofSystem(error);
    m_temporary.clear();
    if (const int error = synced ? syncFolder(m_folder) : 0; error != 0)
        return FileError::unsynced(error);
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
