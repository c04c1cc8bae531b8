// Font programs in the Compact Font Format (Adobe Technical Note 5176) for the glyphs that a
// document shows. The reader of such programs is fontfile/CFF.h.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace quillmark {

/// Charstrings one behind the other: a font can have some ten thousand.
struct CharStrings {
    std::string bytes;
    std::vector<std::size_t> ends; // of each, in bytes
};

/// One glyph's outline as a Type 2 charstring (Adobe Technical Note 5177). Coordinates are
/// thousandths of an em; they are rounded where they stand, so that no error adds up.
class CharString {
public:
    /// Appends to `all`, to which nothing else may be added until this one is finished. `width`:
    /// the glyph's advance.
    CharString(CharStrings& all, double width);
    void moveTo(double x, double y);
    void lineTo(double x, double y);
    void curveTo(double x1, double y1, double x2, double y2, double x, double y);
    /// Nothing may be drawn afterwards.
    void finish();

private:
    char* step(char* to, int x, int y);
    void append(const char* begin, const char* end);

    CharStrings& m_all;
    int m_x{};
    int m_y{};
};

/// What the program says about itself. Empty texts are left out, but for the font's name.
struct CFFNames {
    std::string fontName;
    std::string fullName;
    std::string familyName;
    std::string notice; // copyright and licence
};

/// A CID-keyed program whose glyphs are `charStrings`, each under its position as CID; the first is
/// the one for what is missing. There is at least one, and at most 65,535.
[[nodiscard]] std::string cffProgram(const CFFNames& names, const CharStrings& charStrings);

} // namespace quillmark
