// The model's prompts on a real desktop: file panels over the main window, the file manager, and
// the programs that the user has for files and links.
#pragma once

#include "model/Prompts.h"
#include "ui/FileManager.h"

#include <QLatin1StringView>
#include <QObject>
#include <QPointer>
#include <QStandardPaths>
#include <QString>
#include <QWidget>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

class QFileDialog;

namespace quillmark {

class DesktopPrompts final : public QObject, public Prompts {
    Q_OBJECT
public:
    /// The folders in which panels begin are kept in the settings file, one for each purpose.
    explicit DesktopPrompts(std::filesystem::path settingsFile);

    /// The window that panels belong to; modal to it alone.
    void setWindow(QWidget* window) { m_window = window; }

    /// While a panel is open another one is not: that one comes to the front instead.
    void open(const OpenPanel& panel,
              std::function<void(std::vector<std::filesystem::path>)> chosen) override;
    void save(const SavePanel& panel, std::function<void(std::filesystem::path)> chosen) override;
    void reveal(const std::filesystem::path& path) override;
    [[nodiscard]] bool openURL(const std::string& url) override;

Q_SIGNALS:
    /// Something that has no answer of its own could not be done; a sentence for the user.
    void failed(const std::string& sentence);

private:
    [[nodiscard]] bool raisesOpenPanel() const;
    void show(QFileDialog* panel);
    void askToReplace(const std::filesystem::path& file,
                      std::function<void(std::filesystem::path)> chosen);
    [[nodiscard]] QString startFolder(QLatin1StringView purpose,
                                      QStandardPaths::StandardLocation first) const;
    void rememberFolder(QLatin1StringView purpose, const std::filesystem::path& chosen) const;

    std::filesystem::path m_settingsFile;
    FileManager m_fileManager;
    QPointer<QWidget> m_window;
    QPointer<QFileDialog> m_panel;
};

} // namespace quillmark
