#include "ui/ContextMenuKey.h"

#include <QAbstractItemView>
#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QKeyEvent>

namespace quillmark {

bool openContextMenu(QAbstractItemView& view, const QKeyEvent& key)
{
    if (key.key() != Qt::Key_F10 || key.modifiers() != Qt::ShiftModifier) return false;
    const QPoint at = view.visualRect(view.currentIndex()).center();
    QContextMenuEvent event(QContextMenuEvent::Keyboard, at, view.viewport()->mapToGlobal(at));
    QCoreApplication::sendEvent(view.viewport(), &event);
    return true;
}

} // namespace quillmark
