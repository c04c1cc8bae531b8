// Lines of text for people, on a terminal or in a file.
#pragma once

#include "assessment/Assessment.h"
#include "cli/Output.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace quillmark::cli {

/// How text stands out where there is colour. Nothing is told by colour alone.
enum class Ink { plain, strong, faint, restricted, unknown, likelyOK };

[[nodiscard]] Ink ink(Verdict verdict);

/// `text` on one line and safe to show: line ends and the blanks around them become one space, and
/// every other control character U+FFFD.
[[nodiscard]] std::string oneLine(std::string_view text);

/// What lines are written for.
struct Page {
    bool colored{};
    /// The terminal's width. Absent for a file or a pipe: there nothing is cut or wrapped, so that
    /// what comes after it finds whole names and sentences.
    std::optional<std::size_t> columns;
};

/// The only way into the output: all text passes through `oneLine` here, so that no byte of a font,
/// a PDF or a file name can become an escape sequence.
class TextLines {
public:
    TextLines(Output& output, const Page& page) : m_output(output), m_page(page) {}

    [[nodiscard]] const Page& page() const { return m_page; }

    /// Adds to the current line.
    TextLines& text(std::string_view text, Ink ink = Ink::plain);
    /// Adds `text` padded to `columns`; on a terminal, cut to them.
    TextLines& cell(std::string_view text, std::size_t columns, Ink ink = Ink::plain);
    /// Adds blanks.
    TextLines& skip(std::size_t columns);
    void endLine();
    void emptyLine() { endLine(); }

    /// Adds `text` and ends the line. On a terminal it is broken between words, with its further
    /// lines starting at column `indent`, where the current line is now.
    void paragraph(std::string_view text, std::size_t indent, Ink ink = Ink::plain);

private:
    void append(std::string_view safe, Ink ink);

    Output& m_output;
    Page m_page;
    std::size_t m_pendingBlanks{}; // written only when something follows on the line
};

} // namespace quillmark::cli
