// The user's notes with the file that they are kept in and the copies attached to them.
#pragma once

#include "model/Attachments.h"
#include "model/UserPlaces.h"
#include "notes/NotesBook.h"
#include "notes/NotesError.h"

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace quillmark {

/// What was edited stays in the book when it cannot be saved, and is saved the next time. A copy
/// that no note names any more is removed only after the book that says so has been saved: whatever
/// fails, no note in the file ever names a copy that was thrown away.
class NotesStore {
public:
    using Failure = std::optional<std::string>;

    /// Without a file nothing is loaded or saved.
    NotesStore(std::optional<std::filesystem::path> file, Attachments attachments);

    [[nodiscard]] const NotesBook& book() const { return m_book; }
    /// The note under `key`, an empty one when there is none. What is no name of a copy is left
    /// out.
    [[nodiscard]] LicenseNote note(const std::string& key) const;

    /// Reads the book again. A file that cannot be read gives an empty book, and is kept under
    /// another name before the first save that would replace it.
    void load();

    // Each of these changes one note, dated `now`, and saves the book. They return a sentence about
    // what went wrong.

    /// Keeps a note as edited. Its attachment stays what the book says: an editor may have read the
    /// note before that changed.
    [[nodiscard]] Failure edit(LicenseNote note, const std::string& key,
                               std::chrono::sys_seconds now);
    /// Attaches a copy that is in the folder, and removes the one that it replaces. After a failure
    /// the note is as it was, and the copy is gone.
    [[nodiscard]] Failure attach(const std::string& copy, const std::string& fileName,
                                 const std::string& key, std::chrono::sys_seconds now);
    /// Removes the attached copy, if there is one.
    [[nodiscard]] Failure detach(const std::string& key, std::chrono::sys_seconds now);

private:
    [[nodiscard]] std::optional<NotesError> saveBook(std::chrono::sys_seconds now);
    [[nodiscard]] Failure save(std::chrono::sys_seconds now);
    [[nodiscard]] Failure removeDiscarded();
    [[nodiscard]] bool isNamed(const std::string& copy) const;

    std::optional<std::filesystem::path> m_file;
    Attachments m_attachments;
    NotesBook m_book;
    bool m_mayHoldUnread{true}; // whether the file may have notes in it that were not read
    std::vector<std::string> m_discarded; // copies to be removed when the book has been saved
};

} // namespace quillmark
