// Files of notes, for those who want to know why one cannot be read. NotesBook.h has the ways that
// do not ask.
#pragma once

#include "files/FileDescriptor.h"
#include "notes/NotesBook.h"
#include "notes/NotesError.h"
#include "notes/NotesJson.h"

#include <chrono>
#include <filesystem>
#include <variant>

namespace quillmark {

/// The notes in the file at `path`.
[[nodiscard]] std::variant<NotesJson::Decoded, NotesError>
readNotesFile(const std::filesystem::path& path);

/// Keeps other programs from writing the file at `path` for as long as the descriptor is open, as
/// far as the file system can and they ask for the same; makes the missing folders on the way.
/// Somebody else's lock is waited for, but not for ever.
[[nodiscard]] std::variant<FileDescriptor, NotesError>
lockNotesFile(const std::filesystem::path& path);

/// Gives the file at `path`, which holds something that cannot be read as notes, a second name
/// beside it: "notes.unreadable-20261122T021000Z.json" for "notes.json", with a number behind the
/// time if there is such a file. The next save then leaves these bytes alone. Returns the new path;
/// that of an earlier time if it is kept already.
[[nodiscard]] std::variant<std::filesystem::path, NotesError>
keepUnreadable(const std::filesystem::path& path, std::chrono::sys_seconds now);

} // namespace quillmark
