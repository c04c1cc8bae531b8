// The user's licence notes on all fonts.
#pragma once

#include "notes/LicenseNote.h"

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

    bool operator==(const NotesBook&) const = default;
};

} // namespace quillmark
