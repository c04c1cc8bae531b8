// Files opened for reading at positions. Pipes, sockets and devices are left alone, whatever their
// names, and nothing here waits for one.
#pragma once

#include "files/FileDescriptor.h"
#include "library/ByteSource.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <utility>

namespace quillmark {

/// A path as the system takes it: longer paths than it takes at once are walked in pieces.
class Location {
public:
    explicit Location(std::string path);
    /// `name` as seen from the open folder `folder`, which must stay open.
    Location(int folder, std::string name) : m_from(folder), m_name(std::move(name)) {}

    /// What the system's calls ending in "at" want.
    [[nodiscard]] int folder() const;
    [[nodiscard]] const char* name() const { return m_name.c_str(); }

private:
    int m_from{-1}; // not ours to close
    FileDescriptor m_folder;
    std::string m_name;
};

/// Locates files one after the other. Lists of files go through one folder after the other, and to
/// find a file by its whole path takes the system as long as to read from it: so a folder that
/// comes twice in a row stays open until another one comes.
class LastFolder {
public:
    /// Where the file at `path` is; to be used before the next one is asked for.
    [[nodiscard]] Location locate(const std::string& path);

private:
    std::string m_path;
    FileDescriptor m_folder; // none before it is asked for again
};

class RegularFile final : public ByteSource {
public:
    /// Absent when there is no such file, when it may not be read, or when it is anything but a
    /// regular file or a link to one.
    [[nodiscard]] static std::optional<RegularFile> open(const Location& location);
    [[nodiscard]] static std::optional<RegularFile> open(const std::string& path)
    {
        return open(Location(path));
    }

    /// The size when it was opened, in bytes.
    [[nodiscard]] std::uint64_t size() const override { return m_size; }
    std::size_t read(std::uint64_t at, std::span<std::byte> into) const noexcept override;

private:
    RegularFile(FileDescriptor descriptor, std::uint64_t size)
        : m_descriptor(std::move(descriptor)), m_size(size)
    {
    }

    FileDescriptor m_descriptor;
    std::uint64_t m_size{};
};

} // namespace quillmark
