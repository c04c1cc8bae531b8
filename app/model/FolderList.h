// The folders that the user has scanned, in the order in which they were first added.
#pragma once

#include "model/FolderScan.h"

#include <string>
#include <string_view>
#include <vector>

namespace quillmark {

/// A folder from an earlier run keeps its place from the start on, whichever scan ends first, and
/// stays remembered when the application quits before its scan has ended.
class FolderList {
public:
    /// The folders that have been scanned.
    [[nodiscard]] const std::vector<FolderScan>& scans() const { return m_scans; }
    /// All folders, those with a scan to come included.
    [[nodiscard]] const std::vector<std::string>& paths() const { return m_paths; }
    /// Whether the folder is among `paths`.
    [[nodiscard]] bool contains(std::string_view path) const;

    /// Adds a folder at the end, its scan to come. Nothing happens when it is there.
    void expect(const std::string& path);
    /// Keeps the rows of a folder, in place of those it had, or as a new folder at the end. Whether
    /// `scans` changed.
    bool put(const std::string& path, RowList rows);
    /// Whether `scans` changed.
    bool remove(std::string_view path);

private:
    std::vector<FolderScan> m_scans; // in the order of m_paths, which has all of their paths
    std::vector<std::string> m_paths;
};

} // namespace quillmark
