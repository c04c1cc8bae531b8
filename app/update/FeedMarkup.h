// A first look at the markup of a list of updates, before anything takes it apart. Appcast.h reads
// what it says.
#pragma once

#include <QString>

namespace quillmark {

/// Why the text is not even to be tried as XML: a document type, which could define entities, or
/// more of something than FeedLimits allows. Empty when there is no such reason, though the text
/// may still be no XML.
[[nodiscard]] QString reasonNotToParse(const QString& xml);

} // namespace quillmark
