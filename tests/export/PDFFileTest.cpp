// Files as they are written, byte by byte. report_test.py has other programs read them.
#include "export/PDFFile.h"

#include "WrittenPDF.h"

#include <gmock/gmock.h>

#include <string>

namespace quillmark {
namespace {

using test::WrittenPDF;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

std::string written(double number)
{
    std::string text = "x";
    appendNumber(text, number);
    return text.substr(1);
}

TEST(PDFNumber, HasNoMoreDecimalsThanItNeedsAndThreeAtMost)
{
    EXPECT_EQ(written(0), "0");
    EXPECT_EQ(written(10), "10");
    EXPECT_EQ(written(100), "100");
    EXPECT_EQ(written(0.5), "0.5");
    EXPECT_EQ(written(599.609375), "599.609");
    EXPECT_EQ(written(-1.0625), "-1.062"); // of two equally near ones the even one
    EXPECT_EQ(written(2.9996), "3");
    EXPECT_EQ(written(-12.25), "-12.25");
}

TEST(PDFNumber, IsZeroWithoutASignWhenItIsTooSmall)
{
    EXPECT_EQ(written(-0.0), "0");
    EXPECT_EQ(written(-0.0001), "0");
    EXPECT_EQ(written(0.0001), "0");
    EXPECT_EQ(written(-0.001), "-0.001");
}

TEST(PDFNumber, IsZeroWhenItHasMoreDigitsThanAnyPosition)
{
    EXPECT_EQ(written(1e20), "100000000000000000000");
    EXPECT_EQ(written(1e40), "0");
}

TEST(PDFText, IsInParenthesesWhereItIsASCII)
{
    EXPECT_EQ(textString("Report"), "(Report)");
    EXPECT_EQ(textString(""), "()");
    EXPECT_EQ(textString("a(b)c\\d"), "(a\\(b\\)c\\\\d)");
    EXPECT_EQ(byteString("(\\)"), "(\\(\\\\\\))");
}

TEST(PDFText, IsUTF16WhereItIsNot)
{
    EXPECT_EQ(textString("\u00FCber"), "<FEFF00FC006200650072>");
    EXPECT_EQ(utf16Digits("Aa\uFFFF"), "00410061FFFF");
    EXPECT_EQ(utf16Digits("\U00010000"), "D800DC00");
    EXPECT_EQ(utf16Digits("\U0001F600"), "D83DDE00");
    EXPECT_EQ(utf16Digits("\U0010FFFF"), "DBFFDFFF");
    EXPECT_EQ(utf16Digits(""), "");
}

TEST(PDFFile, HasAHeaderAndEndsWithThePlaceOfItsTable)
{
    PDFFile file;
    const auto catalog = file.reserve();
    const auto information = file.reserve();
    file.write(catalog, "<</Type/Catalog>>");
    file.write(information, "<</Title(T)>>");
    const WrittenPDF pdf(file.finish(catalog, information));
    EXPECT_THAT(pdf.text(), StartsWith("%PDF-1.5\n%\xE2\xE3\xCF\xD3\n"));
    const std::size_t table = pdf.text().find("4 0 obj\n");
    EXPECT_THAT(pdf.text(), EndsWith("\nstartxref\n" + std::to_string(table) + "\n%%EOF\n"));
    EXPECT_THAT(pdf.entries(4), HasSubstr("/Type/XRef/W[1 5 1]/Size 5/Root 1 0 R/Info 2 0 R"));
}

TEST(PDFFile, KeepsObjectsTogetherInAStream)
{
    PDFFile file;
    const auto catalog = file.reserve();
    const auto information = file.reserve();
    file.write(information, "<</Title(T)>>");
    file.write(catalog, "<</Type/Catalog>>");
    const WrittenPDF pdf(file.finish(catalog, information));
    EXPECT_THAT(pdf.entries(3), HasSubstr("/Type/ObjStm/N 2/First 9"));
    EXPECT_EQ(pdf.data(3), "2 0 1 14 <</Title(T)>>\n<</Type/Catalog>>\n");
    // Kind, five bytes of a position or of the stream's number, place in the stream.
    const std::string free("\0\0\0\0\0\0\xFF", 7);
    const std::string first("\2\0\0\0\0\3\1", 7);
    const std::string second("\2\0\0\0\0\3\0", 7);
    const std::string stream("\1\0\0\0\0\x0F\0", 7);
    const std::size_t at = pdf.text().find("4 0 obj\n");
    const std::string table = std::string("\1\0\0\0\0", 5) + static_cast<char>(at) + '\0';
    EXPECT_EQ(pdf.data(4), free + first + second + stream + table);
}

TEST(PDFFile, PutsTwoHundredObjectsInAStream)
{
    PDFFile file;
    const auto catalog = file.reserve();
    file.write(catalog, "0");
    for (int i = 1; i < 200; ++i)
        file.write(file.reserve(), std::to_string(i));
    const auto information = file.reserve();
    file.write(information, "200");
    const WrittenPDF pdf(file.finish(catalog, information));
    EXPECT_THAT(pdf.entries(201), HasSubstr("/Type/ObjStm/N 200/"));
    EXPECT_THAT(pdf.data(201), EndsWith("\n198\n199\n"));
    EXPECT_EQ(information, 202U);
    EXPECT_THAT(pdf.entries(203), HasSubstr("/Type/ObjStm/N 1/"));
    EXPECT_EQ(pdf.data(203), "202 0 200\n");
}

TEST(PDFFile, WritesAStreamWithItsEntriesAndItsLength)
{
    PDFFile file;
    const auto catalog = file.reserve();
    const auto stream = file.reserve();
    file.writeStream(stream, "/Own 1", "some data, data, data");
    file.write(catalog, reference(stream));
    const WrittenPDF pdf(file.finish(catalog, catalog));
    EXPECT_THAT(pdf.entries(stream), StartsWith("/Own 1/Filter/FlateDecode/Length "));
    EXPECT_EQ(pdf.data(stream), "some data, data, data");
    EXPECT_THAT(pdf.data(3), EndsWith("2 0 R\n"));
}

TEST(PDFFile, CompressesLargeStreamsLessAndHugeOnesNotAtAll)
{
    // Letters in no order can be told in fewer bits each, if somebody looks; repetitions in hardly
    // any.
    const auto size = [](std::size_t length) {
        std::string data(length, '\0');
        std::uint32_t state = 1;
        for (char& character : data) {
            state = state * 1664525U + 1013904223U;
            character = static_cast<char>('a' + (state >> 24U) % 4);
        }
        PDFFile file;
        const auto stream = file.reserve();
        file.writeStream(stream, {}, data);
        const WrittenPDF pdf(file.finish(stream, stream));
        EXPECT_EQ(pdf.data(stream), data);
        return pdf.text().size();
    };
    const std::size_t small = size(0x3FFFF);
    const std::size_t large = size(0x40000);
    EXPECT_LT(small, 0x3FFFFU / 2);
    EXPECT_GT(large, small + small / 100);
    EXPECT_LT(size(0x1FFFFF), 0x200000U / 2);
    EXPECT_GT(size(0x200000), 0x200000U);
}

} // namespace
} // namespace quillmark
