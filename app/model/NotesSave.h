// One save of the user's notes, with what it takes from the disk. NotesStore.h decides when.
#pragma once

#include "model/Attachments.h"
#include "notes/NotesBook.h"
#include "notes/NotesError.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace quillmark {

/// The file that all saves of one book go to, for any thread.
class NotesTarget {
public:
    /// Without a file nothing is written.
    explicit NotesTarget(std::optional<std::filesystem::path> file) : m_file(std::move(file)) {}

    [[nodiscard]] const std::optional<std::filesystem::path>& file() const { return m_file; }
    /// Whether the file may have notes in it that were not read. It is then kept under another
    /// name before it is replaced. So it is taken to be at first.
    void setMayHoldUnread(bool mayHoldUnread);

private:
    friend struct NotesSave;
    [[nodiscard]] std::optional<NotesError> write(NotesBook& book, const NotesBook& before,
                                                  std::chrono::sys_seconds now);

    const std::optional<std::filesystem::path> m_file;
    std::mutex m_mutex; // over a whole save, and what follows
    bool m_mayHoldUnread{true};
    std::uint64_t m_saved{}; // the number of the latest save that has been done
    /// What that has written.
    std::shared_ptr<const NotesBook> m_written{std::make_shared<const NotesBook>()};
};

/// Holds no part of the store, and can be done on another thread.
struct NotesSave {
    struct Result {
        /// The book as the file has it now, with what others have changed there. Null when it could
        /// not be saved.
        std::shared_ptr<const NotesBook> written{};
        bool isUnsynced{}; // written, but it may not outlast a power failure; nothing is removed
        std::optional<std::string> failure{}; // a sentence; also when only removing failed
    };

    std::shared_ptr<NotesTarget> target;
    std::uint64_t number{}; // later saves have higher ones
    NotesBook book;
    /// The book as it was read or saved last. What the file has besides is somebody else's.
    std::shared_ptr<const NotesBook> before;
    Attachments attachments;
    /// Copies that no note needs any more, to be removed when the book that says so is on the disk:
    /// whatever fails, no note in the file ever names a copy that was thrown away.
    std::vector<std::string> discarded;
    std::chrono::sys_seconds now;

    /// Waits for a save that is being done. Nothing is done a second time, or after a later one.
    [[nodiscard]] Result run() const;
};

} // namespace quillmark
