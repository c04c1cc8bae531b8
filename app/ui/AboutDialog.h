// What this program is, which version of it this is, and what it stands on.
#pragma once

#include <QDialog>

namespace quillmark {

/// Window-modal: show it with open(). It deletes itself when it is closed.
class AboutDialog final : public QDialog {
    Q_OBJECT
public:
    explicit AboutDialog(QWidget* parent = nullptr);
};

/// The notices on libraries and fonts of others, as plain text.
[[nodiscard]] QString thirdPartyNotices();

} // namespace quillmark
