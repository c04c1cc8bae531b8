// Whether the desktop asks for more contrast than the fixed verdict colours have as words.
#pragma once

namespace quillmark {

/// False unless somebody has said so. On the main thread only.
[[nodiscard]] bool moreContrastWanted();

/// Takes effect at once, in every window.
void setMoreContrastWanted(bool wanted);

} // namespace quillmark
