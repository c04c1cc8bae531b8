// Replacing a file as a whole or not at all, whatever happens meanwhile.
#pragma once

#include "files/FileDescriptor.h"
#include "files/FileError.h"

#include <filesystem>
#include <optional>
#include <string_view>
#include <variant>

namespace quillmark {

/// A new file, written under a temporary name beside the one that it replaces at last. Until then
/// only its owner may read it. Unless it is committed nothing remains of it.
class DurableFile {
public:
    /// A file to take the place of the one at `path`, or at the end of the links there, which stay
    /// links. It gets the permissions of the file it replaces, or `newMode` if there is none. What
    /// is there and no regular file is not replaced.
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

    /// Has everything put on the disk, then puts the file in its place. After an error the former
    /// file is as it was; only when the disk fails as the folder is written is it replaced already.
    [[nodiscard]] std::optional<FileError> commit();

private:
    DurableFile(FileDescriptor file, std::filesystem::path temporary, std::filesystem::path target,
                unsigned mode);

    FileDescriptor m_file;
    std::filesystem::path m_temporary; // empty once there is none any more
    std::filesystem::path m_target;
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
