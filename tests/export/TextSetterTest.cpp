#include "export/TextSetter.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <malloc.h>
#include <numeric>
#include <span>
#include <string>

namespace quillmark {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

constexpr double width = 504;
/// Of Courier Prime at 9 points.
constexpr double advance = 9 * 1228.0 / 2048;

class Setter : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(m_setter.isReady()); }

    static Paragraph paragraph(std::string text, std::size_t hang = 0)
    {
        return {.runs = {{std::move(text)}}, .size = 9, .leading = 11, .hang = hang};
    }

    /// How many characters each line has.
    std::vector<std::size_t> lengths(const Paragraph& paragraph)
    {
        std::vector<std::size_t> counts;
        for (const Line& line : m_setter.lines(paragraph)) {
            counts.push_back(0);
            for (const GlyphRun& run : line.runs)
                counts.back() += run.codes.size() / 2;
        }
        return counts;
    }

    std::vector<std::string> m_told;
    TextSetter m_setter{ReportFonts::load(reportFontFolder(), {}), width,
                        [this](std::string_view line) { m_told.emplace_back(line); }};
};

TEST_F(Setter, AnEmptyParagraphIsAnEmptyLine)
{
    const auto lines = m_setter.lines({.runs = {}, .size = 9, .leading = 11});
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_THAT(lines[0].runs, IsEmpty());
    EXPECT_DOUBLE_EQ(lines[0].height, 11);
}

TEST_F(Setter, NinetyThreeCharactersFitOnALine)
{
    EXPECT_THAT(lengths(paragraph(std::string(93, 'x'))), ElementsAre(93));
    EXPECT_THAT(lengths(paragraph(std::string(94, 'x'))), ElementsAre(93, 1));
}

TEST_F(Setter, AWordThatDoesNotFitGoesToTheNextLine)
{
    EXPECT_THAT(lengths(paragraph("ab " + std::string(93, 'x') + " c")), ElementsAre(2, 93, 1));
}

TEST_F(Setter, BlanksAtTheEndOfALineAreNotShown)
{
    EXPECT_THAT(lengths(paragraph(std::string(90, 'x') + "     " + "yyy")), ElementsAre(90, 3));
}

TEST_F(Setter, AWordThatFitsOnNoLineStartsOnThisOne)
{
    EXPECT_THAT(lengths(paragraph("ab " + std::string(100, 'x'))), ElementsAre(93, 10));
}

TEST_F(Setter, APathThatFitsOnNoLineIsBrokenBehindASlash)
{
    const std::string path = "/" + std::string(50, 'x') + "/" + std::string(60, 'y');
    EXPECT_THAT(lengths(paragraph("File: " + path)), ElementsAre(6 + 52, 60));
}

TEST_F(Setter, LinesAfterTheFirstHang)
{
    const auto lines = m_setter.lines(paragraph(std::string(94, 'x'), 4));
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_DOUBLE_EQ(lines[0].runs[0].x, 0);
    EXPECT_NEAR(lines[1].runs[0].x, 4 * advance, 0.001);
}

TEST_F(Setter, ALinkIsMarkedOnEachOfItsLines)
{
    Paragraph linked = paragraph("URL: " + std::string(100, 'x'));
    linked.link = TextLink{5, 105, "https://example.com/"};
    const auto lines = m_setter.lines(linked);
    ASSERT_EQ(lines.size(), 2U);
    ASSERT_TRUE(lines[0].link && lines[1].link);
    EXPECT_NEAR(lines[0].link->left, 5 * advance, 0.001);
    EXPECT_NEAR(lines[0].link->right, 93 * advance, 0.001);
    EXPECT_NEAR(lines[1].link->left, 0, 0.001);
    EXPECT_NEAR(lines[1].link->right, 12 * advance, 0.001);
}

TEST_F(Setter, SpaceBeforeAParagraphIsAboveItsFirstLine)
{
    Paragraph spaced = paragraph(std::string(94, 'x'));
    const auto plain = m_setter.lines(spaced);
    spaced.spaceBefore = 5;
    const auto lines = m_setter.lines(spaced);
    EXPECT_DOUBLE_EQ(lines[0].height, plain[0].height + 5);
    EXPECT_DOUBLE_EQ(lines[0].ascent, plain[0].ascent + 5);
    EXPECT_DOUBLE_EQ(lines[1].height, plain[1].height);
}

TEST_F(Setter, AWordOfAnotherScriptStandsInsideTheFrame)
{
    std::string word;
    for (int count = 0; count < 2500; ++count)
        word += "\u4E2D";
    const auto lines = m_setter.lines(paragraph("File: " + word, 4));
    EXPECT_GT(lines.size(), 40U);
    for (const Line& line : lines) {
        EXPECT_GE(line.runs.front().x, 0);
        EXPECT_LE(line.runs.back().end, width + 0.1);
    }
    EXPECT_THAT(m_told, IsEmpty());
}

