// The window that tells of a new version.
#pragma once

#include "update/UpdatePresenter.h"

#include <QDialog>

#include <string>

class QPushButton;

namespace quillmark {

/// Not modal: the user reads it when there is time. To close it in any way but by a button is to be
/// reminded later.
class UpdateDialog final : public QDialog {
    Q_OBJECT
public:
    explicit UpdateDialog(const UpdateOffer& offer, QWidget* parent = nullptr);

    [[nodiscard]] const UpdateOffer& offer() const { return m_offer; }

Q_SIGNALS:
    void skipped();
    void checkAutomatically(bool automatic);
    /// A page is to be shown in the browser: the new version's, or one that its notes lead to.
    void pageRequested(const std::string& address);

private:
    QWidget* createTexts();
    QWidget* createNotes();
    QWidget* createButtons();

    UpdateOffer m_offer;
    QPushButton* m_default{};
};

} // namespace quillmark
