// A file of notes: what is read of it can be saved and read again.

#include "Harness.h"

#include "notes/NotesJson.h"

#include <variant>

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace quillmark;
    const std::string text(reinterpret_cast<const char*>(data), size);
    const auto decoded = NotesJson::decode(text);
    if (const auto* damage = std::get_if<NotesJson::Damage>(&decoded)) {
        fuzz::expectText(std::string_view(damage->reason));
        return 0;
    }
    const NotesBook& book = std::get<NotesJson::Decoded>(decoded).book;
    const std::string encoded = NotesJson::encode(book);
    fuzz::expectText(std::string_view(encoded));
    const auto again = NotesJson::decode(encoded);
    fuzz::expect(std::get<NotesJson::Decoded>(again) == NotesJson::Decoded{book, true});
    fuzz::expect(NotesJson::encode(std::get<NotesJson::Decoded>(again).book) == encoded);
    return 0;
}
