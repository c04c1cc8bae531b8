#include "assessment/HelpText.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <vector>

namespace quillmark {
namespace {

TEST(HelpText, NamesTheProductWithOneSpaceOnEachSide)
{
    EXPECT_EQ(HelpText::title(), "How Quillmark decides");
    EXPECT_EQ(HelpText::introduction(),
              "Quillmark reads what each font file says about itself. It can't see the license you "
              "bought, so every verdict is a starting point for checking the license, not a "
              "clearance.");
    EXPECT_EQ(HelpText::matching(),
              "PDF writers often strip the license fields from the copy they embed. Quillmark then "
              "matches the font by name to an installed font or one in a folder you scanned; scan "
              "the folder with the fonts you used for the best match.");
}

TEST(HelpText, ExplainsEveryVerdictOnceTheBestFirst)
{
    std::vector<Verdict> explained;
    for (const auto& [verdict, text] : HelpText::verdicts)
        explained.push_back(verdict);
    EXPECT_THAT(explained,
                testing::ElementsAre(Verdict::likelyOK, Verdict::restricted, Verdict::unknown));
    std::ranges::sort(explained);
    EXPECT_THAT(explained, testing::ElementsAreArray(allCases<Verdict>));
}

TEST(HelpText, SaysOfEachVerdictWhatLeadsToIt)
{
    EXPECT_EQ(HelpText::verdicts[0].text,
              "The font's own license fields (or a license file next to it) name an open license: "
              "SIL Open Font License, Apache, Ubuntu Font Licence, MIT, public domain. These allow "
              "embedding in things you sell; most don't allow selling the font file itself.");
    EXPECT_EQ(HelpText::verdicts[1].text,
              "Its embedding bits (OS/2 fsType) say Restricted License, or it came with macOS. "
              "Apple licenses its bundled fonts for use on Apple devices; a product you sell with "
              "one embedded generally needs a license from the font's owner.");
    EXPECT_EQ(HelpText::verdicts[2].text,
              "Anything else: a commercial license named in the font, no license text at all, or a "
              "PDF font whose data was stripped. Find the license you hold and record it in the "
              "font's notes.");
    EXPECT_EQ(HelpText::embeddingBits,
              "Embedding bits: installable (no restriction set), preview & print (may be embedded "
              "in PDFs for viewing and printing), editable, restricted. Many fonts set them "
              "loosely, so they are shown as background, not as a verdict.");
}

} // namespace
} // namespace quillmark
