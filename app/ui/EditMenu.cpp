#include "ui/EditMenu.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QByteArray>
#include <QKeySequence>
#include <QLineEdit>
#include <QMetaObject>
#include <QPlainTextEdit>
#include <QTextDocument>
#include <QTextEdit>

#include <array>
#include <optional>
#include <string_view>

namespace quillmark {

using namespace Qt::Literals::StringLiterals;

namespace {

struct Entry {
    const char* slot;
    QString text;
    QKeySequence::StandardKey key;
};

bool offers(const QWidget& widget, const char* slot)
{
    return widget.metaObject()->indexOfMethod(QByteArray(slot).append("()").constData()) >= 0;
}

/// What fields of text tell about themselves; absent for other widgets.
struct TextState {
    bool canUndo{};
    bool canRedo{};
    bool hasSelection{};
    bool isReadOnly{};
};

std::optional<TextState> textState(const QWidget& widget)
{
    if (const auto* const line = qobject_cast<const QLineEdit*>(&widget))
        return TextState{line->isUndoAvailable(), line->isRedoAvailable(), line->hasSelectedText(),
                         line->isReadOnly()};
    if (const auto* const plain = qobject_cast<const QPlainTextEdit*>(&widget))
        return TextState{plain->document()->isUndoAvailable(), plain->document()->isRedoAvailable(),
                         plain->textCursor().hasSelection(), plain->isReadOnly()};
    if (const auto* const text = qobject_cast<const QTextEdit*>(&widget))
        return TextState{text->document()->isUndoAvailable(), text->document()->isRedoAvailable(),
                         text->textCursor().hasSelection(), text->isReadOnly()};
    return std::nullopt;
}

bool isUsefulIn(const QAbstractItemView& view, std::string_view slot)
{
    if (slot == "copy") return view.selectionModel() && view.selectionModel()->hasSelection();
    if (slot == "selectAll")
        return view.selectionMode() != QAbstractItemView::NoSelection &&
               view.selectionMode() != QAbstractItemView::SingleSelection;
    return true;
}

bool isUseful(const QWidget& widget, std::string_view slot)
{
    if (const auto* const view = qobject_cast<const QAbstractItemView*>(&widget))
        return isUsefulIn(*view, slot);
    const std::optional<TextState> state = textState(widget);
    if (!state) return true;
    if (slot == "undo") return state->canUndo && !state->isReadOnly;
    if (slot == "redo") return state->canRedo && !state->isReadOnly;
    if (slot == "cut") return state->hasSelection && !state->isReadOnly;
    if (slot == "copy") return state->hasSelection;
    if (slot == "paste") return !state->isReadOnly;
    return true;
}

} // namespace

EditMenu::EditMenu(QWidget* parent) : QMenu(u"&Edit"_s, parent)
{
    const auto entries = std::to_array<Entry>({
        {"undo", u"Undo"_s, QKeySequence::Undo},
        {"redo", u"Redo"_s, QKeySequence::Redo},
        {"cut", u"Cut"_s, QKeySequence::Cut},
        {"copy", u"Copy"_s, QKeySequence::Copy},
        {"paste", u"Paste"_s, QKeySequence::Paste},
        {"selectAll", u"Select All"_s, QKeySequence::SelectAll},
    });
    for (const Entry& entry : entries) {
        const std::string_view slot = entry.slot;
        if (slot == "cut" || slot == "selectAll") addSeparator();
        auto* const action = addAction(entry.text);
        action->setShortcut(entry.key);
        connect(action, &QAction::triggered, this, [name = entry.slot] {
            QWidget* const widget = QApplication::focusWidget();
            if (widget && offers(*widget, name)) QMetaObject::invokeMethod(widget, name);
        });
        m_commands.push_back({entry.slot, action});
    }
    connect(this, &QMenu::aboutToShow, this, &EditMenu::followFocus);
    // A closed menu's commands have to answer their keys whatever gets the focus next.
    connect(this, &QMenu::aboutToHide, this, [this] {
        for (const Command& command : m_commands)
            command.action->setEnabled(true);
    });
}

void EditMenu::followFocus()
{
    const QWidget* const widget = QApplication::focusWidget();
    for (const Command& command : m_commands)
        command.action->setEnabled(widget && offers(*widget, command.slot) &&
                                   isUseful(*widget, command.slot));
}

} // namespace quillmark
