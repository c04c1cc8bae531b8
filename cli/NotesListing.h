// What `notes` prints: the user's notes by themselves. They are only read.
#pragma once

#include "cli/TextLines.h"
#include "notes/NotesBook.h"

#include <span>
#include <string>
#include <vector>

namespace quillmark::cli {

/// The notes as in their file, but with everything escaped that could control a terminal.
[[nodiscard]] std::string notesJson(const NotesBook& book);

/// Writes a line for each note: the font's PostScript name, the license type, where it was bought.
void writeNotesTable(TextLines& lines, const NotesBook& book);

/// Writes all that the note under `key` says.
void writeNoteInFull(TextLines& lines, std::string_view key, const LicenseNote& note);

struct FoundNotes {
    NotesBook book;
    std::vector<std::string> missing; // keys without a note
};

/// The notes under `keys` as a book of their own.
[[nodiscard]] FoundNotes notesUnder(std::span<const std::string> keys, const NotesBook& book);

} // namespace quillmark::cli
