#include "notes/NotesError.h"

#include "text/Encoding.h"

#include <string_view>
#include <utility>

namespace quillmark {
namespace {

std::string_view whatFailed(NotesError::Kind kind)
{
    switch (kind) {
    case NotesError::Kind::missing:
    case NotesError::Kind::unreadable:
        return " could not be read: ";
    case NotesError::Kind::malformed:
        return " could not be read as license notes: ";
    case NotesError::Kind::notSaved:
        return " could not be written: ";
    case NotesError::Kind::notSynced:
        return " has been written but may not be on the disk: ";
    }
    return {};
}

} // namespace

NotesError::NotesError(Kind errorKind, const std::filesystem::path& file, std::string why)
    : kind(errorKind), path(repairedUtf8(file.native())), reason(std::move(why))
{
}

std::string NotesError::sentence() const
{
    return path + std::string(whatFailed(kind)) + reason + ".";
}

} // namespace quillmark
