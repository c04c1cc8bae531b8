#include "notes/NotesBook.h"

#include "files/DurableFile.h"
#include "files/Folders.h"
#include "notes/Limits.h"
#include "notes/NotesFile.h"
#include "notes/NotesJson.h"

#include <cerrno>
#include <iterator>
#include <utility>

namespace quillmark {

namespace {

/// What a map has under a key; null when that is nothing.
template <typename Map>
const typename Map::mapped_type* valueIn(const Map& map, const std::string& key)
{
    const auto found = map.find(key);
    return found == map.end() ? nullptr : &found->second;
}

template <typename Value>
bool areEqual(const Value* one, const Value* other)
{
    return one == nullptr || other == nullptr ? one == other : *one == *other;
}

template <typename Map>
void takeOverEntries(Map& ours, const Map& before, const Map& theirs)
{
    const auto take = [&](const std::string& key) {
        const auto* const was = valueIn(before, key);
        const auto* const is = valueIn(theirs, key);
        if (areEqual(was, is) || !areEqual(was, valueIn(std::as_const(ours), key))) return;
        if (is == nullptr)
            ours.erase(key);
        else
            ours.insert_or_assign(key, *is);
    };
    for (const auto& [key, value] : theirs)
        take(key);
    for (const auto& [key, value] : before)
        take(key);
}

bool nameTheSameCopy(const LicenseNote& one, const LicenseNote& other)
{
    return one.attachment == other.attachment && one.attachmentName == other.attachmentName;
}

/// Of a note that has been changed here and there ours stays, but whoever replaced or removed an
/// attachment has thrown the copy away that ours would go on to name.
void takeOverAttachments(NotesBook& ours, const NotesBook& before, const NotesBook& theirs)
{
    const LicenseNote none;
    const auto noteIn = [&none](const NotesBook& book, const std::string& key) {
        const LicenseNote* const note = book.note(key);
        return note == nullptr ? &none : note;
    };
    for (auto entry = ours.notes.begin(); entry != ours.notes.end();) {
        auto& [key, note] = *entry;
        const LicenseNote* const was = noteIn(before, key);
        const LicenseNote* const is = noteIn(theirs, key);
        bool isGone = false;
        if (!nameTheSameCopy(*was, *is) && nameTheSameCopy(*was, note)) {
            note.attachment = is->attachment;
            note.attachmentName = is->attachmentName;
            isGone = note.isEmpty();
        }
        entry = isGone ? ours.notes.erase(entry) : std::next(entry);
    }
}

} // namespace

const LicenseNote* NotesBook::note(std::string_view key) const
{
    const auto found = notes.find(key);
    return found == notes.end() ? nullptr : &found->second;
}

void NotesBook::set(std::optional<LicenseNote> note, std::string_view key)
{
    const auto found = notes.find(key);
    if (!note || note->isEmpty()) {
        if (found != notes.end()) notes.erase(found);
        return;
    }
    if (found == notes.end()) {
        notes.emplace(key, *std::move(note));
        return;
    }
    note->unknownKeys.merge(found->second.unknownKeys);
    found->second = *std::move(note);
}

void NotesBook::takeOver(const NotesBook& before, const NotesBook& theirs)
{
    if (before == theirs) return;
    takeOverEntries(notes, before.notes, theirs.notes);
    takeOverAttachments(*this, before, theirs);
    takeOverEntries(unknownKeys, before.unknownKeys, theirs.unknownKeys);
}

NotesBook NotesBook::load(const std::filesystem::path& path)
{
    auto read = readNotesFile(path);
    auto* const decoded = std::get_if<NotesJson::Decoded>(&read);
    return decoded == nullptr ? NotesBook() : std::move(decoded->book);
}

std::optional<NotesError> NotesBook::save(const std::filesystem::path& path) const
{
    const auto failed = [&path](FileError error) {
        const auto kind = error.isDone ? NotesError::Kind::notSynced : NotesError::Kind::notSaved;
        return NotesError(kind, path, std::move(error.reason));
    };
    if (auto error = makeFolders(path.parent_path())) return failed(*std::move(error));
    const std::string bytes = NotesJson::encode(*this);
    // Never write what could not be read again.
    if (bytes.size() > Limits::notesFileBytes) return failed(FileError::ofSystem(EFBIG));
    constexpr unsigned ownerOnly = 0600;
    if (auto error = writeDurably(path, bytes, ownerOnly)) return failed(*std::move(error));
    return std::nullopt;
}

} // namespace quillmark
