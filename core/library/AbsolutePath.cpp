#include "library/AbsolutePath.h"

#include <system_error>

namespace quillmark {

namespace fs = std::filesystem;

fs::path absolutePath(const fs::path& path)
{
    std::error_code error;
    const fs::path absolute = fs::absolute(path, error);
    if (error) return path;
    fs::path normal = absolute.lexically_normal();
    if (!normal.has_filename() && normal.has_relative_path()) normal = normal.parent_path();
    // "link/.." is not the folder that holds the link.
    const bool same = fs::equivalent(normal, absolute, error);
    return same || error ? normal : absolute;
}

} // namespace quillmark