/// Where a part of a text stands: its line and where it starts and ends there.
struct Found {
    std::size_t line;
    Extent extent;
};

TEST_F(Setter, WordsThatRunFromRightToLeftAreInOrderOnEachLine)
{
    const std::string word = "\u05D0\u05D1\u05D2";
    Paragraph text = paragraph("Font ");
    for (int count = 0; count < 60; ++count)
        text.runs[0].text += word + ' ';
    std::vector<Found> found;
    for (std::size_t start = 5; start < text.runs[0].text.size(); start += word.size() + 1) {
        text.link = TextLink{start, start + word.size(), {}};
        const auto lines = m_setter.lines(text);
        const auto line = std::ranges::find_if(
            lines, [](const Line& candidate) { return candidate.link.has_value(); });
        ASSERT_NE(line, lines.end());
        found.push_back({static_cast<std::size_t>(line - lines.begin()), *line->link});
    }
    EXPECT_GT(found.back().line, 1U);
    for (std::size_t index = 1; index < found.size(); ++index) {
        if (found[index].line == found[index - 1].line)
            EXPECT_LT(found[index].extent.right, found[index - 1].extent.left) << index;
        else
            EXPECT_EQ(found[index].line, found[index - 1].line + 1) << index;
    }
    for (const auto& [line, extent] : found) {
        EXPECT_GE(extent.left, line == 0 ? 5 * advance - 0.1 : -0.1);
        EXPECT_LE(extent.right, width + 0.1);
    }
}

TEST_F(Setter, NumbersAmongWordsFromRightToLeftRunFromLeftToRight)
{
    // The letters of the first word, the number's digits and the second word, in this order.
    Paragraph text = paragraph("\u05D0\u05D1 12 \u05D2");
    const auto left = [&](std::size_t start, std::size_t end) {
        text.link = TextLink{start, end, {}};
        return m_setter.lines(text).front().link.value_or(Extent{}).left;
    };
    EXPECT_GT(left(0, 2), left(2, 4));
    EXPECT_GT(left(2, 4), left(6, 7));
    EXPECT_GT(left(6, 7), left(5, 6));
    EXPECT_GT(left(5, 6), left(8, 10));
}

TEST_F(Setter, AWordBesideAnotherScriptGoesToTheNextLineOrIsBroken)
{
    const std::string other = "\u4E2D ";
    EXPECT_THAT(lengths(paragraph(other + std::string(93, 'x') + " c")), ElementsAre(1, 93, 1));
    const auto broken = lengths(paragraph(other + std::string(100, 'x')));
    ASSERT_EQ(broken.size(), 2U);
    EXPECT_GT(broken[0], 85U);
    EXPECT_EQ(broken[0] + broken[1], 102U);
}

TEST_F(Setter, AWordByOneLetterTooLongForALineIsBrokenBesideAnotherScript)
{
    // What fits of it fills a line exactly.
    TextSetter setter{ReportFonts::load(reportFontFolder(), {}), 93 * advance, {}};
    const auto firstLine = [&setter](std::size_t letters) {
        const auto lines = setter.lines(paragraph("\u4E2D " + std::string(letters, 'x')));
        std::size_t count = 0;
        for (const GlyphRun& run : lines.front().runs)
            count += run.codes.size() / 2;
        return count;
    };
    EXPECT_EQ(firstLine(93), 1U);
    EXPECT_GT(firstLine(94), 85U);
}

TEST(FontsOfOtherScripts, AreLetGoOfWithTheSetterThatUsedThem)
{
    const auto bytesBehind = [] {
        TextSetter setter{ReportFonts::load(reportFontFolder(), {}), width, {}};
        EXPECT_EQ(setter.lines({.runs = {{"\u4E2D"}}, .size = 9, .leading = 11}).size(), 1U);
        return ::mallinfo2().uordblks;
    };
    // What is loaded once stays.
    for (int count = 0; count < 3; ++count)
        bytesBehind();
    const std::size_t before = bytesBehind();
    for (int count = 0; count < 8; ++count)
        bytesBehind();
    // A list of the system's fonts alone would be more than that, eight times.
    constexpr std::size_t most = 200'000;
    EXPECT_LT(bytesBehind(), before + most);
}

TEST_F(Setter, ALetterAndItsMarksStayTogether)
{
    std::string word;
    for (int count = 0; count < 200; ++count)
        word += "q\u0303";
    const auto counts = lengths(paragraph(word));
    EXPECT_GT(counts.size(), 2U);
    for (const std::size_t count : counts)
        EXPECT_EQ(count % 2, 0U);
}

