// The report for programs. docs/json.md describes it, docs/schema has its JSON Schema.
#pragma once

#include "cli/FontList.h"
#include "cli/Output.h"
#include "coding/JsonWriter.h"

#include <span>
#include <string>

namespace quillmark::cli {

/// Writes each list as it comes, so that memory holds one list at a time.
class JsonReport {
public:
    using Row = TextRow;

    explicit JsonReport(Output& output);

    [[nodiscard]] static TextRow row(const AuditRow& row);
    void add(const FontList<TextRow>& list);
    void finish(std::span<const InputError> errors);

private:
    Output& m_output;
    JsonWriter m_writer;
};

} // namespace quillmark::cli
