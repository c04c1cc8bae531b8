#include "cli/JsonReport.h"

#include "assessment/Classifier.h"
#include "cli/Help.h"
#include "coding/RecordCoding.h"

namespace quillmark::cli {
namespace {

std::string_view rawKind(FontList::Kind kind)
{
    switch (kind) {
    case FontList::Kind::installed:
        return "installed";
    case FontList::Kind::folder:
    case FontList::Kind::file: // a list of scanned fonts like a folder's, whose path is a file's
        return "folder";
    case FontList::Kind::document:
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

void JsonReport::add(const FontList& list)
{
    m_writer.beginObject();
    m_writer.member("kind", rawKind(list.kind));
    m_writer.member("title", list.title);
    m_writer.member("subtitle", list.subtitle);
    if (list.path) m_writer.member("path", *list.path);
    if (list.document) {
        m_writer.member("fileName", list.document->fileName);
        m_writer.member("pageCount", list.document->pageCount);
        m_writer.member("checkedAt", encodeDate(list.document->checkedAt));
    }
    m_writer.key("summary");
    write(m_writer, AuditSummary::of(list.rows));
    m_writer.key("rows");
    m_writer.beginArray();
    for (const AuditRow& row : list.rows) {
        write(m_writer, row);
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
