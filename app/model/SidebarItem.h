// What can be selected in the sidebar.
#pragma once

#include <string>
#include <utility>

namespace quillmark {

struct SidebarItem {
    enum class Kind { folder, document, installed, checkDocument };

    Kind kind{Kind::installed};
    std::string path{}; // FolderScan::path or DocumentAudit::path; empty for the other two

    [[nodiscard]] static SidebarItem folder(std::string path)
    {
        return {Kind::folder, std::move(path)};
    }
    [[nodiscard]] static SidebarItem document(std::string path)
    {
        return {Kind::document, std::move(path)};
    }
    [[nodiscard]] static SidebarItem installed() { return {Kind::installed}; }
    /// The page on which documents are dropped.
    [[nodiscard]] static SidebarItem checkDocument() { return {Kind::checkDocument}; }

    bool operator==(const SidebarItem&) const = default;
};

} // namespace quillmark
