// How verdicts are reached, in words for people: the text of the window's help and of the command
// line's. What the words describe is in Classifier.h.
#pragma once

#include "assessment/Assessment.h"

#include <array>
#include <string>
#include <string_view>

namespace quillmark::HelpText {

/// One line.
[[nodiscard]] std::string title();

/// What verdicts are, and are not.
[[nodiscard]] std::string introduction();

/// What leads to a verdict.
struct VerdictHelp {
    Verdict verdict{};
    std::string_view text;
};

/// Every verdict, the one that people hope for first.
inline constexpr auto verdicts = std::to_array<VerdictHelp>({
    {Verdict::likelyOK,
     "The font's own license fields (or a license file next to it) name an open license: SIL Open "
     "Font License, Apache, Ubuntu Font Licence, MIT, public domain. These allow embedding in "
     "things you sell; most don't allow selling the font file itself."},
    {Verdict::restricted,
     "Its embedding bits (OS/2 fsType) say Restricted License, or it came with macOS. Apple "
     "licenses its bundled fonts for use on Apple devices; a product you sell with one embedded "
     "generally needs a license from the font's owner."},
    {Verdict::unknown,
     "Anything else: a commercial license named in the font, no license text at all, or a PDF font "
     "whose data was stripped. Find the license you hold and record it in the font's notes."},
});

/// What the embedding bits mean.
inline constexpr std::string_view embeddingBits =
    "Embedding bits: installable (no restriction set), preview & print (may be embedded in PDFs "
    "for viewing and printing), editable, restricted. Many fonts set them loosely, so they are "
    "shown as background, not as a verdict.";

/// What happens to the fonts of a PDF.
[[nodiscard]] std::string matching();

} // namespace quillmark::HelpText
