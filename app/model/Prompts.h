// The seam between the model and the desktop: what is asked of the user, and what is handed to
// other programs. The windows implement it; tests have a fake.
#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace quillmark {

/// A panel for choosing what is there already.
struct OpenPanel {
    enum class Choice {
        folder,
        file,
        pdfs
    }; // one folder, one file of any kind, any number of PDFs

    Choice choice{};
    std::string prompt;  // the words on the button that confirms
    std::string message; // what the user is asked to do
    bool operator==(const OpenPanel&) const = default;
};

enum class ExportFormat { csv, pdf };

/// A panel for choosing where a file is to be written. Folders may be made in it, and it has asked
/// already whether an existing file may be replaced when it answers.
struct SavePanel {
    std::string fileName; // what stands in the name field at first
    ExportFormat format{};
    bool operator==(const SavePanel&) const = default;
};

/// All functions are called on the main thread and return at once: panels are modal to the window,
/// not to the program. A panel answers on the main thread, later or from inside the call, and not
/// at all when it is cancelled.
class Prompts {
public:
    virtual ~Prompts() = default;

    /// Answers with absolute paths in the panel's order.
    virtual void open(const OpenPanel& panel,
                      std::function<void(std::vector<std::filesystem::path>)> chosen) = 0;
    virtual void save(const SavePanel& panel,
                      std::function<void(std::filesystem::path)> chosen) = 0;
    /// Shows a file or folder, selected, in the desktop's file manager.
    virtual void reveal(const std::filesystem::path& path) = 0;
    /// Hands a URL to the program that the user has chosen for its kind. A "file:" URL leads to a
    /// file that came from somewhere else: one that is a program itself is revealed, never run.
    /// Whether there was something to hand it to.
    [[nodiscard]] virtual bool openURL(const std::string& url) = 0;
};

} // namespace quillmark
