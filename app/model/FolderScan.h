// A scanned folder.
#pragma once

#include "model/RowList.h"

#include <string>

namespace quillmark {

struct FolderScan {
    /// Absolute and cleaned, as the bytes that the system knows the folder by, which need not be
    /// UTF-8; identifies the scan.
    std::string path;
    RowList rows; // one for each font face found
    bool operator==(const FolderScan&) const = default;
};

} // namespace quillmark
