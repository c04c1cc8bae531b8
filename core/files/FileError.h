// Why something cannot be done with a file.
#pragma once

#include <string>

namespace quillmark {

struct FileError {
    int number{};       // the system's error number; zero when the system was not asked
    std::string reason; // in the system's words where it was, such as "No space left on device"
    /// Whether it has been done all the same, and only that it outlasts a power failure is unsure.
    bool isDone{};

    [[nodiscard]] static FileError ofSystem(int number);
    /// Of what has been done but could not be put on the disk.
    [[nodiscard]] static FileError unsynced(int number);

    bool operator==(const FileError&) const = default;
};

} // namespace quillmark
