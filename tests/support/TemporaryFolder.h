// A folder of a test's own, removed with everything in it.
#pragma once

#include <cstddef>
#include <filesystem>
#include <span>
#include <string_view>

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

private:
    std::filesystem::path m_path;
};

} // namespace quillmark::test
