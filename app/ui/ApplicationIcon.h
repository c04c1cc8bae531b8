// The application's own icon; those of its commands are in Symbols.h.
#pragma once

#include <QIcon>

namespace quillmark {

/// At every size that window managers and the program itself ask for. Main thread.
[[nodiscard]] QIcon applicationIcon();

} // namespace quillmark
