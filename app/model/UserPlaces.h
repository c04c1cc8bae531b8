// Where the application keeps what has to last.
#pragma once

#include <filesystem>

namespace quillmark {

struct UserPlaces {
    std::filesystem::path dataFolder;   // notes and attachments
    std::filesystem::path settingsFile; // in the INI format

    [[nodiscard]] std::filesystem::path notesFile() const { return dataFolder / "notes.json"; }
    [[nodiscard]] std::filesystem::path attachments() const { return dataFolder / "Attachments"; }

    /// The places of this user; on Linux $XDG_DATA_HOME/Quillmark, by default
    /// ~/.local/share/Quillmark, and settings.ini in $XDG_CONFIG_HOME/Quillmark.
    [[nodiscard]] static UserPlaces standard();
};

} // namespace quillmark
