// What a PDF report costs, beside laying out the same text with Pango line by line.
//
// usage: bench_report start ROWS         makes the rows and nothing else
//        bench_report report ROWS FILE   writes their report
//        bench_report pango ROWS         has Pango lay out each line of its text
//        bench_report hostile KIND FILE  writes a report with one string of 32,767 characters;
//                                        without a KIND that is known, lists all

#include "export/PDFReport.h"
#include "export/ReportPages.h"
#include "export/ReportText.h"
#include "text/Utf8.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <pango/pangoft2.h>

namespace {

using namespace quillmark;

constexpr std::chrono::sys_seconds date{std::chrono::seconds{1'773'480'413}};

struct List {
    std::vector<AuditRow> rows;
    NotesBook notes;
};

/// Fonts such as a well-filled machine has: a third under the OFL, the others with terms of their
/// own, all with their address, every fifth with a note.
List listOf(int count)
{
    List list;
    for (int number = 0; number < count; ++number) {
        const std::string id = std::to_string(number * 7919L % 100'003);
        FontFacts facts;
        facts.postScriptName = "ExampleSans" + id + "-BoldItalic";
        facts.family = "Example Sans " + id;
        facts.style = "Bold Italic";
        facts.copyright = "Copyright 2020 The Example Foundry";
        facts.manufacturer = "The Example Foundry " + std::to_string(number % 50);
        facts.filePath = "/usr/share/fonts/truetype/example-" + std::to_string(number % 97) +
                         "/ExampleSans" + id + "-BoldItalic.ttf";
        OS2Info os2;
        os2.fsType = number % 7 == 0 ? 2 : 4;
        facts.os2 = os2;
        const bool isOpen = number % 3 == 0;
        facts.licenseDescription = isOpen ? "SIL Open Font License" : "All rights reserved";
        facts.licenseURL = isOpen ? "https://scripts.sil.org/OFL"
                                  : "https://www.example.com/foundry/licenses/desktop/" + id;
        list.rows.push_back(auditRow(std::move(facts)));
        if (number % 5 != 0) continue;
        LicenseNote note;
        note.license = HeldLicense::desktopCommercial;
        note.boughtFrom = "Example Shop";
        note.url = "https://shop.example.com/receipts/" + id;
        note.attachmentName = "receipt.pdf";
        note.text = "bought for the spring worksheets";
        list.notes.set(note, list.rows.back().facts.postScriptName);
    }
    return list;
}

int writeReport(const List& list, const char* path)
{
    const auto pdf = AuditExport::pdfReport("Font license audit: bench", "All fonts", list.rows,
                                            list.notes, date);
    if (!pdf) return EXIT_FAILURE;
    std::ofstream file(path, std::ios::binary);
    file.write(reinterpret_cast<const char*>(pdf->data()),
               static_cast<std::streamsize>(pdf->size()));
    return file.flush() ? EXIT_SUCCESS : EXIT_FAILURE;
}

int layOut(const List& list)
{
    PangoFontMap* const map = pango_ft2_font_map_new();
    PangoContext* const context = pango_font_map_create_context(map);
    PangoLayout* const layout = pango_layout_new(context);
    PangoFontDescription* const font = pango_font_description_from_string("monospace");
    pango_layout_set_width(layout, static_cast<int>(ReportPage::frameWidth) * PANGO_SCALE);
    pango_layout_set_wrap(layout, PANGO_WRAP_WORD_CHAR);
    long height = 0;
    for (const AuditRow& row : list.rows) {
        const LicenseNote* note = list.notes.note(row.facts.postScriptName);
        for (const Paragraph& paragraph : ReportText::block(row, note)) {
            const std::string text = paragraph.text();
            pango_font_description_set_absolute_size(font, paragraph.size * PANGO_SCALE);
            pango_layout_set_font_description(layout, font);
            pango_layout_set_text(layout, text.data(), static_cast<int>(text.size()));
            PangoRectangle logical{};
            pango_layout_get_extents(layout, nullptr, &logical);
            height += logical.height / PANGO_SCALE;
        }
    }
    pango_font_description_free(font);
    g_object_unref(layout);
    g_object_unref(context);
    g_object_unref(map);
    return height > 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}

constexpr std::size_t longestString = 32'767; // characters of a name in a font

std::string repeatedString(std::string_view start, std::string_view repeated)
{
    const auto isStart = [](char byte) { return (static_cast<unsigned>(byte) & 0xC0U) != 0x80U; };
    const auto length = static_cast<std::size_t>(std::ranges::count_if(repeated, isStart));
    std::string text(start);
    for (std::size_t count = 0; count + length <= longestString; count += length)
        text += repeated;
    return text;
}

/// The characters from `first` to `last` one after the other, and again from there.
std::string differentCharacters(char32_t first, char32_t last)
{
    std::string text;
    for (std::size_t count = 0; count < longestString; ++count)
        Utf8::append(text, first + static_cast<char32_t>(count % (last - first + 1)));
    return text;
}

int writeHostile(std::string_view kind, const char* path)
{
    const std::map<std::string_view, std::string> kinds{
        {"letters", repeatedString("", "x")},
        {"ideographs", repeatedString("", "\u4E2D")},
        {"different-ideographs", differentCharacters(0x4E00, 0x9FFF)},
        {"joining-letters", repeatedString("", "\u062E")},
        {"marks-on-one-letter", repeatedString("a", "\u0301")},
        {"marks-on-each-letter", repeatedString("", "a\u0301")},
        {"zero-width", repeatedString("", "\u200B")},
        {"turned-reading-order", repeatedString("", "\u202E")},
        {"conjuncts", repeatedString("", "\u0915\u094D")},
        {"three-scripts", repeatedString("", "a\u0915\u4E2D\u062E")},
        {"emoji", repeatedString("", "\U0001F389")},
        {"different-emoji", differentCharacters(0x1F300, 0x1F6FF)},
    };
    const auto found = kinds.find(kind);
    if (found == kinds.end()) {
        for (const auto& known : kinds)
            std::printf("%s\n", known.first.data());
        return EXIT_SUCCESS;
    }
    List list;
    list.rows.resize(1);
    list.rows[0].facts.family = found->second;
    return writeReport(list, path);
}

} // namespace

int main(int argc, char** argv)
{
    const std::vector<const char*> arguments(argv, argv + argc);
    if (argc < 3) return EXIT_FAILURE;
    const std::string_view mode = arguments[1];
    if (mode == "hostile") return writeHostile(arguments[2], argc > 3 ? arguments[3] : "");
    const List list = listOf(std::atoi(arguments[2]));
    if (mode == "report" && argc > 3) return writeReport(list, arguments[3]);
    if (mode == "pango") return layOut(list);
    return mode == "start" ? EXIT_SUCCESS : EXIT_FAILURE;
}
