// What the user sees of the check for updates: alerts, the question whether to check, and the new
// version itself.
#pragma once

#include "update/UpdatePresenter.h"

#include <QObject>
#include <QPointer>

class QMessageBox;
class QWidget;

namespace quillmark {

class Prompts;
class UpdateDialog;

/// All of it belongs to the main window, and goes away with it unanswered.
class UpdateWindows final : public QObject, public UpdatePresenter {
    Q_OBJECT
public:
    /// Both have to outlive it.
    UpdateWindows(QWidget& window, Prompts& prompts);
    ~UpdateWindows() override;

    /// Modal to the window, which comes to the front. A newer alert takes the place of one that is
    /// still shown.
    void showAlert(const UpdateAlert& alert) override;
    void askForConsent(const UpdateAlert& question, std::function<void(bool)> answer) override;
    void showUpdate(const UpdateOffer& offer, UpdateAnswers answers) override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void closeAll();
    void openPage(const std::string& address);

    QWidget& m_window;
    Prompts& m_prompts;
    QPointer<QMessageBox> m_alert;
    QPointer<QMessageBox> m_question;
    QPointer<UpdateDialog> m_dialog;
};

} // namespace quillmark
