#include "Saver.h"

#include "files/ReadFile.h"
#include "notes/NotesFile.h"

#include <system_error>
#include <unistd.h>
#include <utility>
#include <variant>

namespace quillmark::faults {

namespace fs = std::filesystem;

Saver::Saver(const fs::path& folder)
    : m_attachments(attachmentsFolder(folder)), m_store(notesFile(folder), m_attachments)
{
    m_store.load();
}

void Saver::type(const std::string& key, const std::string& text)
{
    m_store.edit({.text = text}, key, moment);
}

std::optional<std::string> Saver::attach(const std::string& key, const std::string& name,
                                         const fs::path& file)
{
    if (auto error = m_attachments.copy(file, name)) return std::move(error->reason);
    m_store.attach(name, file.filename(), key, moment);
    return std::nullopt;
}

std::optional<std::string> Saver::save()
{
    const auto begun = m_store.beginSave(moment);
    return begun ? m_store.endSave(begun->run()).failure : std::nullopt;
}

fs::path notesFile(const fs::path& folder)
{
    return folder / "notes.json";
}

fs::path attachmentsFolder(const fs::path& folder)
{
    return folder / "Attachments";
}

std::optional<std::string> textIn(const NotesBook& book, const std::string& key)
{
    const LicenseNote* const note = book.note(key);
    return note == nullptr ? std::nullopt : std::optional(note->text);
}

std::string damageOf(const fs::path& folder)
{
    const auto read = readNotesFile(notesFile(folder));
    if (const auto* error = std::get_if<NotesError>(&read)) return error->sentence();
    const auto& decoded = std::get<NotesJson::Decoded>(read);
    if (!decoded.isWhole) return "the file of notes says more than can be read of it";
    for (const auto& [key, note] : decoded.book.notes)
        if (note.attachment && !fs::is_regular_file(attachmentsFolder(folder) / *note.attachment))
            return "the note on " + key + " names a copy that is not there";
    return {};
}

std::vector<fs::path> leftovers(const fs::path& folder)
{
    std::vector<fs::path> found;
    std::error_code error;
    for (const auto& entry : fs::recursive_directory_iterator(folder, error))
        if (entry.path().filename().native().starts_with(".quillmark-"))
            found.push_back(entry.path());
    return found;
}

fs::path inMemory()
{
    const fs::path memory = "/dev/shm";
    return access(memory.c_str(), W_OK) == 0 ? memory : fs::temp_directory_path();
}

std::optional<std::string> contentOf(const fs::path& file)
{
    constexpr std::size_t most = std::size_t{64} << 20U;
    auto read = readFile(file, most);
    auto* const bytes = std::get_if<std::string>(&read);
    return bytes == nullptr ? std::nullopt : std::optional(std::move(*bytes));
}

} // namespace quillmark::faults
