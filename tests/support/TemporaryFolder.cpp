#include "support/TemporaryFolder.h"

#include <fstream>
#include <stdexcept>
#include <string>
#include <system_error>

#include <cstdlib>

namespace quillmark::test {

TemporaryFolder::TemporaryFolder() : TemporaryFolder(std::filesystem::temp_directory_path()) {}

TemporaryFolder::TemporaryFolder(const std::filesystem::path& parent)
{
    std::string pattern = (parent / "quillmark-test-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder");
    m_path = std::filesystem::canonical(pattern);
}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

std::filesystem::path TemporaryFolder::write(const std::filesystem::path& relative,
                                             std::span<const std::byte> bytes) const
{
    auto path = m_path / relative;
    std::filesystem::create_directories(path.parent_path());
    std::ofstream file(path, std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    if (!file.flush()) throw std::runtime_error("could not write " + path.string());
    return path;
}

std::filesystem::path TemporaryFolder::write(const std::filesystem::path& relative,
                                             std::string_view text) const
{
    return write(relative, std::as_bytes(std::span(text)));
}

} // namespace quillmark::test
