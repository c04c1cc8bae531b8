#include "ui/Alerts.h"

#include "assessment/Brand.h"
#include "model/AppModel.h"
#include "model/QtText.h"
#include "text/Printable.h"

#include <QMessageBox>
#include <QWidget>

namespace quillmark {

Alerts::Alerts(AppModel& model, QWidget* window) : QObject(window), m_model(model), m_window(window)
{
    connect(&m_model, &AppModel::alertChanged, this, &Alerts::show);
    show();
}

void Alerts::show()
{
    if (!m_model.alert()) {
        if (m_box) m_box->close();
        return;
    }
    // It names files, whose names may hold anything.
    const QString text = qtText(printable(*m_model.alert()));
    if (m_box) {
        m_box->setText(text);
        return;
    }
    m_box = new QMessageBox(QMessageBox::Warning, qtText(Brand), text, QMessageBox::Ok, m_window);
    m_box->setTextFormat(Qt::PlainText);
    m_box->setAttribute(Qt::WA_DeleteOnClose);
    connect(m_box, &QDialog::finished, this, [this] {
        // It is still on its way out: another alert needs a box of its own.
        m_box.clear();
        m_model.setAlert(std::nullopt);
    });
    m_box->open();
}

} // namespace quillmark
