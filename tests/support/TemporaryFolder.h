// A folder of a test's own, removed with everything in it.
#pragma once

#include <cstddef>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

namespace quillmark::test {

class TemporaryFolder {
public:
    /// In the system's place for temporary files, or in `parent`.
    TemporaryFolder();
    explicit TemporaryFolder(const std::filesystem::path& parent);
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const { return m_path; }

    /// Writes a file below the folder, making the folders on the way; returns its path.
    std::filesystem::path write(const std::filesystem::path& relative,
                                std::span<const std::byte> bytes) const;
    std::filesystem::path write(const std::filesystem::path& relative, std::string_view text) const;

    /// The bytes of a file; empty when it cannot be read.
    [[nodiscard]] std::string content(const std::filesystem::path& relative) const;
    /// The sorted names of what is in a folder, which has to be there: this one, or one below it.
    [[nodiscard]] std::vector<std::string> names(const std::filesystem::path& relative = {}) const;
    /// The permissions of a file or folder, which has to be there, as chmod takes them.
    [[nodiscard]] mode_t mode(const std::filesystem::path& relative) const;

private:
    std::filesystem::path m_path;
};

} // namespace quillmark::test
