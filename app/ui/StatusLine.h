// The line at the window's bottom: what is being read, or what the shown list comes to.
#pragma once

#include <QStatusBar>
#include <QString>

class QProgressBar;

namespace quillmark {

class AppModel;
class TextLabel;

/// What has ended is also announced to screen readers, whatever they are reading.
class StatusLine final : public QStatusBar {
    Q_OBJECT
public:
    explicit StatusLine(AppModel& model, QWidget* parent = nullptr);

    /// How many fonts of the list the filters leave.
    void setShownRows(int count);
    [[nodiscard]] QString text() const;

private:
    void follow();
    [[nodiscard]] QString workUnderWay() const;
    [[nodiscard]] QString summary() const;

    AppModel& m_model;
    QProgressBar* m_bar;
    TextLabel* m_text;
    int m_shownRows{};
    bool m_wasBusy{};
};

} // namespace quillmark
