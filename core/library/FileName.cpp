#include "library/FileName.h"

#include "text/Case.h"
#include "text/Encoding.h"

namespace quillmark::FileName {
namespace {

/// Where the extension's full stop is; the length of a name without extension.
std::size_t extensionStart(std::string_view name)
{
    const std::size_t stop = name.rfind('.');
    return stop == std::string_view::npos || stop == 0 ? name.size() : stop;
}

} // namespace

std::string extension(std::string_view name)
{
    const std::size_t start = extensionStart(name);
    if (start == name.size()) return {};
    return lowercased(repairedUtf8(name.substr(start + 1)));
}

std::string stem(std::string_view name)
{
    return repairedUtf8(name.substr(0, extensionStart(name)));
}

std::string_view ofPath(std::string_view path)
{
    const std::size_t slash = path.rfind('/');
    return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

} // namespace quillmark::FileName
