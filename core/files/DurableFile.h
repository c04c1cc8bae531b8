// Replacing a file as a whole or not at all, whatever happens meanwhile.
#pragma once

#include "files/FileDescriptor.h"
#include "files/FileError.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace quillmark {

/// Whether a file outlasts a power failure right behind its making. To put it on the disk takes a
/// while, which is worth it for all that cannot be made again.
enum class Durability {
    synced,
    unsynced, // after such a failure an empty or a partial file can be there
};

/// A new file, written under a temporary name in the folder where it is put in its place at last.
/// Until then only its owner may read it. Unless it is committed nothing remains of it. It stays in
/// the folder that was found at first, whatever comes to bear that folder's name meanwhile.
class DurableFile {
public:
    /// A file to take the place of the one at `path`, or at the end of the links there, which stay
    /// links. It gets the owner, the group and the permissions of the file it replaces, as far as
    /// they can be given, and its owner may read it; a group that gets it instead may do no more
    /// than everybody. If there is none its permissions are `newMode`. What is there and no regular
    /// file is not replaced.
    [[nodiscard]] static std::variant<DurableFile, FileError>
    create(const std::filesystem::path& path, unsigned newMode);
    /// A file called `name` in `folder`, which may not be a link. What is there already, links
    /// included, is not replaced: then there is an error, at the latest when it is committed.
    [[nodiscard]] static std::variant<DurableFile, FileError>
    createNew(const std::filesystem::path& folder, const std::string& name, unsigned mode);

    ~DurableFile();
    DurableFile(const DurableFile&) = delete;
    DurableFile& operator=(const DurableFile&) = delete;
    DurableFile(DurableFile&& other) noexcept;
    DurableFile& operator=(DurableFile&&) = delete;

    /// What to write to.
    [[nodiscard]] int descriptor() const { return m_file.get(); }
    [[nodiscard]] const std::filesystem::path& temporary() const { return m_temporary; }

    /// Has everything put on the disk if asked to, then puts the file in its place. After an error
    /// the former file is as it was, unless the error says that it has been done.
    [[nodiscard]] std::optional<FileError> commit(Durability durability = Durability::synced);

private:
    struct Owner {
        unsigned user{};
        unsigned group{};
    };

    enum class Existing { replaced, kept };

    DurableFile(FileDescriptor folder, const std::filesystem::path& target, Existing existing,
                std::optional<Owner> owner, unsigned mode);
    [[nodiscard]] static std::variant<DurableFile, FileError> opened(DurableFile file);
    [[nodiscard]] int setRights() const;
    [[nodiscard]] int putInPlace() const;

    FileDescriptor m_folder;
    FileDescriptor m_file;
    std::filesystem::path m_temporary; // empty while there is none
    std::string m_name;
    Existing m_existing{};
    std::optional<Owner> m_owner; // of the file it replaces
    unsigned m_mode{};
    std::filesystem::path m_path; // of the folder
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
