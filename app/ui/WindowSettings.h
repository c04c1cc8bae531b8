// What the window remembers from one run to the next, beside the model's settings in the same
// file.
#pragma once

#include <QByteArray>

#include <filesystem>

namespace quillmark {

/// States as the widgets themselves write them; empty when there is none.
struct WindowSettings {
    QByteArray geometry{};
    QByteArray splitter{};
    QByteArray listColumns{};
    bool showsDetails{true};
    bool showsSidebar{true};

    bool operator==(const WindowSettings&) const = default;

    /// The defaults for what the file does not say.
    [[nodiscard]] static WindowSettings load(const std::filesystem::path& file);
    /// Leaves everything else in the file as it is. What cannot be written is forgotten: it is not
    /// worth an alert.
    void save(const std::filesystem::path& file) const;
};

} // namespace quillmark
