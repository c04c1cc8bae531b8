#include "cli/Explanation.h"

#include "assessment/Classifier.h"
#include "assessment/HelpText.h"
#include "cli/FontTable.h"

namespace quillmark::cli {

void writeExplanation(TextLines& lines)
{
    lines.text(HelpText::title(), Ink::strong).endLine();
    lines.emptyLine();
    lines.paragraph(HelpText::introduction(), 0);
    for (const auto& [verdict, text] : HelpText::verdicts) {
        lines.emptyLine();
        writeVerdict(lines, verdict);
        lines.endLine();
        lines.skip(2).paragraph(text, 2);
    }
    lines.emptyLine();
    lines.paragraph(HelpText::embeddingBits, 0);
    lines.emptyLine();
    lines.paragraph(HelpText::matching(), 0);
    lines.emptyLine();
    lines.paragraph(Classifier::disclaimer, 0, Ink::faint);
}

} // namespace quillmark::cli
