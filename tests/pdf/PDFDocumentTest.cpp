#include "pdf/PDFDocument.h"

#include "DocumentFixture.h"
#include "pdf/Limits.h"
#include "support/FontContainers.h"
#include "support/PDFBytes.h"
#include "support/PDFEncoders.h"
#include "support/PDFEncryption.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <map>
#include <ostream>
#include <string>

#include <sys/stat.h>

namespace quillmark::PDF {
namespace {

using test::ascii;
using test::Bytes;
using test::lines;
using test::namesAndPages;
using test::onePage;
using test::openingError;
using test::PDFBytes;
using test::replaced;
using test::scanned;
using CrossReference = PDFBytes::CrossReference;
using Error = PDFCheckError::Kind;

/// Objects 1 to 3, and an embedded font called Foo in objects 4 to 6, its program in a stream with
/// these entries.
PDFBytes withProgram(std::string_view entries, std::span<const std::byte> data)
{
    auto pdf = onePage("<</Font<</F 4 0 R>>>>");
    pdf.object(4, "<</Type/Font/Subtype/TrueType/BaseFont/Foo/FontDescriptor 5 0 R>>");
    pdf.object(5, "<</Type/FontDescriptor/FontFile2 6 0 R>>");
    pdf.stream(6, entries, data);
    return pdf;
}

PDFBytes withProgram(std::string_view entries, std::string_view data)
{
    return withProgram(entries, ascii(data));
}

constexpr const char* fooWithProgram = "Foo TrueType trueType [1] 11 bytes\n";
constexpr const char* fooWithoutProgram = "Foo TrueType trueType [1]\n";
constexpr std::string_view program = "the program";

/// How many fonts are found in a document that may not even open.
std::size_t fontsIn(const Bytes& pdf)
{
    const auto opened = open(pdf);
    const auto* document = std::get_if<std::unique_ptr<Document>>(&opened);
    return document ? PDFFontScanner::scan(**document).fonts.size() : 0;
}

TEST(PDFDocument, WhatIsNoPDFIsUnreadable)
{
    EXPECT_EQ(openingError({}), Error::unreadable);
    EXPECT_EQ(openingError(ascii("%PDF-1.7\n")), Error::unreadable);
    EXPECT_EQ(openingError(ascii("just text, with no objects in it\n")), Error::unreadable);
    EXPECT_EQ(openingError(Bytes(100'000)), Error::unreadable);
}

TEST(PDFDocument, TrailerWithoutCatalogIsUnreadable)
{
    EXPECT_EQ(openingError(PDFBytes().trailer("/Root 9 0 R").object(1, "<<>>").build()),
              Error::unreadable);
    EXPECT_EQ(openingError(PDFBytes().trailer("/Root 1 0 R").object(1, "[1]").build()),
              Error::unreadable);
    EXPECT_EQ(openingError(PDFBytes().trailer("/Root/X").object(1, "<<>>").build()),
              Error::unreadable);
}

struct Layout {
    const char* name;
    CrossReference crossReference;
    bool objectStream;

    friend std::ostream& operator<<(std::ostream& out, const Layout& row)
    {
        return out << row.name;
    }
};

class Layouts : public testing::TestWithParam<Layout> {
protected:
    /// The document, with everything but its streams in an object stream if there is one.
    static PDFBytes document()
    {
        const std::vector<std::pair<int, std::string>> objects{
            {1, "<</Type/Catalog/Pages 2 0 R>>"},
            {2, "<</Type/Pages/Kids[3 0 R]>>"},
            {3, "<</Type/Page/Resources<</Font<</F 4 0 R>>>>>>"},
            {4, "<</Subtype/TrueType/BaseFont/Foo/FontDescriptor 5 0 R>>"},
            {5, "<</FontFile2 6 0 R>>"},
        };
        PDFBytes pdf;
        pdf.crossReference(GetParam().crossReference);
        pdf.stream(6, "/Filter/FlateDecode", test::deflated(ascii(program)));
        if (GetParam().objectStream) {
            pdf.objectStream(7, objects);
        } else {
            for (const auto& [number, text] : objects)
                pdf.object(number, text);
        }
        return pdf;
    }
};

TEST_P(Layouts, AreRead)
{
    EXPECT_EQ(lines(scanned(document())), fooWithProgram);
}

TEST_P(Layouts, AreReadBehindGarbage)
{
    auto pdf = document();
    pdf.garbage("HTTP/1.1 200 OK\r\n\r\n");
    EXPECT_EQ(lines(scanned(pdf)), fooWithProgram);
    auto more = document();
    more.garbage(std::string(1000, 'x'));
    EXPECT_EQ(lines(scanned(more)), fooWithProgram);
}

TEST_P(Layouts, CutShortAnywhereEndNormally)
{
    const Bytes whole = document().build();
    for (std::size_t size = 0; size < whole.size(); size += 7) {
        const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
        EXPECT_LE(fontsIn(cut), 1U) << size;
    }
}

TEST_P(Layouts, WithAnyByteWrongEndNormally)
{
    const Bytes whole = document().build();
    for (std::size_t at = 0; at < whole.size(); ++at) {
        Bytes damaged = whole;
        damaged[at] ^= std::byte{0x15};
        EXPECT_LE(fontsIn(damaged), 1U) << at;
    }
}

INSTANTIATE_TEST_SUITE_P(
    PDFDocument, Layouts,
    testing::Values(Layout{"Table", CrossReference::table, false},
                    Layout{"Stream", CrossReference::stream, false},
                    Layout{"FlatedStream", CrossReference::flatedStream, false},
                    Layout{"ObjectStream", CrossReference::stream, true},
                    Layout{"ObjectStreamAndFlatedStream", CrossReference::flatedStream, true}),
    [](const auto& test) { return std::string(test.param.name); });

struct Encrypted {
    const char* name;
    test::Encryption encryption;

    friend std::ostream& operator<<(std::ostream& out, const Encrypted& row)
    {
        return out << row.name;
    }
};

class Encryptions : public testing::TestWithParam<Encrypted> {};

TEST_P(Encryptions, WithAnEmptyUserPasswordAreCheckedLikeAnyOther)
{
    const auto pdf = withProgram("/Filter/FlateDecode", test::deflated(ascii(program))).build();
    EXPECT_EQ(lines(scanned(encrypted(pdf, GetParam().encryption, ""))), fooWithProgram);
}

TEST_P(Encryptions, WithAUserPasswordAreLocked)
{
    const auto pdf = withProgram("", program).build();
    EXPECT_EQ(openingError(encrypted(pdf, GetParam().encryption, "secret")), Error::locked);
}

TEST_P(Encryptions, CutShortEndNormally)
{
    const auto pdf = withProgram("", program).build();
    const Bytes whole = encrypted(pdf, GetParam().encryption, "");
    for (std::size_t size = 0; size < whole.size(); size += 13) {
        const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
        EXPECT_LE(fontsIn(cut), 1U) << size;
    }
}

INSTANTIATE_TEST_SUITE_P(
    PDFDocument, Encryptions,
    testing::Values(Encrypted{"RC4With40Bits", test::Encryption::rc4With40Bits},
                    Encrypted{"RC4With128Bits", test::Encryption::rc4With128Bits},
                    Encrypted{"AESWith128Bits", test::Encryption::aesWith128Bits},
                    Encrypted{"AESWith256Bits", test::Encryption::aesWith256Bits}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(PDFDocument, UnknownSecurityHandlerIsLocked)
{
    auto pdf = withProgram("", program);
    pdf.trailer("/Encrypt<</Filter/Adobe.PubSec/V 4>>");
    EXPECT_EQ(openingError(pdf.build()), Error::locked);
}

TEST(PDFDocument, UnknownVersionOfTheStandardHandlerIsLocked)
{
    auto pdf = withProgram("", program);
    pdf.trailer("/Encrypt<</Filter/Standard/V 9/R 9/O(x)/U(x)/P 0>>");
    EXPECT_EQ(openingError(pdf.build()), Error::locked);
}

TEST(PDFDocument, DamagedEncryptionIsLocked)
{
    auto pdf = withProgram("", program);
    pdf.trailer("/Encrypt<</Filter/Standard>>");
    EXPECT_EQ(openingError(pdf.build()), Error::locked);
}

TEST(PDFDocument, ReferenceToNoEncryptionIsNone)
{
    auto pdf = withProgram("", program);
    pdf.trailer("/Encrypt 99 0 R");
    EXPECT_EQ(lines(scanned(pdf)), fooWithProgram);
}

struct FilteredProgram {
    const char* name;
    std::string entries;
    Bytes data;

    friend std::ostream& operator<<(std::ostream& out, const FilteredProgram& row)
    {
        return out << row.name;
    }
};

class FilteredPrograms : public testing::TestWithParam<FilteredProgram> {};

TEST_P(FilteredPrograms, AreDecoded)
{
    EXPECT_EQ(lines(scanned(withProgram(GetParam().entries, GetParam().data))), fooWithProgram);
}

INSTANTIATE_TEST_SUITE_P(
    PDFDocument, FilteredPrograms,
    testing::Values(
        FilteredProgram{"None", "", ascii(program)},
        FilteredProgram{"EmptyArray", "/Filter[]", ascii(program)},
        FilteredProgram{"Flate", "/Filter/FlateDecode", test::deflated(ascii(program))},
        FilteredProgram{"FlateInAnArray", "/Filter[/FlateDecode]", test::deflated(ascii(program))},
        FilteredProgram{"LZW", "/Filter/LZWDecode", test::lzw(ascii(program))},
        FilteredProgram{"LZWWithLateChange", "/Filter/LZWDecode/DecodeParms<</EarlyChange 0>>",
                        test::lzw(ascii(program), false)},
        FilteredProgram{"ASCIIHex", "/Filter/ASCIIHexDecode", test::asciiHex(ascii(program))},
        FilteredProgram{"ASCII85", "/Filter/ASCII85Decode", test::ascii85(ascii(program))},
        FilteredProgram{"RunLength", "/Filter/RunLengthDecode", test::runLength(ascii(program))},
        FilteredProgram{"Crypt", "/Filter/Crypt", ascii(program)},
        FilteredProgram{"Abbreviations", "/Filter[/A85/Fl]",
                        test::ascii85(test::deflated(ascii(program)))},
        FilteredProgram{"Chain", "/Filter[/ASCII85Decode/FlateDecode]/DecodeParms[null<<>>]",
                        test::ascii85(test::deflated(ascii(program)))},
        FilteredProgram{"Predictor", "/Filter/FlateDecode/DecodeParms<</Predictor 12/Columns 4>>",
                        test::deflated(test::pngUp(ascii(program), 4))},
        FilteredProgram{"PredictorInAnArray",
                        "/Filter[/FlateDecode]/DecodeParms[<</Predictor 12/Columns 4>>]",
                        test::deflated(test::pngUp(ascii(program), 4))},
        FilteredProgram{"ParametersForAChainWithoutArray",
                        "/Filter[/ASCIIHexDecode/FlateDecode]/DecodeParms<</Predictor 12/Columns "
                        "4>>",
                        test::asciiHex(test::deflated(test::pngUp(ascii(program), 4)))},
        FilteredProgram{"FewerParametersThanFilters",
                        "/Filter[/ASCIIHexDecode/FlateDecode]/DecodeParms[null]",
                        test::asciiHex(test::deflated(ascii(program)))},
        FilteredProgram{"EscapedName", "/Filter/Flate#44ecode", test::deflated(ascii(program))},
        FilteredProgram{"ReferenceToNothing", "/Filter 99 0 R", ascii(program)}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(PDFDocument, FiltersAndParametersMayBeObjectsOfTheirOwn)
{
    auto pdf = withProgram("/Filter 7 0 R/DecodeParms 8 0 R",
                           test::deflated(test::pngUp(ascii(program), 4)));
    pdf.object(7, "[9 0 R]").object(8, "[10 0 R]").object(9, "/FlateDecode");
    pdf.object(10, "<</Predictor 11 0 R/Columns 4>>").object(11, "12");
    EXPECT_EQ(lines(scanned(pdf)), fooWithProgram);
}

class ProgramsThatAreNoPlainBytes : public testing::TestWithParam<const char*> {};

TEST_P(ProgramsThatAreNoPlainBytes, HaveNoDataButKeepTheirKind)
{
    EXPECT_EQ(lines(scanned(withProgram(GetParam(), program))), fooWithoutProgram);
}

INSTANTIATE_TEST_SUITE_P(PDFDocument, ProgramsThatAreNoPlainBytes,
                         testing::Values("/Filter/DCTDecode", "/Filter/JPXDecode",
                                         "/Filter/JBIG2Decode", "/Filter/CCITTFaxDecode",
                                         "/Filter/NoSuchDecode", "/Filter[/FlateDecode/DCTDecode]",
                                         "/Filter[/DCTDecode/ASCIIHexDecode]", "/Filter(x)",
                                         "/Filter[1]", "/Filter[99 0 R]", "/Filter<<>>",
                                         "/Filter/FlateDecode",
                                         "/Filter/FlateDecode/DecodeParms<</Predictor 99>>"));

TEST(PDFDocument, DamagedFlateGivesWhatComesBeforeTheDamage)
{
    std::string text;
    for (int i = 0; i < 1000; ++i)
        text += std::to_string(i * i);
    Bytes data = test::deflated(ascii(text));
    data.resize(data.size() / 2);
    const auto scan = scanned(withProgram("/Filter/FlateDecode", data));
    ASSERT_EQ(scan.fonts.size(), 1U);
    ASSERT_TRUE(scan.fonts[0].data);
    EXPECT_EQ(test::asText(*scan.fonts[0].data), text.substr(0, scan.fonts[0].data->size()));
    EXPECT_GT(scan.fonts[0].data->size(), 500U);
}

TEST(PDFDocument, MoreFiltersThanTheLimitAreUnreadable)
{
    const auto chain = [](std::size_t count) {
        std::string names;
        for (std::size_t i = 0; i < count; ++i)
            names += "/Crypt";
        return lines(scanned(withProgram("/Filter[" + names + "]", program)));
    };
    EXPECT_EQ(chain(Limits::filters), fooWithProgram);
    EXPECT_EQ(chain(Limits::filters + 1), fooWithoutProgram);
}

TEST(PDFDocument, StreamLengthMayBeAnObjectOfItsOwn)
{
    auto pdf = onePage("<</Font<</F<</BaseFont/Foo/Subtype/TrueType/FontDescriptor<</FontFile2 4 0 "
                       "R>>>>>>>>");
    pdf.streamAsWritten(4, "/Length 5 0 R", program).object(5, "11");
    EXPECT_EQ(lines(scanned(pdf)), fooWithProgram);
}

TEST(PDFDocument, StreamLengthMayStandInAnObjectStream)
{
    auto pdf = onePage("<</Font<</F<</BaseFont/Foo/Subtype/TrueType/FontDescriptor<</FontFile2 4 0 "
                       "R>>>>>>>>");
    pdf.crossReference(CrossReference::stream);
    // What looks like the end of the stream is inside the data, so the length has to be right.
    pdf.streamAsWritten(4, "/Length 5 0 R", "the\nendstream\nprogram");
    pdf.objectStream(6, {{5, "21"}});
    EXPECT_EQ(lines(scanned(pdf)), "Foo TrueType trueType [1] 21 bytes\n");
}

TEST(PDFDocument, StreamLengthOfAnEncryptedStreamMayBeAnObjectOfItsOwn)
{
    const Bytes bytes =
        encrypted(withProgram("", program).build(), test::Encryption::aesWith128Bits, "");
    std::string text(test::asText(bytes));
    // What looks like the end of the stream stands behind the encrypted bytes, so the length has to
    // be right for the key to fit.
    const std::size_t keyword = text.find(">>\nstream\n");
    const std::size_t data = keyword + 10;
    const std::size_t entry = text.rfind("/Length ", keyword);
    const std::size_t entryEnd = text.find_first_of(" />", entry + 8);
    const std::string length = text.substr(entry + 8, entryEnd - entry - 8);
    const std::size_t object = text.rfind(" 0 obj", keyword);
    const std::size_t start = text.rfind('\n', object) + 1;
    const std::string number = text.substr(start, object - start);
    const std::size_t dataEnd = data + std::stoul(length);
    ASSERT_EQ(text.compare(dataEnd, 9, "endstream"), 0);
    const std::size_t trailer = text.rfind("trailer <<") + 10;
    const std::string entries = text.substr(trailer, text.find("startxref") - trailer);
    const std::string before = text.substr(text.find("startxref") + 10);

    // The same stream again, as an update of the document.
    std::string stream = number + " 0 obj\n" + text.substr(object + 7, entry - object - 7) +
                         "/Length 99 0 R" + text.substr(entryEnd, dataEnd - entryEnd) +
                         "\nendstream\nendobj\n";
    const auto at = [](std::size_t offset) {
        const std::string digits = std::to_string(offset);
        return std::string(10 - digits.size(), '0') + digits + " 00000 n \n";
    };
    const std::size_t streamAt = text.size();
    text += stream;
    const std::size_t lengthAt = text.size();
    text += "99 0 obj\n" + length + "\nendobj\n";
    const std::size_t table = text.size();
    text += "xref\n" + number + " 1\n" + at(streamAt) + "99 1\n" + at(lengthAt) +
            "trailer <</Prev " + before.substr(0, before.find('\n')) + entries + "startxref\n" +
            std::to_string(table) + "\n%%EOF\n";
    EXPECT_EQ(lines(scanned(ascii(text))), fooWithProgram);
}

class WrongLengths : public testing::TestWithParam<const char*> {};

TEST_P(WrongLengths, AreReplacedByLookingForTheEndOfTheStream)
{
    auto pdf = onePage("<</Font<</F<</BaseFont/Foo/Subtype/TrueType/FontDescriptor<</FontFile2 4 0 "
                       "R>>>>>>>>");
    pdf.streamAsWritten(4, GetParam(), program).object(5, "3");
    const auto scan = scanned(pdf);
    ASSERT_EQ(scan.fonts.size(), 1U);
    ASSERT_TRUE(scan.fonts[0].data);
    // The line end before the keyword cannot be told from data.
    EXPECT_TRUE(test::asText(*scan.fonts[0].data).starts_with(program));
    EXPECT_LE(scan.fonts[0].data->size(), program.size() + 1);
}

INSTANTIATE_TEST_SUITE_P(PDFDocument, WrongLengths,
                         testing::Values("", "/Length 5", "/Length 5000", "/Length -1",
                                         "/Length 99999999999999", "/Length(x)", "/Length 99 0 R",
                                         "/Length 5 0 R"));

TEST(PDFDocument, StreamThatIsItsOwnLengthHasNoData)
{
    auto pdf = onePage("<</Font<</F<</BaseFont/Foo/Subtype/TrueType/FontDescriptor<</FontFile2 4 0 "
                       "R>>>>>>>>");
    pdf.streamAsWritten(4, "/Length 4 0 R", program);
    EXPECT_EQ(lines(scanned(pdf)), fooWithoutProgram);
}

TEST(PDFDocument, StreamKeywordMayBeFollowedByEitherLineEnd)
{
    const Bytes pdf = withProgram("", program).build();
    EXPECT_EQ(lines(scanned(replaced(pdf, "stream\nthe", "stream\r\nthe"))), fooWithProgram);
    EXPECT_EQ(lines(scanned(replaced(pdf, "stream\nthe", "stream\rthe"))), fooWithProgram);
}

TEST(PDFDocument, LineEndBehindTheStreamKeywordMayLieAcrossPieces)
{
    constexpr std::size_t piece = std::size_t{16} << 10U;
    const auto document = [](std::size_t filling) {
        auto pdf = onePage("<</Font<</F<</BaseFont/Foo/Subtype/TrueType/FontDescriptor<</FontFile2 "
                           "5 0 R>>>>>>>>");
        pdf.object(4, "(" + std::string(filling, 'x') + ")");
        return replaced(pdf.stream(5, "", program).build(), "stream\nthe", "stream\r\nthe");
    };
    const std::size_t lineEnd = test::asText(document(0)).find("stream\r\n") + 6;
    const Bytes pdf = document(piece - 1 - lineEnd);
    ASSERT_EQ(pdf[piece - 1], std::byte{'\r'});
    const test::TemporaryFolder folder;
    const auto opened = open(folder.write("book.pdf", pdf));
    const auto* opening = std::get_if<std::unique_ptr<Document>>(&opened);
    ASSERT_NE(opening, nullptr);
    EXPECT_EQ(lines(PDFFontScanner::scan(**opening)), fooWithProgram);
}

TEST(PDFDocument, StreamKeywordWithoutALineEndIsMadeUpFor)
{
    const Bytes pdf = withProgram("", program).build();
    EXPECT_EQ(lines(scanned(replaced(pdf, "stream\nthe", "stream the"))), fooWithProgram);
}

TEST(PDFDocument, StreamThatTheFileEndsBeforeHasNoData)
{
    const std::string text =
        "%PDF-1.7\n1 0 obj<</Type/Catalog/Pages 2 0 R>>endobj\n"
        "2 0 obj<</Type/Pages/Kids[3 0 R]>>endobj\n"
        "3 0 obj<</Type/Page/Resources<</Font<</F<</BaseFont/Foo/Subtype/TrueType"
        "/FontDescriptor<</FontFile2 4 0 R>>>>>>>>>>endobj\ntrailer<</Root 1 0 R>>\n"
        "4 0 obj<</Length 5>>stream";
    EXPECT_EQ(lines(scanned(ascii(text))), fooWithoutProgram);
}

TEST(PDFDocument, MissingEndOfAStreamIsMadeUpFor)
{
    const Bytes pdf = withProgram("", program).build();
    const auto scan = scanned(replaced(pdf, "\nendstream", ""));
    ASSERT_EQ(scan.fonts.size(), 1U);
    ASSERT_TRUE(scan.fonts[0].data);
    EXPECT_TRUE(test::asText(*scan.fonts[0].data).starts_with(program));
}

TEST(PDFDocument, MissingEndOfAnObjectIsMadeUpFor)
{
    Bytes pdf = withProgram("", program).build();
    for (int i = 0; i < 6; ++i)
        pdf = replaced(pdf, "\nendobj", "");
    EXPECT_EQ(lines(scanned(pdf)), fooWithProgram);
}

TEST(PDFDocument, WrongStartOfTheCrossReferenceIsSearchedFor)
{
    Bytes pdf = withProgram("", program).build();
    EXPECT_EQ(lines(scanned(replaced(pdf, "startxref\n", "startxref\n9"))), fooWithProgram);
    EXPECT_EQ(lines(scanned(replaced(pdf, "startxref\n", "startxxxx\n"))), fooWithProgram);
}

TEST(PDFDocument, WrongOffsetIsFoundByLookingThroughTheFile)
{
    // Everything behind the header is 40 bytes further than the table says.
    Bytes pdf = withProgram("", program).build();
    pdf = replaced(pdf, "1 0 obj", std::string(40, ' ') + "1 0 obj");
    EXPECT_EQ(lines(scanned(pdf)), fooWithProgram);
}

TEST(PDFDocument, SingleWrongOffsetIsFoundByLookingThroughTheFile)
{
    auto pdf = withProgram("", program);
    const std::string text = pdf.text();
    const std::size_t entry = text.find(" 00000 n ", text.find("\nxref")) - 10;
    Bytes bytes = pdf.build();
    // The font's entry, the fourth, points into another object.
    const std::size_t fourth = entry + 3 * std::size_t{20};
    for (std::size_t i = 0; i < 10; ++i)
        bytes[fourth + i] = static_cast<std::byte>(i < 8 ? '0' : '2');
    EXPECT_EQ(lines(scanned(bytes)), fooWithProgram);
}

TEST(PDFDocument, ObjectsThatNoSearchFindsHideNoOther)
{
    // More than are searched for, in front of one that is there.
    std::string fonts;
    for (int i = 0; i < 2 * Limits::repairs; ++i)
        fonts += "/F" + std::to_string(i) + " " + std::to_string(10 + i) + " 0 R";
    auto pdf = onePage("<</Font<<" + fonts + "/G 9 0 R>>>>");
    pdf.object(9, "<</BaseFont/Foo>>");
    for (int i = 0; i < 2 * Limits::repairs; ++i)
        pdf.object(10 + i, "");
    EXPECT_EQ(namesAndPages(scanned(pdf)), "Foo [1]");
}

TEST(PDFDocument, LastOfSeveralObjectsWithOneNumberCountsAfterASearch)
{
    auto pdf = withProgram("", program);
    const Bytes bytes = replaced(pdf.build(), "xref\n", "4 0 obj<</BaseFont/Newer>>endobj\nxxxx\n");
    EXPECT_EQ(namesAndPages(scanned(bytes)), "Newer [1]");
}

TEST(PDFDocument, GenerationsAreToldApart)
{
    auto pdf = onePage("<</Font<</F 4 1 R/G 5 0 R/H 5 2 R>>>>");
    pdf.object(4, "<</BaseFont/First>>", 1);
    pdf.object(5, "<</BaseFont/Second>>", 2);
    EXPECT_EQ(namesAndPages(scanned(pdf)), "First [1], Second [1]");
}

TEST(PDFDocument, ObjectOfAnotherGenerationIsAnother)
{
    // Identities must not mix up a generation with an object number.
    auto pdf = onePage("<</Font<</F 4 1 R/G 4 0 R>>>>");
    pdf.object(4, "<</BaseFont/First>>", 1);
    EXPECT_EQ(namesAndPages(scanned(pdf)), "First [1]");
}

/// The document with an update at its end: more objects, and a section of the table with entries
/// for object 4 and the ones behind it.
Bytes updated(const PDFBytes& pdf, const std::string& objects, const std::string& entries)
{
    std::string text = pdf.text();
    const std::size_t previous = text.find("xref\n0 1");
    text += objects;
    const std::size_t table = text.size();
    text += "xref\n4 " + std::to_string(entries.size() / 20) + "\n" + entries +
            "trailer\n<</Root 1 0 R/Size 7/Prev " + std::to_string(previous) + ">>\nstartxref\n" +
            std::to_string(table) + "\n%%EOF\n";
    return ascii(text);
}

TEST(PDFDocument, UpdatedObjectsReplaceTheOriginals)
{
    const auto pdf = withProgram("", program);
    std::array<char, 32> entry{};
    std::snprintf(entry.data(), entry.size(), "%010zu 00000 n \n", pdf.text().size());
    EXPECT_EQ(
        namesAndPages(scanned(updated(pdf, "4 0 obj<</BaseFont/Updated>>endobj\n", entry.data()))),
        "Updated [1]");
}

TEST(PDFDocument, ObjectsThatAnUpdateFreesAreGone)
{
    const auto pdf = withProgram("", program);
    EXPECT_EQ(namesAndPages(scanned(updated(pdf, "", "0000000000 00001 f \n"))), "");
}

TEST(PDFDocument, TableOfAHybridFileHasItsHiddenObjectsInAStream)
{
    // Readers of old see a table; the section's cross-reference stream adds what is in an object
    // stream.
    std::string text = "%PDF-1.5\n";
    std::map<int, std::size_t> offsets;
    const auto add = [&](int number, const std::string& object) {
        offsets[number] = text.size();
        text += std::to_string(number) + " 0 obj\n" + object + "\nendobj\n";
    };
    const auto field = [](std::size_t value, int digits) {
        std::array<char, 32> number{};
        std::snprintf(number.data(), number.size(), "%0*zu", digits, value);
        return std::string(number.data());
    };
    const std::string hidden = "5 0 <</BaseFont/Hidden>>";
    add(1, "<</Type/Catalog/Pages 2 0 R>>");
    add(2, "<</Type/Pages/Kids[3 0 R]>>");
    add(3, "<</Type/Page/Resources<</Font<</F 5 0 R>>>>>>");
    add(4, "<</Type/ObjStm/N 1/First 4/Length " + std::to_string(hidden.size()) + ">>stream\n" +
               hidden + "\nendstream");
    // One entry: of type 2, in object stream 4, the first one there.
    add(6, "<</Type/XRef/W[1 1 1]/Index[5 1]/Size 7/Root 1 0 R/Filter/ASCIIHexDecode/Length 7>>"
           "stream\n020400>\nendstream");
    const std::size_t table = text.size();
    text += "xref\n0 5\n0000000000 65535 f \n";
    for (int number = 1; number <= 4; ++number)
        text += field(offsets[number], 10) + " 00000 n \n";
    text += "trailer\n<</Root 1 0 R/Size 7/XRefStm " + std::to_string(offsets[6]) +
            ">>\nstartxref\n" + std::to_string(table) + "\n%%EOF\n";
    EXPECT_EQ(namesAndPages(scanned(ascii(text))), "Hidden [1]");
}

TEST(PDFDocument, CrossReferenceSectionsThatFormALoopEnd)
{
    auto pdf = withProgram("", program);
    const std::string text = pdf.text();
    const std::size_t table = text.find("xref\n0 1");
    auto looping = withProgram("", program);
    looping.trailer("/Prev " + std::to_string(table));
    EXPECT_EQ(lines(scanned(looping)), fooWithProgram);
}

TEST(PDFDocument, FlatedObjectStreamsAreRead)
{
    PDFBytes pdf;
    pdf.crossReference(CrossReference::stream);
    const std::string places = "1 0 2 30 3 62 ";
    std::string objects = "<</Type/Catalog/Pages 2 0 R>>";
    objects.resize(30, ' ');
    objects += "<</Type/Pages/Kids[3 0 R]>>";
    objects.resize(62, ' ');
    objects += "<</Type/Page/Resources<</Font<</F<</BaseFont/Foo>>>>>>>>";
    pdf.objectStreamAsWritten(4, "/Type/ObjStm/N 3/First 14/Filter/FlateDecode",
                              test::deflated(ascii(places + objects)), {1, 2, 3});
    EXPECT_EQ(namesAndPages(scanned(pdf)), "Foo [1]");
}

TEST(PDFDocument, ObjectStreamsInEncryptedDocumentsAreRead)
{
    PDFBytes pdf;
    pdf.crossReference(CrossReference::stream);
    pdf.objectStream(4, {{1, "<</Type/Catalog/Pages 2 0 R>>"},
                         {2, "<</Type/Pages/Kids[3 0 R]>>"},
                         {3, "<</Type/Page/Resources<</Font<</F<</BaseFont/Foo>>>>>>>>"}});
    EXPECT_EQ(namesAndPages(scanned(encrypted(pdf.build(), test::Encryption::aesWith256Bits, ""))),
              "Foo [1]");
}

/// A document whose page is object 3, in object stream 5, which is whatever the test makes it.
PDFBytes withPageInStream()
{
    PDFBytes pdf;
    pdf.crossReference(CrossReference::stream);
    pdf.object(1, "<</Type/Catalog/Pages 2 0 R>>").object(2, "<</Type/Pages/Kids[3 0 R]>>");
    return pdf;
}

constexpr std::string_view pageInStream =
    "3 0 <</Type/Page/Resources<</Font<</F<</BaseFont/Foo>>>>>>>>";

TEST(PDFDocument, ObjectStreamMayLackItsType)
{
    auto pdf = withPageInStream();
    pdf.objectStreamAsWritten(5, "/N 1/First 4", ascii(pageInStream), {3});
    EXPECT_EQ(namesAndPages(scanned(pdf)), "Foo [1]");
}

class BadObjectStreams : public testing::TestWithParam<const char*> {};

TEST_P(BadObjectStreams, HaveNoObjects)
{
    auto pdf = withPageInStream();
    pdf.objectStreamAsWritten(5, GetParam(), ascii(pageInStream), {3});
    const auto scan = scanned(pdf);
    EXPECT_EQ(scan.pageCount, 0);
}

INSTANTIATE_TEST_SUITE_P(PDFDocument, BadObjectStreams,
                         testing::Values("/N 1", "/First 4", "/N -1/First 4", "/N 1/First -4",
                                         "/N 1/First 4000", "/N 0/First 4", "/N(x)/First 4",
                                         "/N 1/First 4/Filter/DCTDecode",
                                         "/N 1/First 4/Filter/FlateDecode"));

TEST(PDFDocument, FiltersOfAnObjectStreamMayStandInArrays)
{
    const Bytes packed = test::asciiHex(test::deflated(test::pngUp(ascii(pageInStream), 4)));
    auto pdf = withPageInStream();
    pdf.objectStreamAsWritten(5,
                              "/N 1/First 4/Filter[/ASCIIHexDecode 6 0 R]/DecodeParms[null"
                              "<</Predictor 12/Columns 4>>]",
                              packed, {3});
    pdf.object(6, "/FlateDecode");
    EXPECT_EQ(namesAndPages(scanned(pdf)), "Foo [1]");
    auto other = withPageInStream();
    other.objectStreamAsWritten(5, "/N 1/First 4/Filter[/ASCIIHexDecode 6 0 R]", packed, {3});
    EXPECT_EQ(scanned(other).pageCount, 0);
    auto fewer = withPageInStream();
    fewer.objectStreamAsWritten(
        5, "/N 1/First 4/Filter[/ASCIIHexDecode/FlateDecode]/DecodeParms[null]",
        test::asciiHex(test::deflated(ascii(pageInStream))), {3});
    EXPECT_EQ(namesAndPages(scanned(fewer)), "Foo [1]");
}

TEST(PDFDocument, LengthOfAnObjectStreamMayBeAnObjectOfItsOwn)
{
    auto pdf = withPageInStream();
    pdf.streamAsWritten(5, "/N 1/First 4/Length 6 0 R", pageInStream).claimInStream(3, 5);
    // Without it, the end is searched for.
    EXPECT_EQ(namesAndPages(scanned(pdf)), "Foo [1]");
    auto wrong = pdf;
    wrong.object(6, "3");
    EXPECT_EQ(namesAndPages(scanned(wrong)), "Foo [1]");
    pdf.object(6, std::to_string(pageInStream.size()));
    EXPECT_EQ(namesAndPages(scanned(pdf)), "Foo [1]");
}

TEST(PDFDocument, AnnotationsMayStandInAnObjectStream)
{
    const auto found = [](PDFBytes& pdf) {
        pdf.crossReference(CrossReference::stream);
        pdf.object(1, "<</Type/Catalog/Pages 2 0 R>>").object(2, "<</Type/Pages/Kids[3 0 R]>>");
        pdf.object(3, "<</Type/Page/Annots[4 0 R 5 0 R]>>");
        pdf.stream(6, "/Resources<</Font<</F<</BaseFont/Foo>>>>>>");
        return namesAndPages(scanned(pdf));
    };
    PDFBytes shown;
    shown.objectStream(9, {{4, "<</Subtype/Link>>"}, {5, "<</AP<</N 6 0 R>>>>"}});
    EXPECT_EQ(found(shown), "Foo [1]");
    PDFBytes plain;
    plain.objectStream(9, {{4, "<</Subtype/Link>>"}, {5, "<</N 6 0 R>>"}});
    EXPECT_EQ(found(plain), "");
    PDFBytes elsewhere;
    elsewhere.objectStream(9, {{7, "<</AP<</N 6 0 R>>>>"}}).claimInStream(4, 9);
    EXPECT_EQ(found(elsewhere), "");
    PDFBytes broken;
    broken.object(9, "<<>>").claimInStream(4, 9).claimInStream(5, 9);
    EXPECT_EQ(found(broken), "");
}

TEST(PDFDocument, ElementsBehindTheEndOfAnArrayAreAbsent)
{
    const Bytes pdf = onePage("<<>>").build();
    const auto opened = open(pdf);
    const auto kids = std::get<std::unique_ptr<Document>>(opened)->pages()->array("Kids");
    ASSERT_EQ(kids->size(), 1U);
    EXPECT_NE(kids->dictionary(0), nullptr);
    EXPECT_NE(kids->dictionaryWith(0, "Resources"), nullptr);
    EXPECT_EQ(kids->dictionaryWith(0, "AP"), nullptr);
    EXPECT_EQ(kids->dictionary(1), nullptr);
    EXPECT_EQ(kids->dictionaryWith(1, "Resources"), nullptr);
}

TEST(PDFDocument, ObjectStreamClaimingMoreObjectsThanItHasGivesThoseItHas)
{
    auto pdf = withPageInStream();
    pdf.objectStreamAsWritten(5, "/N 2000000000/First 4", ascii(pageInStream), {3});
    EXPECT_EQ(namesAndPages(scanned(pdf)), "Foo [1]");
}

TEST(PDFDocument, ObjectThatIsNotInItsObjectStreamIsAbsent)
{
    auto pdf = withPageInStream();
    pdf.objectStreamAsWritten(5, "/N 1/First 4", ascii(pageInStream), {4});
    pdf.claimInStream(3, 5);
    EXPECT_EQ(scanned(pdf).pageCount, 1);
    auto other = withPageInStream();
    other.objectStreamAsWritten(5, "/N 1/First 4", ascii("4 0 <<>>"), {3});
    EXPECT_EQ(scanned(other).pageCount, 0);
}

TEST(PDFDocument, ObjectStreamThatIsNoneHasNoObjects)
{
    auto pdf = withPageInStream();
    pdf.object(5, "<</N 1/First 4>>").claimInStream(3, 5);
    EXPECT_EQ(scanned(pdf).pageCount, 0);
}

TEST(PDFDocument, ObjectStreamInsideItselfOrAnotherHasNoObjects)
{
    auto pdf = withPageInStream();
    pdf.claimInStream(3, 5).claimInStream(5, 5);
    EXPECT_EQ(scanned(pdf).pageCount, 0);
    auto circle = withPageInStream();
    circle.claimInStream(3, 5).claimInStream(5, 6).claimInStream(6, 5);
    EXPECT_EQ(scanned(circle).pageCount, 0);
}

TEST(PDFDocument, NumbersOfAnObjectStreamMayBeObjectsInTheFile)
{
    auto pdf = withPageInStream();
    pdf.object(6, "1").object(7, "4");
    pdf.objectStreamAsWritten(5, "/N 6 0 R/First 7 0 R", ascii(pageInStream), {3});
    EXPECT_EQ(namesAndPages(scanned(pdf)), "Foo [1]");
}

TEST(PDFDocument, NumbersOfAnObjectStreamInAnObjectStreamDoNotCount)
{
    auto pdf = withPageInStream();
    pdf.objectStream(8, {{6, "1"}});
    pdf.objectStreamAsWritten(5, "/N 6 0 R/First 4", ascii(pageInStream), {3});
    EXPECT_EQ(scanned(pdf).pageCount, 0);
}

TEST(PDFDocument, LastOfSeveralObjectsWithOneNumberInAnObjectStreamCounts)
{
    auto pdf = withPageInStream();
    pdf.objectStreamAsWritten(5, "/N 2/First 8",
                              ascii("3 0 3 4 <<>><</Type/Page/Resources<</Font<</F<</BaseFont/"
                                    "Foo>>>>>>>>"),
                              {3});
    EXPECT_EQ(namesAndPages(scanned(pdf)), "Foo [1]");
}

TEST(PDFDocument, FileIsReadPieceByPiece)
{
    // Larger than all the pieces that are kept, with the font at the end.
    auto pdf = onePage("<</Font<</F 9 0 R>>>>");
    pdf.stream(4, "", std::string(1 << 20, 'x'));
    pdf.object(9, "<</BaseFont/Foo/Subtype/TrueType/FontDescriptor<</FontFile2 10 0 R>>>>");
    pdf.stream(10, "", std::string(300'000, 'p'));
    const test::TemporaryFolder folder;
    const auto path = folder.write("book.pdf", pdf.build());
    const auto opened = open(path);
    const auto* document = std::get_if<std::unique_ptr<Document>>(&opened);
    ASSERT_NE(document, nullptr);
    const auto scan = PDFFontScanner::scan(**document);
    EXPECT_EQ(lines(scan), "Foo TrueType trueType [1] 300000 bytes\n");
    EXPECT_EQ(test::asText(*scan.fonts[0].data), std::string(300'000, 'p'));
}

TEST(PDFDocument, OnlyRegularFilesAreOpened)
{
    const test::TemporaryFolder folder;
    const auto error = [](const std::filesystem::path& path) {
        const auto opened = open(path);
        const auto* kind = std::get_if<Error>(&opened);
        return kind ? std::optional(*kind) : std::nullopt;
    };
    EXPECT_EQ(error(folder.path() / "missing.pdf"), Error::unreadable);
    EXPECT_EQ(error(folder.path()), Error::unreadable);
    EXPECT_EQ(error("/dev/null"), Error::unreadable);
    EXPECT_EQ(error("/dev/zero"), Error::unreadable);
    const auto pipe = folder.path() / "pipe.pdf";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(error(pipe), Error::unreadable);
    const auto file = folder.write("file.pdf", onePage("<<>>").build());
    std::filesystem::create_symlink(file, folder.path() / "link.pdf");
    EXPECT_EQ(error(folder.path() / "link.pdf"), std::nullopt);
    EXPECT_EQ(error(folder.write("empty.pdf", std::string_view())), Error::unreadable);
}

} // namespace
} // namespace quillmark::PDF
