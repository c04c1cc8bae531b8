// Lists of fonts written to files that the user has chosen.
#pragma once

#include "files/FileError.h"
#include "model/AuditList.h"
#include "model/Prompts.h"
#include "notes/NotesBook.h"

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>

namespace quillmark::AuditFile {

/// The name that a list's file is given at first.
[[nodiscard]] std::string suggestedName(const AuditList& list, ExportFormat format);

/// Writes the list with the user's notes to `file`, in place of what is there. A document's report
/// bears the date of the check, any other one `now`. A new file gets the permissions `newMode`.
[[nodiscard]] std::optional<FileError>
write(const std::filesystem::path& file, const AuditList& list, ExportFormat format,
      const NotesBook& notes, std::chrono::system_clock::time_point now, unsigned newMode);

} // namespace quillmark::AuditFile
