// Fonts as they are written into a report, one at a time. TrueTypeProgramTest.cpp and
// CFFProgramTest.cpp have their programs.
#include "export/EmbeddedFont.h"

#include "WrittenPDF.h"
#include "export/CFFProgram.h"
#include "fontfile/CFF.h"
#include "support/FontBytes.h"
#include "support/FontContainers.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <fstream>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

namespace quillmark {
namespace {

using test::Bytes;
using test::WrittenPDF;
using testing::AllOf;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;
using testing::Optional;

const std::string dejaVu = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";

std::string courierPrime()
{
    return (reportFontFolder() / "CourierPrime-Regular.ttf").string();
}

/// What is written of a font: its own object is the first.
WrittenPDF written(EmbeddedFont& font)
{
    PDFFile file;
    const auto object = file.reserve();
    font.write(file, object);
    return WrittenPDF(file.finish(object, object));
}

std::string streamWith(const WrittenPDF& pdf, const std::string& entry)
{
    for (unsigned object = 1; object < 12; ++object)
        if (pdf.text().find("\n" + std::to_string(object) + " 0 obj\n<<") != std::string::npos &&
            pdf.entries(object).find(entry) != std::string::npos)
            return pdf.data(object);
    return {};
}

std::string toUnicode(const WrittenPDF& pdf)
{
    // The only stream without entries of its own.
    for (unsigned object = 1; object < 12; ++object)
        if (pdf.text().find("\n" + std::to_string(object) + " 0 obj\n<</Filter") !=
            std::string::npos)
            return pdf.data(object);
    return {};
}

/// Courier Prime under other names.
class RenamedFont {
public:
    explicit RenamedFont(const std::vector<std::pair<std::uint16_t, std::u16string>>& names)
    {
        std::ifstream file(courierPrime(), std::ios::binary);
        const std::string text{std::istreambuf_iterator<char>(file), {}};
        const Bytes original = test::ascii(text);
        std::vector<test::NameRecord> records;
        for (const auto& [id, name] : names)
            records.push_back(test::windowsEnglish(id, name));
        test::FontBytes font;
        font.face(test::versionOf(original));
        for (auto& table : test::tablesOf(original))
            font.table(table.tag, table.tag == "name" ? test::nameTable(records).build()
                                                      : std::move(table.bytes));
        m_folder.write("renamed.ttf", font.build());
    }

