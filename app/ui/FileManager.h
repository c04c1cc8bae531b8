// Shows files in the desktop's file manager. Opening them is ProgramOpener.h.
#pragma once

#include <QObject>

#include <filesystem>
#include <functional>

namespace quillmark {

class FileManager final : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    /// Shows a file or folder, selected, in the folder that holds it; in place of one that is gone
    /// the nearest folder above it that is there. Where no file manager answers, the folder is
    /// opened by itself, and never the file. Returns at once.
    void reveal(const std::filesystem::path& path);

Q_SIGNALS:
    /// There is nothing to show this folder with.
    void failed(const std::filesystem::path& folder);
};

/// The path or, if nothing is there, the nearest folder above it where something is.
[[nodiscard]] std::filesystem::path nearestThere(std::filesystem::path path);

} // namespace quillmark
