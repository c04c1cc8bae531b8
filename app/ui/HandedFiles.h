// Files and folders that are handed in from outside: on the command line, by another start, or, on
// macOS, by an event.
#pragma once

#include <QObject>
#include <QTimer>

#include <filesystem>
#include <vector>

namespace quillmark {

class AppModel;

/// Gives them to the model. A document waits until the fonts that it is to be matched to have been
/// read, for a check knows only those that are known when it begins.
class HandedFiles final : public QObject {
    Q_OBJECT
public:
    /// The model has to outlive it.
    explicit HandedFiles(AppModel& model, QObject* parent = nullptr);

    /// Folders are scanned; whatever else is left is checked, if it is a PDF.
    void open(const std::vector<std::filesystem::path>& files);

protected:
    /// Sees the application's events.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    [[nodiscard]] bool isReading() const;
    void checkWhenRead();
    void check();

    AppModel& m_model;
    std::vector<std::filesystem::path> m_documents; // in their order, while they wait
    QTimer m_patience;
};

} // namespace quillmark
