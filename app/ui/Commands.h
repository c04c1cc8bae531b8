// What the user can ask for by name: one action for each command, which the menus, the toolbar and
// the context menus share.
#pragma once

#include <QAction>
#include <QObject>

#include <span>
#include <vector>

class QKeyEvent;

namespace quillmark {

class AppModel;

/// The actions live as long as this. Those that only ask something of the model are connected to
/// it; the window connects the others.
class Commands final : public QObject {
    Q_OBJECT
public:
    explicit Commands(AppModel& model, QObject* parent = nullptr);

    QAction* scanFolder;
    QAction* checkDocument;
    QAction* rescanFonts; // the menu's words for `rescan`
    QAction* exportCsv;
    QAction* exportPdf;
    QAction* quit;

    QAction* find;

    QAction* showDetails; // checkable
    QAction* showSidebar; // checkable

    QAction* help;
    QAction* checkForUpdates;
    QAction* about;

    // The toolbar's, of which only one is seen at a time.
    QAction* rescan;
    QAction* checkAgain;

    /// Whether the key belongs to a command of ours, so that a text field must not take it.
    [[nodiscard]] bool claims(const QKeyEvent& key) const;

protected:
    /// Under X11 a text field takes Ctrl+E and its like for moving the cursor, and the command
    /// would be dead wherever text is edited.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QAction* add(const QString& text, const QKeySequence& shortcut = {});
    void followModel();

    AppModel& m_model;
    std::vector<QAction*> m_claiming;
};

} // namespace quillmark
