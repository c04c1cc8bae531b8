// Documents read by a reader process.
#pragma once

#include "pdf/PDFFontScanner.h"
#include "reader/Readers.h"

#include <memory>

namespace quillmark::reader {

/// What PDFFontScanner::read does, in a process with limits. A document over which it ends or is
/// silent is unreadable. What is returned may be called by several threads at once, and throws
/// StartFailure.
[[nodiscard]] PDFFontScanner::Read documentReader(std::shared_ptr<const Readers> readers);

} // namespace quillmark::reader
