#include "cli/JsonLinesReport.h"

#include "assessment/Classifier.h"
#include "cli/JsonRow.h"
#include "coding/JsonWriter.h"

#include <string>
#include <string_view>

namespace quillmark::cli {

TextRow JsonLinesReport::row(const AuditRow& row) const
{
    TextRow result{row.assessment.verdict, {}};
    JsonWriter writer(result.text, JsonWriter::Layout::oneLine);
    writer.beginObject();
    writeRowMembers(writer, row, m_notes);
    // A line goes its own way, and a verdict never goes without this.
    writer.member("disclaimer", Classifier::disclaimer);
    writer.endObject();
    return result;
}

void JsonLinesReport::add(const FontList<TextRow>& list)
{
    std::string source;
    JsonWriter writer(source, JsonWriter::Layout::oneLine);
    writer.beginObject();
    writeSourceMembers(writer, list.source);
    writer.endObject();
    for (const TextRow& row : list.rows) {
        // The list becomes the first member of the row's object.
        std::string& buffer = m_output.buffer();
        buffer.append("{\"list\": ").append(source).append(", ");
        buffer.append(std::string_view(row.text).substr(1)).append("\n");
        m_output.flush();
        if (m_output.error()) return;
    }
}

} // namespace quillmark::cli
