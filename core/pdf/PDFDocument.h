// Opening a PDF. The only door to the library that reads PDF objects.
#pragma once

#include "pdf/PDFCheckError.h"
#include "pdf/PDFObjects.h"

#include <cstddef>
#include <filesystem>
#include <memory>
#include <span>
#include <variant>

namespace quillmark::PDF {

/// A document, or why it does not open. A document that is encrypted with an empty user password
/// opens like any other.
using Opened = std::variant<std::unique_ptr<Document>, PDFCheckError::Kind>;

/// Opens a regular file; anything else (a folder, a pipe, a device) is unreadable. The file is read
/// as needed for as long as the document lives.
[[nodiscard]] Opened open(const std::filesystem::path& path);

/// Opens a document in memory. `data` must outlive it.
[[nodiscard]] Opened open(std::span<const std::byte> data);

} // namespace quillmark::PDF
