// One font in the reports for programs.
#pragma once

#include "assessment/Assessment.h"
#include "cli/FontList.h"
#include "coding/JsonWriter.h"
#include "notes/NotesBook.h"
#include "pdf/AuditRow.h"

namespace quillmark::cli {

/// Writes the members of a row's object: its id, the records, and the user's note on it, if there
/// is one in `notes`.
void writeRowMembers(JsonWriter& writer, const AuditRow& row, const NotesBook& notes);

/// Writes the members that tell what a list is of.
void writeSourceMembers(JsonWriter& writer, const ListSource& source);

} // namespace quillmark::cli
