// The report for programs. docs/json.md describes it, docs/schema has its JSON Schema.
#pragma once

#include "cli/FontList.h"
#include "cli/Output.h"
#include "coding/JsonWriter.h"

#include <span>

namespace quillmark::cli {

/// Writes each list as it comes, so that memory holds one list and a few pieces of text.
class JsonReport {
public:
    explicit JsonReport(Output& output);

    void add(const FontList& list);
    void finish(std::span<const InputError> errors);

private:
    Output& m_output;
    JsonWriter m_writer;
};

} // namespace quillmark::cli
