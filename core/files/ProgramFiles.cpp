#include "files/ProgramFiles.h"

#include <system_error>

namespace quillmark {

std::filesystem::path besideProgram(std::string_view relative)
{
    std::error_code error;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
    return program.parent_path().parent_path() / relative;
}

} // namespace quillmark
