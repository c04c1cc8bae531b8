// The user's licence notes on all fonts.
#pragma once

#include "notes/LicenseNote.h"
#include "notes/NotesError.h"

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace quillmark {

/// A note's key is the PostScript name of its font, exactly as read: all fonts of one name share
/// one note, in whichever list they appear.
struct NotesBook {
    std::map<std::string, LicenseNote, std::less<>> notes;
    UnknownKeys unknownKeys{};

    /// The note under `key`; null when there is none. Valid until the book changes.
    [[nodiscard]] const LicenseNote* note(std::string_view key) const;

    /// Keeps `note` under `key`; an absent or an empty one removes what is there. Unknown keys that
    /// the former note had and the new one lacks are taken over.
    void set(std::optional<LicenseNote> note, std::string_view key);

    /// Takes over what somebody else has changed: all that differs between `before`, which this
    /// book was once equal to, and `theirs`, and has not been changed here as well. In a note that
    /// has been, the attachment counts by itself.
    void takeOver(const NotesBook& before, const NotesBook& theirs);

    /// The book in the file at `path`; an empty one when there is none, or none that can be read.
    /// NotesFile.h tells these apart.
    [[nodiscard]] static NotesBook load(const std::filesystem::path& path);

    /// Replaces the file at `path`, or at the end of the links there, whole and for good; makes the
    /// missing folders on the way. After an error the former file is as it was, unless it says that
    /// the new one is not on the disk.
    [[nodiscard]] std::optional<NotesError> save(const std::filesystem::path& path) const;

    bool operator==(const NotesBook&) const = default;
};

} // namespace quillmark
