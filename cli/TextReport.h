// The report for people.
#pragma once

#include "cli/FontDetails.h"
#include "cli/FontList.h"
#include "cli/RowSelection.h"
#include "cli/TextLines.h"

#include <string_view>
#include <vector>

namespace quillmark::cli {

struct TextSetting {
    /// What the fonts of folders and the installed ones are shown as. The fonts of documents, and a
    /// font file that is the only one, are shown in full anyway.
    enum class Form {
        table,
        full,   // everything about each font
        blocks, // the same, without headings: the fonts were asked for one by one
    };
    Form form{Form::table};
    bool tips{};
    const RowSelection* selection{}; // null: tables have an order of their own
    const NotesBook* notes{};        // null: nothing is said about notes
};

class TextReport {
public:
    using Row = AuditRow;
    using List = FontList<Row>;

    TextReport(Output& output, const Page& page, const TextSetting& setting)
        : m_lines(output, page), m_setting(setting)
    {
    }

    void add(List list);
    void finish();

private:
    using Rows = std::vector<const AuditRow*>;

    void writeHeading(std::string_view title, std::string_view subtitle);
    void writeDocument(const List& list);
    void writeList(const List& list);
    void writeFiles();
    [[nodiscard]] Rows ordered(const Rows& rows) const;
    void writeFonts(const Rows& rows, const std::string& folder);
    void writeInFull(const Rows& rows);
    void writeSummary(const AuditSummary& summary, std::size_t hidden);

    TextLines m_lines;
    TextSetting m_setting;
    std::vector<List> m_files; // font files that came one after the other, not yet written
    AuditSummary m_total;
    std::size_t m_totalHidden{};
    int m_summaryCount{};
    bool m_started{}; // something was written
};

} // namespace quillmark::cli
