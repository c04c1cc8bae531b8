// Replacing a file as a whole or not at all, whatever happens meanwhile.
#pragma once

#include "files/FileDescriptor.h"
#include "files/FileError.h"

#include <filesystem>
#include <optional>
#include <string_view>
#include <variant>

namespace quillmark {

/// Whether a file outlasts a power failure right behind its making. To put it on the disk takes a
/// while, which is worth it for all that cannot be made again.
enum class Durability {
    synced,
    unsynced, // after such a failure an empty or a partial file can be there
};

/// A new file, written under a temporary name beside the one that it replaces at last. Until then
/// only its owner may read it. Unless it is committed nothing remains of it.
class DurableFile {
public:
    /// A file to take the place of the one at `path`, or at the end of the links there, which stay
    /// links. It gets the owner, the group and the permissions of the file it replaces, as far as
    /// they can be given; a group that gets it instead may do no more than everybody. If there is
    /// none its permissions are `newMode`. What is there and no regular file is not replaced.
    [[nodiscard]] static std::variant<DurableFile, FileError>
    create(const std::filesystem::path& path, unsigned newMode);

    ~DurableFile();
    DurableFile(const DurableFile&) = delete;
    DurableFile& operator=(const DurableFile&) = delete;
    DurableFile(DurableFile&& other) noexcept;
    DurableFile& operator=(DurableFile&&) = delete;

    /// What to write to.
    [[nodiscard]] int descriptor() const { return m_file.get(); }
    [[nodiscard]] const std::filesystem::path& temporary() const { return m_temporary; }

    /// Has everything put on the disk if asked to, then puts the file in its place. After an error
    /// the former file is as it was; only when the disk fails as the folder is written is it
    /// replaced already.
    [[nodiscard]] std::optional<FileError> commit(Durability durability = Durability::synced);

private:
    struct Owner {
        unsigned user{};
        unsigned group{};
    };

    DurableFile(FileDescriptor file, std::filesystem::path temporary, std::filesystem::path target,
                std::optional<Owner> owner, unsigned mode);
    [[nodiscard]] int setRights() const;

    FileDescriptor m_file;
    std::filesystem::path m_temporary; // empty once there is none any more
    std::filesystem::path m_target;
    std::optional<Owner> m_owner; // of the file it replaces
    unsigned m_mode{};
};

/// The permissions of a new file that is not for its owner alone: what the process's mask leaves.
/// The mask is off for a moment, so this is asked before other threads make files.
[[nodiscard]] unsigned newFileMode();

/// Where a file is made that is opened as `path`: links may lead to one that is not there yet.
[[nodiscard]] std::filesystem::path endOfLinks(std::filesystem::path path);

/// Replaces the file at `path` with one that holds `bytes`.
[[nodiscard]] std::optional<FileError> writeDurably(const std::filesystem::path& path,
                                                    std::string_view bytes, unsigned newMode);

} // namespace quillmark
