// Shows what the model has to tell the user, one message at a time.
#pragma once

#include <QObject>
#include <QPointer>

class QMessageBox;
class QWidget;

namespace quillmark {

class AppModel;

/// A newer text takes the place of one that was not dismissed yet, in the same box.
class Alerts final : public QObject {
    Q_OBJECT
public:
    /// `window` owns it, and the boxes are modal to it.
    Alerts(AppModel& model, QWidget* window);

private:
    void show();

    AppModel& m_model;
    QWidget* m_window;
    QPointer<QMessageBox> m_box;
};

} // namespace quillmark
