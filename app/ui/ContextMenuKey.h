// The keys that open the context menu of what is selected.
#pragma once

class QAbstractItemView;
class QKeyEvent;

namespace quillmark {

/// Opens the context menu of the view's current item if the key is Shift+F10; whether it is. The
/// Menu key is turned into a context menu by the window system itself.
bool openContextMenu(QAbstractItemView& view, const QKeyEvent& key);

} // namespace quillmark
