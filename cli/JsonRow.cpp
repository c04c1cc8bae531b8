#include "cli/JsonRow.h"

#include "coding/RecordCoding.h"
#include "text/IsoDate.h"

#include <string_view>

namespace quillmark::cli {
namespace {

std::string_view rawKind(ListSource::Kind kind)
{
    switch (kind) {
    case ListSource::Kind::installed:
    case ListSource::Kind::named:
        return "installed";
    case ListSource::Kind::folder:
    case ListSource::Kind::file: // a list of scanned fonts like a folder's, whose path is a file's
        return "folder";
    case ListSource::Kind::document:
        return "document";
    }
    return {};
}

void write(JsonWriter& writer, const LicenseNote& note)
{
    writer.beginObject();
    writer.member("license", rawValue(note.license));
    writer.member("boughtFrom", note.boughtFrom);
    writer.member("text", note.text);
    writer.member("url", note.url);
    if (note.attachmentName) writer.member("attachmentName", *note.attachmentName);
    writer.member("updated", isoDate(note.updated));
    writer.endObject();
}

} // namespace

void writeRowMembers(JsonWriter& writer, const AuditRow& row, const NotesBook& notes)
{
    writer.member("id", row.id());
    writer.key("facts");
    encode(writer, row.facts);
    writer.key("assessment");
    encode(writer, row.assessment);
    if (row.pdf) {
        writer.key("pdf");
        encode(writer, *row.pdf);
    }
    if (const LicenseNote* note = notes.note(row.facts.postScriptName)) {
        writer.key("note");
        write(writer, *note);
    }
}

void writeSourceMembers(JsonWriter& writer, const ListSource& source)
{
    writer.member("kind", rawKind(source.kind));
    writer.member("title", source.title);
    writer.member("subtitle", source.subtitle);
    if (source.path) writer.member("path", *source.path);
    if (source.document) {
        writer.member("fileName", source.document->fileName);
        writer.member("pageCount", source.document->pageCount);
        writer.member("checkedAt", encodeDate(source.document->checkedAt));
    }
}

} // namespace quillmark::cli
