// Text that needs more than one glyph after the other: scripts that join, stack or run from right
// to left, and characters that only other fonts have. The one place that knows Pango.
#pragma once

#include "export/ReportFonts.h"
#include "export/ReportText.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace quillmark {

/// Glyphs that stand for one stretch of text together.
struct ScriptCluster {
    struct Glyph {
        unsigned glyph{};
        double x{}; // from the line's start, in points
        double y{}; // above the base line, in points
    };
    const FontFile* font{};    // null where no font has the characters
    std::vector<Glyph> glyphs; // from left to right; empty for what leaves no mark
    std::size_t start{};       // in bytes of the paragraph's text
    std::size_t end{};
    double x{};
    double width{};
};

struct ScriptLine {
    std::vector<ScriptCluster> clusters; // from left to right
    double ascent{};                     // of the tallest font in it, in points
    double descent{};
};

class ScriptLayout {
public:
    /// The system's fonts are read here, which takes some milliseconds.
    explicit ScriptLayout(const ReportFonts& fonts);
    ~ScriptLayout();
    ScriptLayout(const ScriptLayout&) = delete;
    ScriptLayout& operator=(const ScriptLayout&) = delete;

    /// The paragraph's lines. `indent` and `hang` are the room before its first line and before the
    /// others, as `width` in points. The font files live as long as this object.
    [[nodiscard]] std::vector<ScriptLine> lines(const Paragraph& paragraph, double width,
                                                double indent, double hang);

private:
    class Pango;
    std::unique_ptr<Pango> m_pango;
};

} // namespace quillmark
