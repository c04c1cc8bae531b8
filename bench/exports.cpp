// The CSV export against the least that it can cost: a loop that escapes and appends cells that are
// there already. And a book of notes to and from the disk.

#include "export/AuditExport.h"
#include "notes/NotesBook.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

using namespace quillmark;

constexpr int rowCount = 5'000;
constexpr int noteCount = 10'000;

LicenseNote noteOf(int number)
{
    return {
        .boughtFrom = "A foundry, with a shop",
        .license = HeldLicense::desktopCommercial,
        .url = "https://example.com/receipts/" + std::to_string(number),
        .attachment = "0A1B2C3D-receipt.pdf",
        .attachmentName = "receipt.pdf",
        .text = "Two seats. May be used in \"print on demand\", not in apps.",
        .updated = std::chrono::sys_seconds(std::chrono::seconds(1'795'313'400)),
    };
}

std::string nameOf(int number)
{
    return "Benchmark-Family" + std::to_string(number) + "-Regular";
}

NotesBook book(int notes)
{
    NotesBook book;
    for (int i = 0; i < notes; ++i)
        book.set(noteOf(i), nameOf(i));
    return book;
}

std::vector<AuditRow> rows()
{
    std::vector<AuditRow> rows;
    for (int i = 0; i < rowCount; ++i) {
        FontFacts facts;
        facts.postScriptName = nameOf(i);
        facts.family = "Benchmark Family " + std::to_string(i);
        facts.style = "Regular";
        facts.fullName = facts.family + " Regular";
        facts.copyright = "Copyright 2020 The \"Benchmark Family\" Project Authors, all rights "
                          "reserved (https://example.com/fonts/benchmark)";
        facts.manufacturer = "A foundry, Inc.";
        facts.licenseURL = "https://example.com/licenses/benchmark";
        facts.filePath = "/usr/share/fonts/truetype/benchmark/" + facts.postScriptName + ".ttf";
        facts.os2 = OS2Info{.version = 4, .fsType = 4, .vendorID = "BENC"};
        AuditRow row = auditRow(facts);
        row.pdf.emplace();
        row.pdf->program = EmbeddedProgram::trueType;
        row.pdf->subset = true;
        for (int page = 1; page <= 20; ++page)
            row.pdf->pages.push_back(i + page);
        rows.push_back(std::move(row));
    }
    return rows;
}

/// The fields of a CSV file as they were before they were escaped.
std::vector<std::vector<std::string>> cellsOf(std::string_view text)
{
    std::vector<std::vector<std::string>> lines(1, std::vector<std::string>(1));
    bool quoted = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '"' && quoted && text.substr(i + 1).starts_with('"'))
            lines.back().back() += text[i++];
        else if (text[i] == '"')
            quoted = !quoted;
        else if (!quoted && text[i] == ',')
            lines.back().emplace_back();
        else if (!quoted && text.substr(i).starts_with("\r\n") && ++i < text.size())
            lines.emplace_back(1);
        else
            lines.back().back() += text[i];
    }
    lines.pop_back();
    return lines;
}

void appendEscaped(std::string& text, const std::string& cell)
{
    const bool formula =
        !cell.empty() && std::string_view("=+-@").find(cell.front()) != std::string_view::npos;
    if (cell.find_first_of(",\"\r\n") == std::string::npos) {
        if (formula) text += '\'';
        text += cell;
        return;
    }
    text += '"';
    if (formula) text += '\'';
    for (const char character : cell) {
        if (character == '"') text += '"';
        text += character;
    }
    text += '"';
}

void exportRows(benchmark::State& state)
{
    const auto list = rows();
    const NotesBook notes = book(noteCount);
    for (auto _ : state)
        benchmark::DoNotOptimize(AuditExport::csv(list, notes));
    state.SetItemsProcessed(state.iterations() * rowCount);
}
BENCHMARK(exportRows);

void escapeAndAppend(benchmark::State& state)
{
    const auto lines = cellsOf(AuditExport::csv(rows(), book(noteCount)));
    for (auto _ : state) {
        std::string text;
        for (const auto& line : lines) {
            for (const auto& cell : line) {
                appendEscaped(text, cell);
                text += ',';
            }
            text.back() = '\r';
            text += '\n';
        }
        benchmark::DoNotOptimize(text);
    }
    state.SetItemsProcessed(state.iterations() * rowCount);
}
BENCHMARK(escapeAndAppend);

/// A file in a folder of its own, removed at the end.
class NotesPath {
public:
    NotesPath()
    {
        std::string pattern = std::filesystem::temp_directory_path() / "quillmark-bench-XXXXXX";
        if (mkdtemp(pattern.data()) == nullptr) std::abort();
        m_folder = pattern;
    }
    ~NotesPath() { std::filesystem::remove_all(m_folder); }
    NotesPath(const NotesPath&) = delete;
    NotesPath& operator=(const NotesPath&) = delete;
    [[nodiscard]] std::filesystem::path path() const { return m_folder / "notes.json"; }

private:
    std::filesystem::path m_folder;
};

void saveNotes(benchmark::State& state)
{
    const NotesPath file;
    const NotesBook notes = book(noteCount);
    for (auto _ : state)
        if (notes.save(file.path())) state.SkipWithError("not saved");
}
BENCHMARK(saveNotes)->Unit(benchmark::kMillisecond)->UseRealTime();

void loadNotes(benchmark::State& state)
{
    const NotesPath file;
    if (book(noteCount).save(file.path())) state.SkipWithError("not saved");
    for (auto _ : state)
        if (NotesBook::load(file.path()).notes.size() != noteCount)
            state.SkipWithError("not loaded");
}
BENCHMARK(loadNotes)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
