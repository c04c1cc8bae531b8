#include "files/FileError.h"

#include "files/FileDescriptor.h"

namespace quillmark {

FileError FileError::ofSystem(int number)
{
    return {number, errorText(number)};
}

FileError FileError::unsynced(int number)
{
    return {number, errorText(number), true};
}

} // namespace quillmark
