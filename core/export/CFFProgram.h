// Font programs in the Compact Font Format (Adobe Technical Note 5176) for the glyphs that a
// document shows. The reader of such programs is fontfile/CFF.h.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace quillmark {

/// One glyph's outline as a Type 2 charstring (Adobe Technical Note 5177). Coordinates are
/// thousandths of an em; they are rounded where they stand, so that no error adds up.
class CharString {
public:
    /// `width`: the glyph's advance.
    explicit CharString(double width);
    void moveTo(double x, double y);
    void lineTo(double x, double y);
    void curveTo(double x1, double y1, double x2, double y2, double x, double y);
    /// The charstring's bytes. Nothing may be drawn afterwards.
    [[nodiscard]] std::string finish();

private:
    char* step(char* to, int x, int y);
    void append(const char* begin, const char* end);

    std::string m_bytes;
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
[[nodiscard]] std::string cffProgram(const CFFNames& names,
                                     std::span<const std::string> charStrings);

} // namespace quillmark
