// Why something cannot be done with a file.
#pragma once

#include <string>

namespace quillmark {

struct FileError {
    int number{};       // the system's error number; zero when the system was not asked
    std::string reason; // in the system's words where it was, such as "No space left on device"

    [[nodiscard]] static FileError ofSystem(int number);

    bool operator==(const FileError&) const = default;
};

} // namespace quillmark
