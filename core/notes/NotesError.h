// Why notes cannot be read from a file, or saved to it.
#pragma once

#include "files/FileError.h"

#include <filesystem>
#include <string>

namespace quillmark {

struct NotesError {
    enum class Kind {
        missing,    // there is no such file
        unreadable, // there is one that the system does not let us read
        malformed,  // what the file holds are no notes
        notSaved,   // the former file is as it was
        notSynced,  // the new file is in its place, but may not outlast a power failure
    };
    Kind kind{};
    std::string path;   // for people: ill-formed parts are replaced
    std::string reason; // such as "No space left on device"

    NotesError(Kind errorKind, const std::filesystem::path& file, std::string why);

    /// What happened, with the file's path.
    [[nodiscard]] std::string sentence() const;

    bool operator==(const NotesError&) const = default;
};

} // namespace quillmark
