#include "notes/NotesBook.h"

#include <utility>

namespace quillmark {

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

} // namespace quillmark
