#include "files/FileError.h"

#include "files/FileDescriptor.h"

namespace quillmark {

FileError FileError::ofSystem(int number)
{
    return {number, errorText(number)};
}

} // namespace quillmark
