// The page where PDFs are dropped or chosen to be checked.
#pragma once

#include <QWidget>

class QProgressBar;
class QPushButton;
class QShortcut;

namespace quillmark {

class AppModel;
class TextLabel;

/// While it is shown, Return is its button's, but for where somebody types.
class DocumentDropView final : public QWidget {
    Q_OBJECT
public:
    /// The model has to outlive the view.
    explicit DocumentDropView(AppModel& model, QWidget* parent = nullptr);
    ~DocumentDropView() override;

    /// Whether files are being dragged over it.
    [[nodiscard]] bool targeted() const;

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    class DropArea;

    void followModel();
    void followFocus();

    AppModel& m_model;
    DropArea* m_area;
    QPushButton* m_choose;
    QWidget* m_busy;
    QProgressBar* m_progress;
    TextLabel* m_checking;
    QShortcut* m_return;
    QShortcut* m_enter;
};

} // namespace quillmark
