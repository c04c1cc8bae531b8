// The report for people.
#pragma once

#include "cli/FontList.h"
#include "cli/TextLines.h"

#include <string_view>
#include <vector>

namespace quillmark::cli {

/// Folders and the installed fonts come as tables; the fonts of documents, and a font file that is
/// the only one, with all that is known of them.
class TextReport {
public:
    using Row = AuditRow;
    using List = FontList<Row>;
    enum class Tips { hidden, shown };

    TextReport(Output& output, const Page& page, Tips tips) : m_lines(output, page), m_tips(tips) {}

    void add(List list);
    void finish();

private:
    void writeHeading(std::string_view title, std::string_view subtitle);
    void writeDocument(const List& list);
    void writeTable(const List& list);
    void writeFiles();
    void writeSummary(const AuditSummary& summary);

    TextLines m_lines;
    Tips m_tips;
    std::vector<List> m_files; // font files that came one after the other, not yet written
    AuditSummary m_total;
    int m_summaryCount{};
    bool m_started{}; // something was written
};

} // namespace quillmark::cli