TEST_F(Setter, ALetterAndASignBehindItTakeTheRoomOfBoth)
{
    const auto end = [this](const std::string& text) {
        Paragraph linked = paragraph(text);
        linked.link = TextLink{0, text.size(), {}};
        return m_setter.lines(linked).front().link.value_or(Extent{}).right;
    };
    const std::string letter = "\u0915"; // Devanagari, as the sign is
    const std::string sign = "\u093E";
    EXPECT_GT(end(letter + sign), end(letter) + 1);
    EXPECT_NEAR(end(letter + sign + letter), end(letter + sign) + end(letter), 0.01);
}

TEST_F(Setter, ALongTextHasNoShortLineWhereItsLayoutWasCut)
{
    std::string word;
    for (int count = 0; count < 5000; ++count)
        word += "\u4E2D";
    const auto counts = lengths(paragraph(word));
    ASSERT_GT(counts.size(), 60U);
    for (const std::size_t count : std::span(counts).first(counts.size() - 1))
        EXPECT_EQ(count, counts.front());
    EXPECT_EQ(std::accumulate(counts.begin(), counts.end(), std::size_t{}), 5000U);
}

TEST_F(Setter, ALongTextWithAnotherScriptHasTheLinesThatItHasWithout)
{
    std::string words;
    for (int count = 0; count < 1000; ++count)
        words += std::string(static_cast<std::size_t>(count % 12 + 1), 'x') + ' ';
    const auto plain = lengths(paragraph(words));
    auto mixed = lengths(paragraph(words + "\u4E2D"));
    ASSERT_EQ(mixed.size(), plain.size());
    --mixed.back();
    EXPECT_EQ(mixed, plain);
}

TEST_F(Setter, MarksWithoutEndAreCutAndGoOn)
{
    std::string word = "a";
    for (int count = 0; count < 4999; ++count)
        word += "\u0301";
    const auto counts = lengths(paragraph(word));
    // A mark that starts the rest of the text gets a dotted circle to stand on.
    EXPECT_GE(std::accumulate(counts.begin(), counts.end(), std::size_t{}), 5000U);
}

TEST_F(Setter, AVariationOfAnIdeographInALongTextIsOneGlyphWithItsSelector)
{
    std::string text;
    for (int count = 0; count < 40; ++count)
        text += "\u4E2D";
    const auto plain = lengths(paragraph(text));
    EXPECT_EQ(lengths(paragraph(text + "\uFE00")), plain);
}

TEST_F(Setter, EachRunOfIdeographsKeepsItsInk)
{
    Paragraph colored = paragraph({});
    std::string name;
    for (int count = 0; count < 20; ++count)
        name += "\u4E2D";
    colored.runs = {{name}, {name, Weight::bold, Ink::restricted}};
    const auto lines = m_setter.lines(colored);
    ASSERT_EQ(lines.size(), 1U);
    const auto& runs = lines[0].runs;
    ASSERT_EQ(runs.size(), 2U);
    for (const std::size_t run : {0U, 1U})
        EXPECT_EQ(runs[run].codes.size(), 40U);
    EXPECT_EQ(runs[0].ink, Ink::black);
    EXPECT_EQ(runs[1].ink, Ink::restricted);
}

TEST_F(Setter, AnotherScriptKeepsTheColorsOfItsRuns)
{
    Paragraph colored = paragraph("\u4E2D");
    colored.runs.push_back({"[Restricted]", Weight::bold, Ink::restricted});
    const auto lines = m_setter.lines(colored);
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0].runs.front().ink, Ink::black);
    EXPECT_EQ(lines[0].runs.back().ink, Ink::restricted);
    EXPECT_NE(lines[0].runs.front().font, lines[0].runs.back().font);
}

TEST_F(Setter, BlanksAtTheEndOfATextInAnotherScriptStay)
{
    EXPECT_EQ(lengths(paragraph("\u4E2D\u6587  ")), std::vector<std::size_t>{4});
}

TEST_F(Setter, EachColoredGlyphIsAResource)
{
    const auto lines = m_setter.lines(paragraph("\U0001F600\U0001F601\U0001F600"));
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0].images.size(), 3U);
    EXPECT_EQ(lines[0].images.front().image, lines[0].images.back().image);
    PDFFile file;
    EXPECT_THAT(m_setter.writeResources(file),
                AllOf(StartsWith("<</Font<</F0 "), HasSubstr(">>/XObject<</I0 "), HasSubstr("/I1 "),
                      Not(HasSubstr("/I2 ")), EndsWith(" 0 R>>>>")));
}

} // namespace
} // namespace quillmark
