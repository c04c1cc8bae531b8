// Text that needs more than one glyph after the other: scripts that join, stack or run from right
// to left, and characters that only other fonts have. Pango lays it out, in a module that is loaded
// when it is first needed; see PangoModule.cpp.
#pragma once

#include "export/ReportFonts.h"
#include "export/ReportText.h"
#include "export/ScriptModule.h"

#include <cstddef>
#include <list>
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

    /// Whether the module and its libraries were found.
    [[nodiscard]] bool isReady() const { return m_layout != nullptr; }

    /// The paragraph's lines; none when it is not ready. `indent` and `hang` are the room before
    /// its first line and before the others, as `width` in points. The font files live as long as
    /// this object.
    [[nodiscard]] std::vector<ScriptLine> lines(const Paragraph& paragraph, double width,
                                                double indent, double hang);

private:
    const FontFile* keep(const ScriptModule::Font* font);

    const ScriptModule::Functions* m_functions{};
    void* m_layout{};
    std::list<FontFile> m_files; // which keeps their addresses
};

} // namespace quillmark
