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
    const auto read = readNotesFile(*m_file);
    const auto* const error = std::get_if<NotesError>(&read);
    const bool isMissing = error != nullptr && error->kind == NotesError::Kind::missing;
    if (!isMissing && (error != nullptr || m_mayHoldUnread)) {
        auto kept = keepUnreadable(*m_file, now);
        if (auto* failed = std::get_if<NotesError>(&kept)) return std::move(*failed);
    } else if (error == nullptr) {
        book.takeOver(before, std::get<NotesBook>(read));
    }
    m_mayHoldUnread = false;
    return book.save(*m_file);
}

NotesSave::Result NotesSave::run() const
{
    const std::lock_guard lock(target->m_mutex);
    if (number <= target->m_saved) return {.written = target->m_written};
    const auto merged = std::make_shared<NotesBook>(book);
    if (const auto error = target->write(*merged, *before, now))
        return {.failure = error->sentence()};
    target->m_saved = number;
    target->m_written = merged;

    const auto isNamed = [&merged](const std::string& copy) {
        return std::ranges::any_of(
            merged->notes, [&](const auto& entry) { return entry.second.attachment == copy; });
    };
    Result result{.written = merged};
    for (const std::string& copy : discarded) {
        if (isNamed(copy)) continue;
        if (const auto error = attachments.remove(copy))
            result.failure = failureSentence(copy, "removed", error->reason);
    }
    return result;
}

} // namespace quillmark
