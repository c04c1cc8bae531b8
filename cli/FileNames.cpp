#include "cli/FileNames.h"

#include "files/FileDescriptor.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <string_view>
#include <unistd.h>

namespace quillmark::cli {
namespace {

namespace fs = std::filesystem;

std::variant<std::string, FileError> readAll(int descriptor)
{
    std::string text;
    std::string piece(65536, '\0');
    while (true) {
        const ssize_t count = read(descriptor, piece.data(), piece.size());
        if (count == 0) return text;
        if (count < 0) {
            if (errno == EINTR) continue;
            return FileError::ofSystem(errno);
        }
        if (text.size() + static_cast<std::size_t>(count) > maximumNameListBytes)
            return FileError::ofSystem(EFBIG);
        text.append(piece, 0, static_cast<std::size_t>(count));
    }
}

} // namespace

std::variant<std::vector<fs::path>, FileError> readFileNames(const fs::path& file, char end,
                                                             int input)
{
    FileDescriptor opened;
    if (file != "-") {
        opened = openFile(file, O_RDONLY);
        if (!opened.isOpen()) return FileError::ofSystem(errno);
        input = opened.get();
    }
    const auto read = readAll(input);
    if (const auto* error = std::get_if<FileError>(&read)) return *error;
    std::vector<fs::path> names;
    std::string_view rest = std::get<std::string>(read);
    while (!rest.empty()) {
        const std::string_view name = rest.substr(0, rest.find(end));
        if (!name.empty()) names.emplace_back(name);
        rest.remove_prefix(std::min(name.size() + 1, rest.size()));
    }
    return names;
}

} // namespace quillmark::cli
