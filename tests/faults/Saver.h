// A program that keeps notes, without a window.
#pragma once

#include "model/NotesStore.h"

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>

namespace quillmark::faults {

inline constexpr std::chrono::sys_seconds moment(std::chrono::seconds(1'795'313'400));

/// Its data is in `folder`, as the application's is.
class Saver {
public:
    explicit Saver(const std::filesystem::path& folder);

    /// Types something into a note.
    void type(const std::string& key, const std::string& text);
    /// Attaches a file with this content, as one called `name`; a sentence when that fails.
    [[nodiscard]] std::optional<std::string> attach(const std::string& key, const std::string& name,
                                                    const std::filesystem::path& file);
    /// Saves what has changed; a sentence when that fails.
    [[nodiscard]] std::optional<std::string> save();

    [[nodiscard]] const NotesBook& book() const { return m_store.book(); }

private:
    Attachments m_attachments;
    NotesStore m_store;
};

[[nodiscard]] std::filesystem::path notesFile(const std::filesystem::path& folder);
[[nodiscard]] std::filesystem::path attachmentsFolder(const std::filesystem::path& folder);

/// The text of a note in a book; absent when there is no such note.
[[nodiscard]] std::optional<std::string> textIn(const NotesBook& book, const std::string& key);

/// What is wrong with the file of notes in `folder`: that it is not there, not whole or names a
/// copy that is missing. Empty when nothing is.
[[nodiscard]] std::string damageOf(const std::filesystem::path& folder);

/// Temporary files that were left in `folder` and below.
[[nodiscard]] std::vector<std::filesystem::path> leftovers(const std::filesystem::path& folder);

/// A place for files that need no disk, as what is tried is not the disk's doing.
[[nodiscard]] std::filesystem::path inMemory();

/// The whole content of a file; absent when it cannot be read.
[[nodiscard]] std::optional<std::string> contentOf(const std::filesystem::path& file);

} // namespace quillmark::faults
