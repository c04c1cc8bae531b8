// Writes the reports that report_test.py reads.
//
// usage: report_samples FOLDER

#include "export/PDFReport.h"
#include "text/Utf8.h"

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace quillmark;

constexpr std::chrono::sys_seconds date{std::chrono::seconds{1'773'480'413}}; // 2026-03-14 09:26:53

struct Report {
    std::string title = "Font license audit: sample";
    std::string subtitle = "Sample fonts";
    std::vector<AuditRow> rows;
    NotesBook notes{};
    AuditExport::ReportSetting setting{};
};

void write(const std::filesystem::path& path, const Report& report)
{
    const auto pdf = AuditExport::pdfReport(report.title, report.subtitle, report.rows,
                                            report.notes, date, report.setting);
    if (!pdf) throw std::runtime_error("no fonts to write a report with");
    std::ofstream file(path, std::ios::binary);
    file.write(reinterpret_cast<const char*>(pdf->data()),
               static_cast<std::streamsize>(pdf->size()));
    if (!file.flush()) throw std::runtime_error("could not write " + path.string());
}

AuditRow row(const std::string& name, Verdict verdict = Verdict::unknown)
{
    AuditRow made;
    made.facts.postScriptName = name + "-Regular";
    made.facts.family = name;
    made.assessment.verdict = verdict;
    made.assessment.headline = "The headline of " + name + ".";
    made.assessment.reasons = {"The only reason."};
    return made;
}

/// One font of each verdict; the last with all that can be said.
Report typical()
{
    Report report;
    report.title = "Font license audit: Gr\u00FC\u00DFe (2).pdf";
    report.subtitle = "/home/anna/Gr\u00FC\u00DFe (2).pdf";
    report.rows = {row("Cedar", Verdict::restricted), row("Birch", Verdict::unknown),
                   row("Alder", Verdict::likelyOK)};
    report.rows[0].assessment.reasons.push_back("A reason of so many words that it does not fit on "
                                                "one line of the page and goes on, at the "
                                                "same distance from the left, on the next one.");
    AuditRow& last = report.rows.back();
    last.assessment.license = LicenseKind::ofl;
    last.facts.licenseURL = "https://scripts.sil.org/OFL";
    last.facts.manufacturer = "Example Foundry";
    last.facts.filePath = "/usr/share/fonts/Alder.ttf";
    last.pdf = PDFFontInfo{};
    last.pdf->program = EmbeddedProgram::cff;
    last.pdf->subset = true;
    last.pdf->pages = {1, 2, 9};
    LicenseNote note;
    note.license = HeldLicense::ebook;
    note.boughtFrom = "Example Shop";
    note.url = "https://example.com/receipts?id=(7)";
    note.attachmentName = "receipt.pdf";
    note.text = "first line\nsecond line";
    report.notes.set(note, last.facts.postScriptName);
    return report;
}

Report manyPages()
{
    Report report;
    for (int number = 1; number <= 400; ++number) {
        const auto verdict = static_cast<Verdict>(number % 3);
        report.rows.push_back(row("Font " + std::to_string(number), verdict));
        AuditRow& made = report.rows.back();
        // Blocks of different heights, so that pages end at every place of a block.
        made.assessment.reasons.resize(static_cast<std::size_t>(number % 7), "One more reason.");
        if (number % 5 == 0) made.facts.filePath = "/fonts/" + std::string(200, 'x');
    }
    return report;
}

Report scripts()
{
    Report report;
    for (const char* name :
         {"\u601D\u6E90\u9ED1\u4F53", "\u30D2\u30E9\u30AE\u30CE\u89D2\u30B4",
          "\uB098\uB214\uACE0\uB515", "\u062E\u0637 \u0627\u0644\u0646\u0633\u062E",
          "\u0926\u0947\u0935\u0928\u093E\u0917\u0930\u0940",
          "\u0395\u03BB\u03BB\u03B7\u03BD\u03B9\u03BA\u03AC",
          "\u0420\u0443\u0441\u0441\u043A\u0438\u0439", "\u05E2\u05D1\u05E8\u05D9\u05EA",
          "Party \U0001F389"})
        report.rows.push_back(row(name));
    return report;
}

/// Letters and marks apart, as some systems write the names of files.
Report marks(const char* name)
{
    Report report;
    report.rows.push_back(row(name));
    return report;
}

/// More different ideographs than are drawn anew.
Report ideographs()
{
    Report report;
    std::string name;
    for (char32_t character = 0x4E00; character < 0x4E00 + 1500; ++character)
        Utf8::append(name, character);
    report.rows.push_back(row(name));
    report.rows.push_back(row("The last font"));
    return report;
}

Report hostile()
{
    constexpr std::size_t longest = 32'767; // characters of a name in a font
    const auto repeated = [](std::string_view text, std::size_t count) {
        std::string all;
        for (std::size_t index = 0; index < count; ++index)
            all += text;
        return all;
    };
    Report report;
    for (const std::string& name : {
             std::string(longest, 'x'),
             repeated("\u4E2D", longest),           // no blank in a script without blanks
             repeated("\u200B", longest),           // zero width
             "a" + repeated("\u0301", longest),     // marks on one letter
             repeated("\u202E\u2067", longest / 2), // turned reading order
             repeated("\U0001F389", 3000),
             std::string(longest, ' '),
             std::string(3, '\0') + "nul",
             std::string("line\r\nfeed\tand tab"),
             std::string("\\(escape) )("),
         })
        report.rows.push_back(row(name));
    report.rows.push_back(row("The last font"));
    return report;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) return EXIT_FAILURE;
    const std::filesystem::path folder(argv[1]);
    write(folder / "typical.pdf", typical());
    write(folder / "again.pdf", typical());
    write(folder / "pages.pdf", manyPages());
    write(folder / "scripts.pdf", scripts());
    write(folder / "known-letters.pdf", marks("Gru\u0308\u00DFe E\u0301te\u0301"));
    write(folder / "other-letters.pdf", marks("Xox\u030Cyx"));
    write(folder / "ideographs.pdf", ideographs());
    write(folder / "hostile.pdf", hostile());
    write(folder / "empty.pdf", {});

    Report courier = typical();
    courier.setting.fontFolder = folder / "nowhere";
    write(folder / "courier.pdf", courier); // its diagnostic goes to standard output
    std::ofstream diagnostics(folder / "diagnostics.txt");
    std::filesystem::create_directory(folder / "broken");
    std::ofstream(folder / "broken" / "CourierPrime-Bold.ttf") << "not a font";
    std::filesystem::copy_file(reportFontFolder() / "CourierPrime-Regular.ttf",
                               folder / "broken" / "CourierPrime-Regular.ttf");
    courier.setting = {folder / "broken",
                       [&](std::string_view line) { diagnostics << line << '\n'; }};
    write(folder / "broken.pdf", courier);
    return EXIT_SUCCESS;
}
