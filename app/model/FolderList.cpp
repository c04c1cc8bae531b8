#include "model/FolderList.h"

#include <algorithm>
#include <utility>

namespace quillmark {

bool FolderList::contains(std::string_view path) const
{
    return std::ranges::find(m_paths, path) != m_paths.end();
}

void FolderList::expect(const std::string& path)
{
    if (!contains(path)) m_paths.push_back(path);
}

bool FolderList::put(const std::string& path, RowList rows)
{
    expect(path);
    // Both lists have one order: the scans are a part of the paths.
    auto scan = m_scans.begin();
    for (const std::string& earlier : m_paths) {
        if (earlier == path) break;
        if (scan != m_scans.end() && scan->path == earlier) ++scan;
    }
    if (scan == m_scans.end() || scan->path != path) {
        m_scans.insert(scan, {path, std::move(rows)});
        return true;
    }
    if (scan->rows == rows) return false;
    scan->rows = std::move(rows);
    return true;
}

bool FolderList::remove(std::string_view path)
{
    std::erase(m_paths, path);
    return std::erase_if(m_scans, [&](const FolderScan& scan) { return scan.path == path; }) > 0;
}

} // namespace quillmark
