// Files that are dragged over a window and dropped.
#pragma once

#include <filesystem>
#include <vector>

class QDropEvent;

namespace quillmark {

/// The files, in their order; what else is dragged with them, such as the address of a page, is
/// left out. None when the files could only be moved: Quillmark reads files and never takes them.
[[nodiscard]] std::vector<std::filesystem::path> droppedFiles(const QDropEvent& event);

/// Says yes to a drag or a drop of files, and that they stay where they are.
void acceptFiles(QDropEvent& event);

} // namespace quillmark
