// Release notes from a list of updates, made fit to be shown beside our own words.
#pragma once

#include <QString>

namespace quillmark {

/// The HTML reduced to paragraphs, headings, lists, emphasis and links for a browser: no pictures,
/// styles, tables or scripts, nothing that would be fetched, and nothing nested without end. Its
/// text stays.
[[nodiscard]] QString simpleHtml(const QString& html);

/// The same for notes that are plain text.
[[nodiscard]] QString htmlOfPlainText(const QString& text);

} // namespace quillmark
