#include "model/NotesSave.h"

#include "model/FileSentence.h"
#include "notes/NotesFile.h"

#include <algorithm>
#include <system_error>
#include <utility>
#include <variant>

namespace quillmark {

void NotesTarget::setMayHoldUnread(bool mayHoldUnread)
{
    const std::lock_guard lock(m_mutex);
    m_mayHoldUnread = mayHoldUnread;
}

/// Adds to `book` what others have written since `before`.
std::optional<NotesError> NotesTarget::write(NotesBook& book, const NotesBook& before,
                                             std::chrono::sys_seconds now)
{
    if (!m_file) return std::nullopt;
    // What another program writes between our reading and writing would be lost.
    auto lock = lockNotesFile(*m_file);
    if (auto* failed = std::get_if<NotesError>(&lock)) return std::move(*failed);
    const auto read = readNotesFile(*m_file);
    const auto* const error = std::get_if<NotesError>(&read);
    const auto* const decoded = std::get_if<NotesJson::Decoded>(&read);
    const bool isMissing = error != nullptr && error->kind == NotesError::Kind::missing;
    const bool isWhole = decoded != nullptr && decoded->isWhole;
    if (!isMissing && (!isWhole || m_mayHoldUnread)) {
        auto kept = keepUnreadable(*m_file, now);
        if (auto* failed = std::get_if<NotesError>(&kept)) return std::move(*failed);
    }
    if (decoded != nullptr) book.takeOver(before, decoded->book);
    auto failed = book.save(*m_file);
    if (!failed || failed->kind == NotesError::Kind::notSynced) m_mayHoldUnread = false;
    return failed;
}

NotesSave::Result NotesSave::run() const
{
    const std::lock_guard lock(target->m_mutex);
    if (number <= target->m_saved) return {.written = target->m_written};
    const auto merged = std::make_shared<NotesBook>(book);
    const auto error = target->write(*merged, *before, now);
    if (error && error->kind != NotesError::Kind::notSynced) return {.failure = error->sentence()};
    target->m_saved = number;
    target->m_written = merged;
    // After a power failure the former book could be there again, and need what it names.
    if (error) return {.written = merged, .isUnsynced = true, .failure = error->sentence()};

    const auto isNamed = [&merged](const std::string& copy) {
        return std::ranges::any_of(
            merged->notes, [&](const auto& entry) { return entry.second.attachment == copy; });
    };
    Result result{.written = merged};
    for (const std::string& copy : discarded) {
        if (isNamed(copy)) continue;
        if (const auto kept = attachments.remove(copy))
            result.failure = failureSentence(copy, "removed", kept->reason);
    }
    return result;
}

} // namespace quillmark
