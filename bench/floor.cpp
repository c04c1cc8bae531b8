// The least that a folder scan can cost: walks a folder, opens every font file, and reads the table
// directory and the `name` and `OS/2` tables of each face by pread. Nothing is decoded or kept.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr std::size_t largestTable = std::size_t{1} << 20U;

std::array<unsigned char, largestTable> buffer; // the one place that everything is read into

struct Count {
    std::size_t files{};
    std::size_t faces{};
    std::size_t bytes{};
};

std::uint32_t u32(std::size_t at)
{
    return std::uint32_t{buffer[at]} << 24U | std::uint32_t{buffer[at + 1]} << 16U |
           std::uint32_t{buffer[at + 2]} << 8U | buffer[at + 3];
}

std::size_t readAt(int file, std::uint64_t at, std::size_t length)
{
    const ssize_t count =
        ::pread(file, buffer.data(), std::min(length, buffer.size()), static_cast<off_t>(at));
    return count < 0 ? 0 : static_cast<std::size_t>(count);
}

void readFace(int file, std::uint32_t offset, Count& count)
{
    constexpr std::size_t header = 12;
    constexpr std::size_t record = 16;
    if (readAt(file, offset, header) < header) return;
    const std::size_t tables = std::size_t{buffer[4]} * 256 + buffer[5];
    const std::size_t size = readAt(file, offset + header, tables * record);
    struct Range {
        std::uint32_t offset{};
        std::uint32_t length{};
    };
    std::array<Range, 2> wanted{};
    std::size_t found = 0;
    for (std::size_t at = 0; at + record <= size && found < wanted.size(); at += record) {
        if (std::memcmp(&buffer[at], "name", 4) == 0 || std::memcmp(&buffer[at], "OS/2", 4) == 0)
            wanted[found++] = {u32(at + 8), u32(at + 12)};
    }
    for (const Range& range : std::span(wanted).first(found))
        count.bytes += readAt(file, range.offset, range.length);
    ++count.faces;
}

void readFile(const std::string& path, Count& count)
{
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0) return;
    constexpr std::size_t collectionHeader = 12;
    if (readAt(file, 0, collectionHeader) == collectionHeader) {
        ++count.files;
        if (std::memcmp(buffer.data(), "ttcf", 4) == 0) {
            const std::size_t size = readAt(file, collectionHeader, std::size_t{4} * u32(8));
            std::vector<std::uint32_t> offsets;
            for (std::size_t at = 0; at + 4 <= size; at += 4)
                offsets.push_back(u32(at));
            for (const std::uint32_t offset : offsets)
                readFace(file, offset, count);
        } else {
            readFace(file, 0, count);
        }
    }
    ::close(file);
}

bool isFont(std::string_view name)
{
    constexpr std::array<std::string_view, 7> extensions{
        ".ttf", ".otf", ".ttc", ".otc", ".dfont", ".woff", ".woff2",
    };
    return std::ranges::any_of(extensions,
                               [name](std::string_view e) { return name.ends_with(e); });
}

void walk(const std::string& folder, Count& count)
{
    DIR* open = ::opendir(folder.c_str());
    if (open == nullptr) return;
    while (const dirent* entry = ::readdir(open)) {
        const std::string_view name = entry->d_name;
        if (name.starts_with('.')) continue;
        const std::string path = folder + "/" + entry->d_name;
        if (entry->d_type == DT_DIR)
            walk(path, count);
        else if (isFont(name))
            readFile(path, count);
    }
    ::closedir(open);
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 2) {
        std::fputs("usage: floor FOLDER...\n", stderr);
        return EXIT_FAILURE;
    }
    Count count;
    for (int i = 1; i < argc; ++i)
        walk(argv[i], count);
    std::printf("%zu files, %zu faces, %zu bytes\n", count.files, count.faces, count.bytes);
    return EXIT_SUCCESS;
}
