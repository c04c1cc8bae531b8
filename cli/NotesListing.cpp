#include "cli/NotesListing.h"

#include "cli/FontDetails.h"
#include "notes/NotesJson.h"
#include "text/DateText.h"
#include "text/DisplayWidth.h"
#include "text/Printable.h"
#include "text/Utf8.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace quillmark::cli {
namespace {

constexpr std::size_t gap = 2;

/// A terminal shows the last columns only if there is room.
enum Column : std::size_t { key, type, boughtFrom, saved, columnCount };
constexpr std::array<std::string_view, columnCount> titles{
    "Font",
    "License type",
    "Bought from",
    "Saved",
};
constexpr std::size_t widest = 40; // wider texts push the next column aside

using Cells = std::array<std::string, columnCount>;

Cells cells(std::string_view name, const LicenseNote& note)
{
    return {oneLine(name), std::string(label(note.license)), oneLine(note.boughtFrom),
            dateText(note.updated)};
}

} // namespace

std::string notesJson(const NotesBook& book)
{
    constexpr std::string_view digits = "0123456789abcdef";
    const std::string json = NotesJson::encode(book);
    std::string safe;
    safe.reserve(json.size());
    for (std::string_view rest = json; !rest.empty();) {
        const Utf8::Character character = Utf8::first(rest);
        const char32_t code = character.codePoint;
        if (code != '\n' && isControlling(code)) { // a line end is never part of a text here
            safe += "\\u";
            for (const unsigned shift : {12U, 8U, 4U, 0U})
                safe += digits[code >> shift & 0xFU];
        } else {
            safe += rest.substr(0, character.length);
        }
        rest.remove_prefix(character.length);
    }
    return safe;
}

void writeNotesTable(TextLines& lines, const NotesBook& book)
{
    if (book.notes.empty()) {
        lines.paragraph("No notes yet.", 0);
        return;
    }
    std::vector<Cells> table;
    std::ranges::copy(titles, table.emplace_back().begin());
    for (const auto& [name, note] : book.notes)
        table.push_back(cells(name, note));

    std::array<std::size_t, columnCount> widths{};
    for (const Cells& line : table)
        for (std::size_t column = 0; column < columnCount; ++column)
            widths[column] = std::min(widest, std::max(widths[column], displayWidth(line[column])));
    if (const auto columns = lines.page().columns) {
        widths[key] = std::min(widths[key], *columns);
        std::size_t used = widths[key];
        bool isFull = false;
        for (const Column column : {type, boughtFrom, saved}) {
            isFull = isFull || used + gap + widths[column] > *columns;
            if (isFull) widths[column] = 0;
            used += gap + widths[column];
        }
    }
    for (const Cells& line : table) {
        for (std::size_t column = 0; column < columnCount; ++column) {
            if (widths[column] == 0) continue;
            const Ink ink = &line == &table.front() ? Ink::faint
                            : column == key         ? Ink::strong
                                                    : Ink::plain;
            lines.cell(line[column], widths[column], ink).skip(gap);
        }
        lines.endLine();
    }
}

void writeNoteInFull(TextLines& lines, std::string_view key, const LicenseNote& note)
{
    lines.text(key, Ink::strong).endLine();
    writeNote(lines, note, gap);
}

FoundNotes notesUnder(std::span<const std::string> keys, const NotesBook& book)
{
    FoundNotes found;
    for (const std::string& wanted : keys) {
        if (const LicenseNote* note = book.note(wanted))
            found.book.notes.insert_or_assign(wanted, *note);
        else
            found.missing.push_back(wanted);
    }
    return found;
}

} // namespace quillmark::cli
