// How a verdict looks wherever the windows show one: the one table of symbols, words and colours.
#pragma once

#include "assessment/Assessment.h"

#include <QColor>
#include <QString>

namespace quillmark {

struct VerdictLook {
    QString symbol;          // for symbolIcon()
    QString largeLabel;      // where there is room for a sentence
    QString smallLabel;      // in table cells and chips
    QString accessibleLabel; // what a screen reader says, however the verdict is drawn
    QColor colour;           // sRGB, the same in light and dark palettes
};

/// Lives as long as the program.
[[nodiscard]] const VerdictLook& verdictLook(Verdict verdict);

} // namespace quillmark
