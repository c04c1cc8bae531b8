// The user's notes with the file that they are kept in and the copies attached to them.
#pragma once

#include "model/Attachments.h"
#include "model/NotesSave.h"
#include "notes/NotesBook.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace quillmark {

/// The book has an edit at once; the disk gets it when the store's owner has done a save, on
/// whatever thread. Only one save is under way at a time, and the next one has all that was changed
/// meanwhile. What cannot be saved stays in the book, and is saved the next time. What another
/// program has written meanwhile about other fonts is taken over. Belongs to one thread, all but
/// the saves themselves.
class NotesStore {
public:
    /// Without a file nothing is loaded or written.
    NotesStore(std::optional<std::filesystem::path> file, Attachments attachments);
    /// Saves what is not on the disk yet, after a save that is being done.
    ~NotesStore();
    NotesStore(const NotesStore&) = delete;
    NotesStore& operator=(const NotesStore&) = delete;

    [[nodiscard]] const NotesBook& book() const { return m_book; }
    /// The note under `key`, an empty one when there is none. What is no name of a copy is left
    /// out.
    [[nodiscard]] LicenseNote note(const std::string& key) const { return noteIn(m_book, key); }

    /// Reads the book again. A file that cannot be read gives an empty book, and is kept under
    /// another name before the first save that would replace it.
    void load();

    // Each of these changes one note, dated `now`.

    /// Keeps a note as edited. Its attachment stays what the book says: an editor may have read the
    /// note before that changed.
    void edit(LicenseNote note, const std::string& key, std::chrono::sys_seconds now);
    /// Attaches a copy that is in the folder when that has been saved, and removes the one that it
    /// replaces. After a failure the note is as it was, and the copy is gone.
    void attach(const std::string& copy, const std::string& fileName, const std::string& key,
                std::chrono::sys_seconds now);
    /// Removes the attached copy, if there is one.
    void detach(const std::string& key, std::chrono::sys_seconds now);

    /// The save to be done now: to be run, and its result handed to `endSave`. Null when nothing
    /// has changed since the last one, or when one is under way.
    [[nodiscard]] std::shared_ptr<const NotesSave> beginSave(std::chrono::sys_seconds now);

    struct Ended {
        bool changed{};                     // whether the book has changed by it
        std::optional<std::string> failure; // a sentence
    };
    [[nodiscard]] Ended endSave(const NotesSave::Result& result);

private:
    /// A copy on its way into the book.
    struct Attaching {
        std::string copy;
        std::string fileName;
        std::string key;
        std::chrono::sys_seconds now;
    };

    [[nodiscard]] static LicenseNote noteIn(const NotesBook& book, const std::string& key);
    static std::optional<std::string> put(const Attaching& attaching, NotesBook& book);
    [[nodiscard]] std::shared_ptr<const NotesSave> makeSave(std::chrono::sys_seconds now);

    std::shared_ptr<NotesTarget> m_target;
    Attachments m_attachments;
    NotesBook m_book;
    std::shared_ptr<const NotesBook> m_onDisk{std::make_shared<const NotesBook>()};
    std::vector<Attaching> m_attaching;
    std::vector<std::string> m_discarded; // copies to be removed when the book has been saved
    std::size_t m_attachingNow{};         // how many of these are in the save under way
    std::size_t m_discardedNow{};
    std::shared_ptr<const NotesSave> m_saving; // null when none is under way
    bool m_changed{};                          // since the last save began
    bool m_unsaved{};                          // whether a save has failed since one was done
    std::uint64_t m_number{};
    std::chrono::sys_seconds m_now{}; // of the latest change
};

} // namespace quillmark
