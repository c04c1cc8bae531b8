#include "cli/JsonReport.h"

#include "assessment/Classifier.h"
#include "cli/Help.h"
#include "cli/JsonRow.h"

#include <cassert>
#include <cstddef>

namespace quillmark::cli {
namespace {

/// Rows lie in an array, in a list, in the array of lists, in the report.
constexpr std::size_t rowDepth = 4;

void write(JsonWriter& writer, const AuditSummary& summary)
{
    writer.beginObject();
    writer.member("likelyOK", summary.likelyOK);
    writer.member("restricted", summary.restricted);
    writer.member("unknown", summary.unknown);
    writer.member("text", summary.text());
    writer.endObject();
}

} // namespace

JsonReport::JsonReport(Output& output, const NotesBook& notes)
    : m_output(output), m_notes(notes), m_writer(output.buffer())
{
    m_writer.beginObject();
    m_writer.member("quillmark", version());
    m_writer.key("lists");
    m_writer.beginArray();
}

TextRow JsonReport::row(const AuditRow& row) const
{
    TextRow result{row.assessment.verdict, {}};
    JsonWriter writer = JsonWriter::ofItems(result.text, rowDepth);
    writer.beginObject();
    writeRowMembers(writer, row, m_notes);
    writer.endObject();
    return result;
}

void JsonReport::add(const FontList<TextRow>& list)
{
    m_writer.beginObject();
    writeSourceMembers(m_writer, list.source);
    m_writer.key("summary");
    write(m_writer, list.summary());
    m_writer.key("rows");
    m_writer.beginArray();
    assert(m_writer.depth() == rowDepth);
    for (const TextRow& row : list.rows) {
        m_writer.items(row.text);
        m_output.drain();
    }
    m_writer.endArray();
    m_writer.endObject();
}

void JsonReport::finish(std::span<const InputError> errors)
{
    m_writer.endArray();
    m_writer.key("errors");
    m_writer.beginArray();
    for (const InputError& error : errors) {
        m_writer.beginObject();
        m_writer.member("path", error.path);
        m_writer.member("message", error.message);
        m_writer.endObject();
    }
    m_writer.endArray();
    m_writer.member("disclaimer", Classifier::disclaimer);
    m_writer.endObject();
    m_output.buffer() += '\n';
}

} // namespace quillmark::cli
