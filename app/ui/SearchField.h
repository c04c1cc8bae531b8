// The field in the toolbar whose words narrow the list.
#pragma once

#include <QLineEdit>

namespace quillmark {

class SearchField final : public QLineEdit {
    Q_OBJECT
public:
    explicit SearchField(QWidget* parent = nullptr);

Q_SIGNALS:
    /// The user has searched and wants on to the list.
    void left();

protected:
    void keyPressEvent(QKeyEvent* event) override;
};

} // namespace quillmark
