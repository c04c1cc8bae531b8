// Tool tips that show plain text.
#pragma once

#include <QString>

namespace quillmark {

/// For `setToolTip` and its like, which take what looks like markup for markup.
[[nodiscard]] inline QString plainToolTip(const QString& text)
{
    return text.isEmpty() ? QString()
                          : QStringLiteral("<p style='white-space: pre-wrap'>") +
                                text.toHtmlEscaped() + QStringLiteral("</p>");
}

} // namespace quillmark
