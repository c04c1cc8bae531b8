// Lists as comma-separated values: whatever the fields hold, they are read back as they were, and
// none of them is a formula. The fields' texts are separated by the byte FF.

#include "Harness.h"

#include "export/AuditExport.h"

#include <algorithm>
#include <vector>

namespace {

using namespace quillmark;

/// Takes the texts of an input one by one; empty ones when they are used up.
class Texts {
public:
    explicit Texts(std::string_view input) : m_rest(input) {}

    std::string next()
    {
        const std::size_t end = std::min(m_rest.find('\xFF'), m_rest.size());
        std::string text = repairedUtf8(m_rest.substr(0, end));
        m_rest.remove_prefix(std::min(end + 1, m_rest.size()));
        return text;
    }

private:
    std::string_view m_rest;
};

/// The fields of each line, as a spreadsheet takes them (RFC 4180).
std::vector<std::vector<std::string>> lines(std::string_view text)
{
    std::vector<std::vector<std::string>> result;
    while (!text.empty()) {
        auto& fields = result.emplace_back();
        bool ended = false;
        while (!ended) {
            std::string& field = fields.emplace_back();
            if (text.starts_with('"')) {
                text.remove_prefix(1);
                for (;;) {
                    const std::size_t quote = text.find('"');
                    fuzz::expect(quote != std::string_view::npos);
                    field += text.substr(0, quote);
                    text.remove_prefix(quote + 1);
                    if (!text.starts_with('"')) break;
                    field += '"';
                    text.remove_prefix(1);
                }
            } else {
                const std::size_t end = std::min(text.find_first_of(",\r\n\""), text.size());
                field = text.substr(0, end);
                text.remove_prefix(end);
            }
            ended = !text.starts_with(',');
            if (!ended) text.remove_prefix(1);
        }
        fuzz::expect(text.starts_with("\r\n"));
        text.remove_prefix(2);
    }
    return result;
}

bool isFormula(std::string_view field)
{
    const std::size_t first = field.find_first_not_of('\0');
    return first != std::string_view::npos &&
           std::string_view("=+-@").find(field[first]) != std::string_view::npos;
}

/// A field as it is expected for this text.
std::string shown(const std::string& text)
{
    return isFormula(text) ? "'" + text : text;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Texts texts(std::string_view(reinterpret_cast<const char*>(data), size));
    AuditRow row;
    row.facts.postScriptName = texts.next();
    row.facts.family = texts.next();
    row.facts.style = texts.next();
    row.facts.fullName = texts.next();
    row.facts.licenseURL = texts.next();
    row.facts.manufacturer = texts.next();
    row.facts.copyright = texts.next();
    row.facts.filePath = texts.next();
    row.assessment.headline = texts.next();
    LicenseNote note;
    note.boughtFrom = texts.next();
    note.url = texts.next();
    note.attachmentName = texts.next();
    note.text = texts.next();
    NotesBook notes;
    notes.set(note, row.facts.postScriptName);

    const auto read = lines(AuditExport::csv(std::span(&row, 1), notes));
    fuzz::expect(read.size() >= 2 && read[0].size() == 22 && read[1].size() == 22);
    const auto& cells = read[1];
    for (const std::string& cell : cells)
        fuzz::expect(!isFormula(cell));
    fuzz::expect(cells[0] == shown(row.facts.displayName()));
    fuzz::expect(cells[1] == shown(row.facts.postScriptName));
    fuzz::expect(cells[2] == shown(row.facts.family));
    fuzz::expect(cells[3] == shown(row.facts.style));
    fuzz::expect(cells[5] == shown(row.assessment.headline));
    fuzz::expect(cells[7] == shown(*row.facts.licenseURL));
    fuzz::expect(cells[11] == shown(*row.facts.manufacturer));
    fuzz::expect(cells[12] == shown(*row.facts.copyright));
    fuzz::expect(cells[14] == shown(*row.facts.filePath));
    if (notes.note(row.facts.postScriptName) != nullptr) {
        fuzz::expect(cells[18] == shown(note.boughtFrom));
        fuzz::expect(cells[19] == shown(note.url));
        fuzz::expect(cells[20] == shown(*note.attachmentName));
        fuzz::expect(cells[21] == shown(note.text));
    }
    return 0;
}
