// When a window can be seen.
#pragma once

#include <functional>

class QWidget;

namespace quillmark {

/// Calls `then` once, from the event loop, after the window has been painted for the first time; or
/// after a moment, for a window may be minimised from the start. Not when the window is gone first.
void afterFirstPaint(QWidget& window, std::function<void()> then);

} // namespace quillmark
