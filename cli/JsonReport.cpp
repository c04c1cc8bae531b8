#include "cli/JsonReport.h"

#include "assessment/Classifier.h"
#include "cli/Help.h"
#include "coding/RecordCoding.h"

#include <cassert>
#include <cstddef>

namespace quillmark::cli {
namespace {

/// Rows lie in an array, in a list, in the array of lists, in the report.
constexpr std::size_t rowDepth = 4;

std::string_view rawKind(ListSource::Kind kind)
{
    switch (kind) {
    case ListSource::Kind::installed:
        return "installed";
    case ListSource::Kind::folder:
    case ListSource::Kind::file: // a list of scanned fonts like a folder's, whose path is a file's
        return "folder";
    case ListSource::Kind::document:
        return "document";
    }
    return {};
}

void write(JsonWriter& writer, const AuditSummary& summary)
{
    writer.beginObject();
    writer.member("likelyOK", summary.likelyOK);
    writer.member("restricted", summary.restricted);
    writer.member("unknown", summary.unknown);
    writer.member("text", summary.text());
    writer.endObject();
}

void write(JsonWriter& writer, const AuditRow& row)
{
    writer.beginObject();
    writer.member("id", row.id());
    writer.key("facts");
    encode(writer, row.facts);
    writer.key("assessment");
    encode(writer, row.assessment);
    if (row.pdf) {
        writer.key("pdf");
        encode(writer, *row.pdf);
    }
    writer.endObject();
}

} // namespace

JsonReport::JsonReport(Output& output) : m_output(output), m_writer(output.buffer())
{
    m_writer.beginObject();
    m_writer.member("quillmark", version());
    m_writer.key("lists");
    m_writer.beginArray();
}

TextRow JsonReport::row(const AuditRow& row)
{
    TextRow result{row.assessment.verdict, {}};
    JsonWriter writer = JsonWriter::ofItems(result.text, rowDepth);
    write(writer, row);
    return result;
}

void JsonReport::add(const FontList<TextRow>& list)
{
    const ListSource& source = list.source;
    m_writer.beginObject();
    m_writer.member("kind", rawKind(source.kind));
    m_writer.member("title", source.title);
    m_writer.member("subtitle", source.subtitle);
    if (source.path) m_writer.member("path", *source.path);
    if (source.document) {
        m_writer.member("fileName", source.document->fileName);
        m_writer.member("pageCount", source.document->pageCount);
        m_writer.member("checkedAt", encodeDate(source.document->checkedAt));
    }
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
