#include "files/ProgramFiles.h"

#include <system_error>

namespace quillmark {

std::filesystem::path besideProgram(std::string_view relative)
{
    std::error_code error;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
    // Where nothing tells which program runs (without /proc), it is taken for an installed one.
    // What lies in the current folder is never started or loaded instead.
    const auto prefix = error ? std::filesystem::path("/usr") : program.parent_path().parent_path();
    return prefix / relative;
}

} // namespace quillmark
