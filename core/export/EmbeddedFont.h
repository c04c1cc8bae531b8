// A font as a PDF embeds it: the glyphs that are shown, and the text that each stands for.
#pragma once

#include "export/PDFFile.h"
#include "export/ReportFonts.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace quillmark {

/// A code in the text of a page. Each stands for one glyph and for the text that it was set from,
/// so that a glyph can have several; 0 is the glyph for what the font has not.
using GlyphCode = std::uint16_t;

/// A coloured glyph as an image. Lengths are in ems.
struct GlyphImage {
    int width{};        // in pixels
    int height{};       // in pixels
    std::string colors; // red, green and blue of each pixel, from the top
    std::string alpha;  // opacity of each pixel
    double left{};      // of the glyph's origin
    double bottom{};    // above the base line
    double pixel{};     // the side of a pixel
};

class EmbeddedFont {
public:
    /// Null when the file holds no such face.
    [[nodiscard]] static std::unique_ptr<EmbeddedFont> open(const FontFile& file);
    ~EmbeddedFont();
    EmbeddedFont(const EmbeddedFont&) = delete;
    EmbeddedFont& operator=(const EmbeddedFont&) = delete;

    /// The code of a character that the font has, and that can be set by itself, whatever stands
    /// beside it: none that joins, stacks or turns the reading order. Absent for others.
    [[nodiscard]] std::optional<GlyphCode> code(char32_t character);
    /// The code of a glyph that stands for `text`, which may be empty. 0 when there are too many.
    [[nodiscard]] GlyphCode code(unsigned glyph, std::string_view text);
    /// The code of a glyph without outline, room or text, which only marks a place. 0 when there
    /// are too many codes.
    [[nodiscard]] GlyphCode blank();
    /// The longest text of a code, in bytes: a string in a CMap may have 512, and each byte here
    /// takes two of them at most.
    static constexpr std::size_t longestText = 255;
    /// In thousandths of an em.
    [[nodiscard]] double advance(GlyphCode code) const { return m_advances[code]; }

    /// Whether glyphs of the font can have colours.
    [[nodiscard]] bool hasColors() const;
    /// The glyph as an image, when it has colours.
    [[nodiscard]] std::optional<GlyphImage> image(unsigned glyph);

    /// Writes the font with all glyphs that were asked for.
    void write(PDFFile& file, PDFFile::Object object);

private:
    class Face;

    explicit EmbeddedFont(std::unique_ptr<Face> face);
    GlyphCode add(unsigned glyph, std::string_view text, double advance);
    [[nodiscard]] std::string drawnProgram(const std::string& fontName) const;
    void writeDescriptor(PDFFile& file, PDFFile::Object object, const std::string& fontName,
                         PDFFile::Object program, std::string_view programEntry) const;

    std::unique_ptr<Face> m_face;
    std::optional<GlyphCode> m_blank;
    std::vector<std::optional<GlyphCode>> m_simple;     // by character, when they were asked for
    std::unordered_map<std::string, GlyphCode> m_codes; // by glyph and text
    std::vector<unsigned> m_glyphs;                     // by code, as all below
    std::vector<double> m_advances;
    std::vector<std::string> m_texts;
};

} // namespace quillmark
