#include "ui/UpdateWindows.h"

#include "assessment/Brand.h"
#include "model/Prompts.h"
#include "model/QtText.h"
#include "ui/SingleInstance.h"
#include "ui/UpdateDialog.h"

#include <QEvent>
#include <QMessageBox>
#include <QPushButton>
#include <QWidget>

#include <utility>

namespace quillmark {

using namespace Qt::Literals::StringLiterals;

namespace {

void setTexts(QMessageBox& box, const UpdateAlert& alert)
{
    box.setText(qtText(alert.title));
    box.setInformativeText(qtText(alert.text));
}

} // namespace

UpdateWindows::UpdateWindows(QWidget& window, Prompts& prompts)
    : m_window(window), m_prompts(prompts)
{
    m_window.installEventFilter(this);
}

UpdateWindows::~UpdateWindows()
{
    closeAll();
}

void UpdateWindows::showAlert(const UpdateAlert& alert)
{
    comeToFront(m_window, {});
    if (m_alert) return setTexts(*m_alert, alert);
    m_alert =
        new QMessageBox(QMessageBox::Information, qtText(Brand), {}, QMessageBox::Ok, &m_window);
    m_alert->setTextFormat(Qt::PlainText);
    m_alert->setAttribute(Qt::WA_DeleteOnClose);
    setTexts(*m_alert, alert);
    // It is still on its way out then: another alert needs a box of its own.
    connect(m_alert, &QDialog::finished, this, [this] { m_alert.clear(); });
    m_alert->open();
}

void UpdateWindows::askForConsent(const UpdateAlert& question, std::function<void(bool)> answer)
{
    delete m_question;
    m_question =
        new QMessageBox(QMessageBox::Question, qtText(Brand), {}, QMessageBox::NoButton, &m_window);
    m_question->setTextFormat(Qt::PlainText);
    m_question->setAttribute(Qt::WA_DeleteOnClose);
    m_question->setAttribute(Qt::WA_ShowWithoutActivating);
    setTexts(*m_question, question);
    const auto* const yes =
        m_question->addButton(u"Check Automatically"_s, QMessageBox::AcceptRole);
    QPushButton* const no = m_question->addButton(u"Don’t Check"_s, QMessageBox::RejectRole);
    m_question->setEscapeButton(no);
    // Return without reading is no consent.
    m_question->setDefaultButton(no);
    connect(m_question, &QDialog::finished, this,
            [box = m_question.data(), yes, answer = std::move(answer)] {
                answer(box->clickedButton() == yes);
            });
    m_question->setModal(false);
    m_question->show();
}

void UpdateWindows::showUpdate(const UpdateOffer& offer, UpdateAnswers answers)
{
    const bool isShown = m_dialog && m_dialog->offer().version == offer.version;
    if (isShown && offer.cause == UpdateOffer::Cause::schedule) return;
    delete m_dialog;
    m_dialog = new UpdateDialog(offer, &m_window);
    connect(m_dialog, &UpdateDialog::skipped, this, std::move(answers.skip));
    connect(m_dialog, &UpdateDialog::checkAutomatically, this,
            std::move(answers.checkAutomatically));
    connect(m_dialog, &UpdateDialog::pageRequested, this, &UpdateWindows::openPage);
    m_dialog->setAttribute(Qt::WA_ShowWithoutActivating,
                           offer.cause == UpdateOffer::Cause::schedule);
    m_dialog->show();
    if (offer.cause == UpdateOffer::Cause::user) m_dialog->activateWindow();
}

void UpdateWindows::openPage(const std::string& address)
{
    if (!m_prompts.openURL(address))
        showAlert({"Couldn’t open the page", "No browser was found for " + address + "."});
}

bool UpdateWindows::eventFilter(QObject* watched, QEvent* event)
{
    // Dialogs outlast the window that they belong to, and would keep the program running.
    if (event->type() == QEvent::Hide && !event->spontaneous()) closeAll();
    return QObject::eventFilter(watched, event);
}

void UpdateWindows::closeAll()
{
    // Not by closing: that would be an answer.
    delete m_alert;
    delete m_question;
    delete m_dialog;
}

} // namespace quillmark
