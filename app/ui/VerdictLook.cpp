#include "ui/VerdictLook.h"

#include "model/QtText.h"

#include <array>
#include <cstddef>

namespace quillmark {

namespace {

VerdictLook look(Verdict verdict, const QString& symbol, const QColor& colour)
{
    const QString words = qtText(label(verdict));
    return {symbol, words, qtText(shortLabel(verdict)), words, colour};
}

} // namespace

const VerdictLook& verdictLook(Verdict verdict)
{
    static const std::array<VerdictLook, rawValues<Verdict>.size()> looks{
        look(Verdict::restricted, QStringLiteral("xmark.octagon.fill"),
             QColor::fromRgbF(0.8F, 0.18F, 0.15F)),
        look(Verdict::unknown, QStringLiteral("questionmark.circle.fill"),
             QColor::fromRgbF(0.78F, 0.5F, 0.0F)),
        look(Verdict::likelyOK, QStringLiteral("checkmark.circle.fill"),
             QColor::fromRgbF(0.13F, 0.55F, 0.3F)),
    };
    return looks.at(static_cast<std::size_t>(verdict));
}

} // namespace quillmark
