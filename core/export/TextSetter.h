// Breaks paragraphs into lines of glyphs, in the report's faces or in those of other scripts.
#pragma once

#include "export/EmbeddedFont.h"
#include "export/ReportFonts.h"
#include "export/ReportText.h"
#include "export/ScriptLayout.h"

#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quillmark {

/// Glyphs that follow one another at their own advances.
struct GlyphRun {
    std::size_t font{}; // of TextSetter
    Ink ink{Ink::black};
    double x{};         // from the frame's left side, in points
    double rise{};      // above the base line, in points
    double end{};       // where the next glyph would stand
    std::string codes;  // two bytes for each glyph
    std::string text{}; // what this run stands for, with those that continue it
    bool continues{};   // the run before stands for this one's text too
};

/// A coloured glyph on a line.
struct PlacedImage {
    std::size_t image{}; // of TextSetter
    double left{};       // from the frame's left side, in points
    double bottom{};     // above the base line, in points
    double width{};
    double height{};
};

struct Extent {
    double left{};
    double right{};
};

struct Line {
    std::vector<GlyphRun> runs;
    std::vector<PlacedImage> images{};
    double size{};                // of the type
    double ascent{};              // from the line's top to its base line
    double height{};              // from its top to the next line's
    std::size_t start{};          // in bytes of the paragraph's text
    std::optional<Extent> link{}; // where the paragraph's link stands on this line
};

class TextSetter {
public:
    /// `width`: of the frame, in points.
    TextSetter(const ReportFonts& fonts, double width, Diagnostic diagnostic);

    /// Whether both faces of the report could be opened. Nothing else may be asked if not.
    [[nodiscard]] bool isReady() const;

    /// At least one line, if an empty one.
    [[nodiscard]] std::vector<Line> lines(const Paragraph& paragraph);

    /// Writes the fonts and images used so far and returns the resources that name them: fonts as
    /// F0, F1 and so on, images as I0, I1.
    [[nodiscard]] std::string writeResources(PDFFile& file);

private:
    struct Character {
        GlyphCode code;
        char32_t character;
        std::size_t run;
        std::size_t start; // in bytes of the paragraph's text
        double advance;    // in points
    };
    using Characters = std::vector<Character>;

    enum class Missing { refused, replaced };

    bool takeCharacters(const Paragraph& paragraph, Missing missing = Missing::refused);
    void setCharacters(const Paragraph& paragraph, std::vector<Line>& lines);
    void setPieces(const Paragraph& paragraph, std::vector<Line>& lines);
    void setPiece(const Paragraph& piece, std::vector<Line>& lines);
    [[nodiscard]] std::size_t lineEnd(std::size_t first, double width, double nextWidth) const;
    [[nodiscard]] Line lineOf(const Paragraph& paragraph, std::size_t first, std::size_t last,
                              double x) const;
    Line lineOf(const Paragraph& paragraph, const std::string& text, const ScriptLine& scripts);
    void place(Line& line, const ScriptCluster& cluster, std::string_view text, Weight weight,
               Ink ink);
    std::size_t fontFor(const FontFile* file, Weight weight);
    std::optional<std::size_t> imageOf(std::size_t font, unsigned glyph);
    [[nodiscard]] double room(const Paragraph& paragraph, std::size_t blanks);

    ReportFonts m_files;
    double m_width;
    Diagnostic m_diagnostic;
    std::unique_ptr<ScriptLayout> m_scripts; // when first needed
    std::vector<FontFile> m_fontFiles;       // of m_fonts, in their order
    std::vector<std::unique_ptr<EmbeddedFont>> m_fonts;
    std::vector<GlyphImage> m_images;
    std::map<std::pair<std::size_t, unsigned>, std::optional<std::size_t>> m_imageOfGlyph;
    Characters m_characters; // of the paragraph at hand; kept for its space
};

} // namespace quillmark
