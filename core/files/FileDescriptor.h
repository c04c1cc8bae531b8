// POSIX file descriptors, and what the system says when one cannot be had. Whole files are read by
// ReadFile.h and replaced by DurableFile.h.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <utility>

namespace quillmark {

/// A descriptor that is closed at the end of its life; -1 for none.
class FileDescriptor {
public:
    FileDescriptor() = default;
    explicit FileDescriptor(int descriptor) : m_descriptor(descriptor) {}
    ~FileDescriptor() { static_cast<void>(close()); }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    FileDescriptor(FileDescriptor&& other) noexcept
        : m_descriptor(std::exchange(other.m_descriptor, -1))
    {
    }
    FileDescriptor& operator=(FileDescriptor&& other) noexcept
    {
        std::swap(m_descriptor, other.m_descriptor);
        return *this;
    }

    [[nodiscard]] int get() const { return m_descriptor; }
    [[nodiscard]] bool isOpen() const { return m_descriptor >= 0; }
    /// Gives up ownership.
    [[nodiscard]] int release() { return std::exchange(m_descriptor, -1); }
    /// Zero or the system's error number, for some file systems report a failed write only here.
    [[nodiscard]] int close();

private:
    int m_descriptor{-1};
};

/// Opens `path` with the flags of open(2), and for no program that is started; errno tells why it
/// is not open.
[[nodiscard]] FileDescriptor openFile(const std::filesystem::path& path, int flags);
/// The same for a name in an open folder; a file that is made gets the permissions `mode`.
[[nodiscard]] FileDescriptor openFileIn(int folder, const std::string& name, int flags,
                                        unsigned mode = 0);

/// Writes all of `bytes`; zero or the system's error number.
[[nodiscard]] int writeAll(int descriptor, std::string_view bytes);

/// The system's words for an error number.
[[nodiscard]] std::string errorText(int error);

} // namespace quillmark
