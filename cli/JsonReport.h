// The report for programs. docs/json.md describes it, docs/schema has its JSON Schema.
#pragma once

#include "cli/FontList.h"
#include "cli/Output.h"
#include "coding/JsonWriter.h"

#include <span>
#include <string>

namespace quillmark::cli {

/// A row in its form in the report. It is written where the font is judged, by several threads at
/// once, and takes much less memory than all that is known of the font.
struct JsonRow {
    explicit JsonRow(const AuditRow& row);

    Verdict verdict{};
    std::string text;
};

[[nodiscard]] inline Verdict verdict(const JsonRow& row)
{
    return row.verdict;
}

/// Writes each list as it comes, so that memory holds one list at a time.
class JsonReport {
public:
    using Row = JsonRow;

    explicit JsonReport(Output& output);

    void add(const FontList<JsonRow>& list);
    void finish(std::span<const InputError> errors);

private:
    Output& m_output;
    JsonWriter m_writer;
};

} // namespace quillmark::cli