    /// The names in the program that is written of it.
    [[nodiscard]] BareFontInfo writtenNames() const
    {
        const auto font = EmbeddedFont::open({(m_folder.path() / "renamed.ttf").string(), 0});
        if (!font) return {};
        const std::string program = streamWith(written(*font), "/CIDFontType0C");
        return CFF::read(std::as_bytes(std::span(program))).value_or(BareFontInfo{});
    }

private:
    test::TemporaryFolder m_folder;
};

TEST(EmbeddedFont, OpensOnlyWhatIsAFont)
{
    EXPECT_EQ(EmbeddedFont::open({"/nowhere.ttf", 0}), nullptr);
    EXPECT_EQ(EmbeddedFont::open({dejaVu, 1}), nullptr);
    EXPECT_NE(EmbeddedFont::open({dejaVu, 0}), nullptr);
}

TEST(EmbeddedFont, SetsByThemselvesOnlyCharactersThatNeverJoinOrTurn)
{
    const auto font = EmbeddedFont::open({dejaVu, 0});
    ASSERT_TRUE(font);
    for (const unsigned character :
         {0x20U,   0x7EU,   0xA0U,   0xACU,   0xAEU,   0x370U,  0x482U,  0x48AU,
          0x525U,  0x1E00U, 0x1FFEU, 0x2010U, 0x2027U, 0x202FU, 0x205EU, 0x2070U,
          0x20B8U, 0x2100U, 0x22FFU, 0x2500U, 0x25FFU, 0xFFFDU})
        EXPECT_TRUE(font->code(character)) << std::hex << character;
    // The font has these as well: marks, the soft hyphen, formatting characters, other scripts.
    for (const unsigned character : {0xADU, 0x300U, 0x483U, 0x489U, 0x531U, 0x5D0U, 0x627U, 0x200FU,
                                     0x2028U, 0x202EU, 0x205FU, 0x20D0U, 0x2300U, 0x2600U, 0xFFFCU})
        EXPECT_FALSE(font->code(character)) << std::hex << character;
}

TEST(EmbeddedFont, HasNoCodeForACharacterThatItHasNot)
{
    const auto font = EmbeddedFont::open({courierPrime(), 0});
    ASSERT_TRUE(font);
    EXPECT_FALSE(font->code(U'\u1F00')); // Greek with a breathing
    // But for the sign for what cannot be shown.
    EXPECT_TRUE(font->code(U'\uFFFD'));
}

TEST(EmbeddedFont, GivesEachGlyphWithItsTextOneCode)
{
    const auto font = EmbeddedFont::open({dejaVu, 0});
    ASSERT_TRUE(font);
    const auto first = font->code(U'A');
    EXPECT_THAT(first, Optional(1));
    EXPECT_EQ(font->code(U'A'), first);
    EXPECT_THAT(font->code(U'B'), Optional(2));
    EXPECT_EQ(font->code(36, "A"), 1); // the same glyph and text
    EXPECT_EQ(font->code(36, "a"), 3);
    EXPECT_EQ(font->code(36, ""), 4);
    EXPECT_EQ(font->code(0, ""), 0); // the glyph for what the font has not
    EXPECT_EQ(font->code(36, "a"), 3);
}

TEST(EmbeddedFont, HasAdvancesInThousandthsOfAnEm)
{
    const auto font = EmbeddedFont::open({dejaVu, 0});
    ASSERT_TRUE(font);
    EXPECT_DOUBLE_EQ(font->advance(font->code(U'A').value()), 1401 * 1000.0 / 2048);
    EXPECT_DOUBLE_EQ(font->advance(0), 1229 * 1000.0 / 2048);
}

TEST(EmbeddedFont, HasNoMoreCodesThanTwoBytesHold)
{
    const auto font = EmbeddedFont::open({dejaVu, 0});
    ASSERT_TRUE(font);
    for (int i = 1; i < 65'535; ++i)
        ASSERT_EQ(font->code(36, std::to_string(i)), i);
    EXPECT_EQ(font->code(36, "another"), 0);
    EXPECT_FALSE(font->code(U'A'));
    EXPECT_EQ(font->code(36, "65534"), 65'534);
}

TEST(EmbeddedFont, WritesEveryWidthOrTheOnlyOne)
{
    const auto font = EmbeddedFont::open({dejaVu, 0});
    const auto fixed = EmbeddedFont::open({courierPrime(), 0});
    ASSERT_TRUE(font && fixed);
    for (const char32_t character : {U'A', U' '}) {
        ASSERT_TRUE(font->code(character));
        ASSERT_TRUE(fixed->code(character));
    }
    EXPECT_THAT(written(*font).objects(), HasSubstr("/W[0[600.098 684.082 317.871 ]]"));
    EXPECT_THAT(written(*fixed).objects(), HasSubstr("/W[0 2 599.609]"));
}

TEST(EmbeddedFont, DescribesItselfInThousandthsOfAnEm)
{
    const auto font = EmbeddedFont::open({courierPrime(), 0});
    ASSERT_TRUE(font);
    const std::string objects = written(*font).objects();
    EXPECT_THAT(objects, HasSubstr("/Flags 5/FontBBox[-370 -256 1567 892 ]/ItalicAngle 0/Ascent 781"
                                   "/Descent -341/CapHeight 781/StemV 80/FontFile3 "));
    EXPECT_THAT(objects, HasSubstr("+CourierPrime-Regular/Encoding/Identity-H/"));
    const auto other = EmbeddedFont::open({dejaVu, 0});
    ASSERT_TRUE(other);
    EXPECT_THAT(written(*other).objects(), HasSubstr("/Flags 4/"));
}

TEST(EmbeddedFont, HasAPrefixThatTellsItsGlyphs)
{
    const auto nameWith = [](const std::u32string& characters) {
        const auto font = EmbeddedFont::open({courierPrime(), 0});
        for (const char32_t character : characters)
            EXPECT_TRUE(font->code(character));
        const std::string objects = written(*font).objects();
        const std::size_t start = objects.find("/BaseFont/") + 10;
        return objects.substr(start, objects.find('/', start) - start);
    };
    EXPECT_THAT(nameWith(U"A"), MatchesRegex("[A-Z]{6}\\+CourierPrime-Regular"));
    EXPECT_EQ(nameWith(U"A"), nameWith(U"A"));
    EXPECT_NE(nameWith(U"A"), nameWith(U"B"));
    EXPECT_NE(nameWith(U"A"), nameWith(U"AB"));
    EXPECT_NE(nameWith(U"BA"), nameWith(U"AB"));
}

TEST(EmbeddedFont, TellsTheTextOfEachCodeInBlocksOfAHundred)
{
    const auto font = EmbeddedFont::open({dejaVu, 0});
    ASSERT_TRUE(font);
    EXPECT_EQ(font->code(36, "A"), 1);
    EXPECT_EQ(font->code(37, ""), 2); // no text, no entry
    EXPECT_EQ(font->code(38, "\U0001F600b"), 3);
    EXPECT_THAT(toUnicode(written(*font)),
                HasSubstr("1 begincodespacerange\n<0000><FFFF>\nendcodespacerange\n"
                          "2 beginbfchar\n<0001><0041>\n<0003><D83DDE000062>\nendbfchar\n"
                          "endcmap\n"));
    for (int i = 4; i <= 102; ++i)
        EXPECT_EQ(font->code(36, std::to_string(i)), i);
    EXPECT_THAT(toUnicode(written(*font)),
                AllOf(HasSubstr("\n100 beginbfchar\n<0001><0041>\n"),
                      HasSubstr("<0065><003100300031>\nendbfchar\n1 beginbfchar\n"
                                "<0066><003100300032>\nendbfchar\nendcmap")));
}

TEST(EmbeddedFont, DrawsQuadraticCurvesAsCubicOnes)
{
    const auto font = EmbeddedFont::open({dejaVu, 0});
    ASSERT_TRUE(font && font->code(U'('));
    CharStrings charStrings;
    CharString drawn(charStrings, 799 * 1000.0 / 2048);
    double x = 635;
    double y = 1554;
    const auto scaled = [](double position) { return position * 1000 / 2048; };
    const auto conicTo = [&](double controlX, double controlY, double endX, double endY) {
        drawn.curveTo(scaled((x + 2 * controlX) / 3), scaled((y + 2 * controlY) / 3),
                      scaled((endX + 2 * controlX) / 3), scaled((endY + 2 * controlY) / 3),
                      scaled(endX), scaled(endY));
        x = endX;
        y = endY;
    };
    // As the font has it; every second end lies in the middle of two control points.
    drawn.moveTo(scaled(x), scaled(y));
    conicTo(501, 1324, 436, 1099);
    conicTo(371, 874, 371, 643);
    conicTo(371, 412, 436, 185);
    conicTo(502, -41, 635, -270);
    drawn.lineTo(scaled(x = 475), scaled(y));
    conicTo(325, -35, 250, 192);
    conicTo(176, 419, 176, 643);
    conicTo(176, 866, 250, 1092);
    conicTo(324, 1318, 475, 1554);
    drawn.lineTo(scaled(635), scaled(1554));
    drawn.finish();
    EXPECT_THAT(streamWith(written(*font), "/CIDFontType0C"), HasSubstr(charStrings.bytes));
}

TEST(EmbeddedFont, KeepsItsNamesInTheProgramAsASCII)
{
    const RenamedFont font({{0, u"\u00A9 1999 J\u00F6rg ~"},
                            {1, u"Fam"},
                            {4, u"Full Name"},
                            {6, u"Post.Script_Name-09"},
                            {13, u"Free\u007F"}});
    const BareFontInfo names = font.writtenNames();
    EXPECT_THAT(names.fontName, Optional(MatchesRegex("[A-Z]{6}\\+Post.Script_Name-09")));
    EXPECT_EQ(names.fullName, "Full Name");
    EXPECT_EQ(names.familyName, "Fam");
    EXPECT_EQ(names.notice, "(c) 1999 J?rg ~ Free?");
}

TEST(EmbeddedFont, KeepsALicenseWithoutACopyrightAndAThousandCharactersOfThem)
{
    EXPECT_EQ(RenamedFont({{6, u"A"}, {13, u"Free"}}).writtenNames().notice, "Free");
    EXPECT_EQ(RenamedFont({{6, u"A"}, {0, u"Mine"}}).writtenNames().notice, "Mine");
    EXPECT_FALSE(RenamedFont({{6, u"A"}}).writtenNames().notice);
    EXPECT_EQ(
        RenamedFont({{6, u"A"}, {0, std::u16string(999, u'c')}, {13, u"ll"}}).writtenNames().notice,
        std::string(999, 'c')); // the blank behind it is the thousandth
    EXPECT_EQ(RenamedFont({{6, u"A"}, {13, std::u16string(1001, u'c')}}).writtenNames().notice,
              std::string(1000, 'c'));
}

TEST(EmbeddedFont, WithoutANameIsCalledFont)
{
    EXPECT_THAT(RenamedFont({{1, u"Fam"}}).writtenNames().fontName,
                Optional(MatchesRegex("[A-Z]{6}\\+Font")));
}

TEST(EmbeddedFont, CopiesAThousandGlyphsAndDrawsFewer)
{
    const auto font = EmbeddedFont::open({dejaVu, 0});
    ASSERT_TRUE(font);
    for (unsigned glyph = 1; glyph < 999; ++glyph)
        static_cast<void>(font->code(glyph, "x"));
    EXPECT_THAT(written(*font).objects(),
                AllOf(HasSubstr("/Subtype/CIDFontType0>>"), HasSubstr("/FontFile3 ")));
    EXPECT_EQ(font->code(1234, "y"), 999);
    const WrittenPDF copied = written(*font);
    EXPECT_THAT(copied.objects(), AllOf(HasSubstr("/Subtype/CIDFontType2/CIDToGIDMap "),
                                        HasSubstr("/FontFile2 "), Not(HasSubstr("/FontFile3 "))));
    EXPECT_EQ(streamWith(copied, "/Length1 ").substr(0, 4), test::trueTypeVersion);
    // Two bytes for each code: its glyph.
    std::string numbers;
    for (unsigned object = 1; object < 12 && numbers.size() != 2000; ++object)
        if (copied.text().find("\n" + std::to_string(object) + " 0 obj\n<</Filter") !=
            std::string::npos)
            numbers = copied.data(object);
    ASSERT_EQ(numbers.size(), 2000U);
    EXPECT_EQ(numbers.substr(0, 4), std::string("\0\0\0\1", 4));
    EXPECT_EQ(numbers.substr(2 * 300, 2), "\x01\x2C");
    EXPECT_EQ(numbers.substr(2 * 999, 2), "\x04\xD2");
}

TEST(EmbeddedFont, HasColorsOnlyWhereAFontIsMadeOfThem)
{
    const auto plain = EmbeddedFont::open({dejaVu, 0});
    const auto emoji = EmbeddedFont::open({"/usr/share/fonts/truetype/noto/NotoColorEmoji.ttf", 0});
    ASSERT_TRUE(plain && emoji);
    EXPECT_FALSE(plain->hasColors());
    EXPECT_FALSE(plain->image(36));
    EXPECT_TRUE(emoji->hasColors());
    EXPECT_FALSE(emoji->image(0xFFFFFF));
}

TEST(EmbeddedFont, HasColoredGlyphsAsImagesOfHalfTheirPixels)
{
    // 136 times 128 pixels of which 109 are an em, 101 of them above the base line.
    const auto emoji = EmbeddedFont::open({"/usr/share/fonts/truetype/noto/NotoColorEmoji.ttf", 0});
    ASSERT_TRUE(emoji);
    constexpr unsigned grinningFace = 883;
    EXPECT_DOUBLE_EQ(emoji->advance(emoji->code(grinningFace, "x")), 136 * 1000.0 / 109);
    const auto image = emoji->image(grinningFace);
    ASSERT_TRUE(image);
    EXPECT_EQ(image->width, 68);
    EXPECT_EQ(image->height, 64);
    EXPECT_DOUBLE_EQ(image->pixel, 2.0 / 109);
    EXPECT_DOUBLE_EQ(image->left, 0);
    EXPECT_NEAR(image->bottom, (101 - 128) / 109.0, 1e-9);
    ASSERT_EQ(image->alpha.size(), 68U * 64);
    ASSERT_EQ(image->colors.size(), 3U * 68 * 64);
    // A corner has nothing; the cheek is yellow and opaque.
    EXPECT_EQ(image->alpha[0], '\0');
    const std::size_t cheek = 40 * 68 + 12;
    EXPECT_EQ(static_cast<unsigned char>(image->alpha[cheek]), 255);
    const auto channel = [&](std::size_t at) {
        return static_cast<unsigned>(static_cast<unsigned char>(image->colors[3 * cheek + at]));
    };
    EXPECT_GT(channel(0), 230U);
    EXPECT_GT(channel(1), 150U);
    EXPECT_LT(channel(2), 100U);
}

} // namespace
} // namespace quillmark
