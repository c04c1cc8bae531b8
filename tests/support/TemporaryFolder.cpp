#include "support/TemporaryFolder.h"

#include <algorithm>
#include <fstream>
#include <iterator>
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

std::string TemporaryFolder::content(const std::filesystem::path& relative) const
{
    std::ifstream file(m_path / relative, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::string> TemporaryFolder::names(const std::filesystem::path& relative) const
{
    std::vector<std::string> found;
    for (const auto& entry : std::filesystem::directory_iterator(m_path / relative))
        found.push_back(entry.path().filename());
    std::ranges::sort(found);
    return found;
}

mode_t TemporaryFolder::mode(const std::filesystem::path& relative) const
{
    return static_cast<mode_t>(std::filesystem::status(m_path / relative).permissions());
}

} // namespace quillmark::test
