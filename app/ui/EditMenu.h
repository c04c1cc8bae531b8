// The Edit menu's commands, which act on whatever has the focus.
#pragma once

#include <QMenu>

#include <vector>

namespace quillmark {

/// Text fields offer the commands as slots, and so does every view that has one of them: what the
/// focused widget does not offer is disabled while the menu is open.
class EditMenu final : public QMenu {
    Q_OBJECT
public:
    explicit EditMenu(QWidget* parent = nullptr);

private:
    struct Command {
        const char* slot; // such as "copy"
        QAction* action;
    };

    void followFocus();

    std::vector<Command> m_commands;
};

} // namespace quillmark
