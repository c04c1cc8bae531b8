#include "model/NotesStore.h"

#include "model/FileSentence.h"
#include "notes/NotesFile.h"

#include <algorithm>
#include <system_error>
#include <utility>
#include <variant>

namespace quillmark {

namespace fs = std::filesystem;

NotesStore::NotesStore(std::optional<fs::path> file, Attachments attachments)
    : m_file(std::move(file)), m_attachments(std::move(attachments))
{
}

LicenseNote NotesStore::note(const std::string& key) const
{
    const LicenseNote* found = m_book.note(key);
    if (found == nullptr) return {};
    LicenseNote note = *found;
    if (note.attachment && !Attachments::isName(*note.attachment)) {
        note.attachment.reset();
        note.attachmentName.reset();
    }
    return note;
}

void NotesStore::load()
{
    if (!m_file) return;
    auto read = readNotesFile(*m_file);
    const auto* error = std::get_if<NotesError>(&read);
    m_mayHoldUnread = error != nullptr && error->kind != NotesError::Kind::missing;
    m_book = error == nullptr ? std::get<NotesBook>(std::move(read)) : NotesBook{};
}

NotesStore::Failure NotesStore::edit(LicenseNote note, const std::string& key,
                                     std::chrono::sys_seconds now)
{
    const LicenseNote* kept = m_book.note(key);
    note.attachment = kept == nullptr ? std::nullopt : kept->attachment;
    note.attachmentName = kept == nullptr ? std::nullopt : kept->attachmentName;
    note.updated = now;
    m_book.set(std::move(note), key);
    return save(now);
}

NotesStore::Failure NotesStore::attach(const std::string& copy, const std::string& fileName,
                                       const std::string& key, std::chrono::sys_seconds now)
{
    const LicenseNote* found = m_book.note(key);
    const auto former = found == nullptr ? std::nullopt : std::optional(*found);
    LicenseNote changed = note(key);
    const auto replaced = std::exchange(changed.attachment, copy);
    changed.attachmentName = fileName;
    changed.updated = now;
    m_book.set(std::move(changed), key);
    if (const auto error = saveBook(now)) {
        m_book.set(former, key);
        static_cast<void>(m_attachments.remove(copy)); // it is the saving that the user learns of
        return error->sentence();
    }
    if (replaced) m_discarded.push_back(*replaced);
    return removeDiscarded();
}

NotesStore::Failure NotesStore::detach(const std::string& key, std::chrono::sys_seconds now)
{
    LicenseNote changed = note(key);
    if (!changed.attachment) return std::nullopt;
    m_discarded.push_back(*changed.attachment);
    changed.attachment.reset();
    changed.attachmentName.reset();
    changed.updated = now;
    m_book.set(std::move(changed), key);
    return save(now);
}

NotesStore::Failure NotesStore::save(std::chrono::sys_seconds now)
{
    if (const auto error = saveBook(now)) return error->sentence();
    return removeDiscarded();
}

NotesStore::Failure NotesStore::removeDiscarded()
{
    Failure failure;
    for (const std::string& copy : std::exchange(m_discarded, {})) {
        if (isNamed(copy)) continue;
        if (const auto error = m_attachments.remove(copy))
            failure = failureSentence(copy, "removed", error->reason);
    }
    return failure;
}

std::optional<NotesError> NotesStore::saveBook(std::chrono::sys_seconds now)
{
    if (!m_file) return std::nullopt;
    std::error_code ignored;
    if (m_mayHoldUnread && fs::exists(*m_file, ignored)) {
        auto kept = keepUnreadable(*m_file, now);
        if (auto* error = std::get_if<NotesError>(&kept)) return std::move(*error);
    }
    m_mayHoldUnread = false;
    return m_book.save(*m_file);
}

bool NotesStore::isNamed(const std::string& copy) const
{
    return std::ranges::any_of(m_book.notes,
                               [&](const auto& entry) { return entry.second.attachment == copy; });
}

} // namespace quillmark
