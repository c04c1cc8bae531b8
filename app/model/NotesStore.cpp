#include "model/NotesStore.h"

#include "notes/NotesError.h"
#include "notes/NotesFile.h"

#include <algorithm>
#include <exception>
#include <utility>
#include <variant>

namespace quillmark {

NotesStore::NotesStore(std::optional<std::filesystem::path> file, Attachments attachments)
    : m_target(std::make_shared<NotesTarget>(std::move(file))),
      m_attachments(std::move(attachments))
{
}

NotesStore::~NotesStore()
{
    try {
        // One that has not begun yet finds then that it has been done.
        if (m_saving) static_cast<void>(endSave(m_saving->run()));
        if (m_changed || m_unsaved) static_cast<void>(makeSave(m_now)->run());
    } catch (const std::exception&) {
        // Nobody is left to be told.
    }
}

LicenseNote NotesStore::noteIn(const NotesBook& book, const std::string& key)
{
    const LicenseNote* found = book.note(key);
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
    if (!m_target->file()) return;
    auto read = readNotesFile(*m_target->file());
    const auto* error = std::get_if<NotesError>(&read);
    m_target->setMayHoldUnread(error != nullptr && error->kind != NotesError::Kind::missing);
    m_book = error == nullptr ? std::get<NotesJson::Decoded>(std::move(read)).book : NotesBook{};
    m_onDisk = std::make_shared<const NotesBook>(m_book);
}

void NotesStore::edit(LicenseNote note, const std::string& key, std::chrono::sys_seconds now)
{
    const LicenseNote* kept = m_book.note(key);
    note.attachment = kept == nullptr ? std::nullopt : kept->attachment;
    note.attachmentName = kept == nullptr ? std::nullopt : kept->attachmentName;
    note.updated = now;
    m_book.set(std::move(note), key);
    m_now = now;
    m_changed = true;
}

void NotesStore::attach(const std::string& copy, const std::string& fileName,
                        const std::string& key, std::chrono::sys_seconds now)
{
    m_attaching.push_back({copy, fileName, key, now});
    m_now = now;
    m_changed = true;
}

void NotesStore::detach(const std::string& key, std::chrono::sys_seconds now)
{
    LicenseNote changed = note(key);
    if (!changed.attachment) return;
    m_discarded.push_back(*std::exchange(changed.attachment, std::nullopt));
    changed.attachmentName.reset();
    changed.updated = now;
    m_book.set(std::move(changed), key);
    m_now = now;
    m_changed = true;
}

/// Returns the copy that is replaced.
std::optional<std::string> NotesStore::put(const Attaching& attaching, NotesBook& book)
{
    LicenseNote changed = noteIn(book, attaching.key);
    auto replaced = std::exchange(changed.attachment, attaching.copy);
    changed.attachmentName = attaching.fileName;
    changed.updated = std::max(changed.updated, attaching.now);
    book.set(std::move(changed), attaching.key);
    return replaced;
}

std::shared_ptr<const NotesSave> NotesStore::makeSave(std::chrono::sys_seconds now)
{
    NotesSave save{
        .target = m_target,
        .number = ++m_number,
        .book = m_book,
        .before = m_onDisk,
        .attachments = m_attachments,
        .discarded = m_discarded,
        .now = now,
    };
    for (const Attaching& attaching : m_attaching)
        if (auto replaced = put(attaching, save.book)) save.discarded.push_back(*replaced);
    return std::make_shared<const NotesSave>(std::move(save));
}

std::shared_ptr<const NotesSave> NotesStore::beginSave(std::chrono::sys_seconds now)
{
    if (m_saving || !m_changed) return nullptr;
    m_changed = false;
    if (!m_target->file() && m_attaching.empty() && m_discarded.empty()) return nullptr;
    m_saving = makeSave(now);
    m_attachingNow = m_attaching.size();
    m_discardedNow = m_discarded.size();
    return m_saving;
}

NotesStore::Ended NotesStore::endSave(const NotesSave::Result& result)
{
    Ended ended{.failure = result.failure};
    const bool saved = result.written != nullptr;
    if (saved && *result.written != m_saving->book) {
        m_book.takeOver(m_saving->book, *result.written);
        ended.changed = true;
    }
    const auto attached = m_attaching.begin() + static_cast<std::ptrdiff_t>(m_attachingNow);
    for (auto attaching = m_attaching.begin(); attaching != attached; ++attaching)
        if (saved) {
            auto replaced = put(*attaching, m_book);
            if (replaced && result.isUnsynced) m_discarded.push_back(*std::move(replaced));
            ended.changed = true;
        } else {
            // It is the saving that the user learns of.
            static_cast<void>(m_attachments.remove(attaching->copy));
        }
    m_attaching.erase(m_attaching.begin(), attached);
    if (saved) m_onDisk = result.written;
    m_unsaved = !saved || result.isUnsynced;
    if (!m_unsaved)
        m_discarded.erase(m_discarded.begin(),
                          m_discarded.begin() + static_cast<std::ptrdiff_t>(m_discardedNow));
    m_saving.reset();
    return ended;
}

} // namespace quillmark
