// Documents that nobody would make: small files that ask for gigabytes or for hours, and structures
// without an end.

#include "DocumentFixture.h"
#include "pdf/Limits.h"
#include "support/FontContainers.h"
#include "support/PDFBytes.h"
#include "support/PDFEncoders.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <ctime>
#include <numeric>
#include <string>

#include <sys/resource.h>

namespace quillmark::PDF {
namespace {

using test::ascii;
using test::Bytes;
using test::lines;
using test::namesAndPages;
using test::onePage;
using test::openingError;
using test::pages;
using test::PDFBytes;
using test::scanned;
using CrossReference = PDFBytes::CrossReference;

/// Fails a test that takes far longer than it has to, even when it is built for debugging and the
/// machine is busy: time of this thread only.
class TimeLimit {
public:
    explicit TimeLimit(double seconds) : m_end(now() + seconds) {}
    ~TimeLimit() { EXPECT_LT(now(), m_end); }
    TimeLimit(const TimeLimit&) = delete;
    TimeLimit& operator=(const TimeLimit&) = delete;

private:
    static double now()
    {
        timespec time{};
        ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
    }

    double m_end;
};

#if defined(__SANITIZE_ADDRESS__)
constexpr std::size_t memoryFactor = 3; // freed memory is kept for a while
#elif defined(__SANITIZE_THREAD__)
constexpr std::size_t memoryFactor = 5; // each byte has a shadow of several
#else
constexpr std::size_t memoryFactor = 1;
#endif
constexpr std::size_t littleMemory = memoryFactor * 200'000'000;

/// The most memory that this process has had so far, in bytes.
std::size_t mostMemory()
{
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return static_cast<std::size_t>(usage.ru_maxrss) * 1024;
}

std::string reference(int number)
{
    return std::to_string(number) + " 0 R";
}

std::string fontNamed(const std::string& name)
{
    return "<</Font<</F<</BaseFont/" + name + ">>>>>>";
}

/// An embedded font called Foo, in objects 4 to 6, with this program.
PDFBytes withProgram(std::string_view streamEntries, const Bytes& program)
{
    auto pdf = onePage("<</Font<</F 4 0 R>>>>");
    pdf.object(4, "<</Subtype/TrueType/BaseFont/Foo/FontDescriptor 5 0 R>>");
    pdf.object(5, "<</FontFile2 6 0 R>>");
    pdf.stream(6, streamEntries, program);
    return pdf;
}

TEST(HostileDocument, TenGigabytesBehindTwoLayersOfFlateContributeNothing)
{
    const Bytes twice = test::deflated(test::flatedZeros(10'000));
    ASSERT_LT(twice.size(), 200'000U);
    const Bytes pdf = withProgram("/Filter[/FlateDecode/FlateDecode]", twice).build();
    const std::size_t before = mostMemory();
    const TimeLimit limit(5);
    EXPECT_EQ(lines(scanned(pdf)), "Foo TrueType trueType [1]\n");
    EXPECT_LT(mostMemory() - before, littleMemory);
}

TEST(HostileDocument, StreamOfTheLargestSizeIsReadAndALargerOneIsNot)
{
    const auto line = [](std::size_t size) {
        return lines(scanned(withProgram("/Filter/FlateDecode", test::deflated(Bytes(size)))));
    };
    EXPECT_EQ(line(Limits::streamBytes), "Foo TrueType trueType [1] 67108864 bytes\n");
    EXPECT_EQ(line(Limits::streamBytes + 1), "Foo TrueType trueType [1]\n");
}

TEST(HostileDocument, ProgramsOfOneDocumentShareABudget)
{
    // Six programs of 60 MiB: four fit into the budget.
    constexpr std::size_t size = 60 * Limits::mebibyte;
    const Bytes program = test::deflated(Bytes(size));
    std::string fonts;
    for (int i = 0; i < 6; ++i)
        fonts += "/F" + std::to_string(i) + "<</BaseFont/Font" + std::to_string(i) +
                 "/FontDescriptor<</FontFile2 " + reference(10 + i) + ">>>>";
    auto pdf = onePage("<</Font<<" + fonts + ">>>>");
    for (int i = 0; i < 6; ++i)
        pdf.stream(10 + i, "/Filter/FlateDecode", program);
    const auto scan = scanned(pdf);
    ASSERT_EQ(scan.fonts.size(), 6U);
    for (std::size_t i = 0; i < 6; ++i)
        EXPECT_EQ(scan.fonts[i].data != nullptr, i < 4) << i;
}

TEST(HostileDocument, HundredThousandNestedFormsAreWalked)
{
    constexpr int depth = 100'000;
    auto pdf = pages({"/Resources 5 0 R", "/Resources 5 0 R"});
    pdf.object(5, "<</Font<</F<</BaseFont/Top>>>>/XObject<</X 6 0 R>>>>");
    for (int i = 0; i < depth; ++i)
        pdf.stream(6 + i, "/Subtype/Form/Resources<</XObject<</X " + reference(7 + i) + ">>>>");
    pdf.stream(6 + depth, "/Subtype/Form/Resources" + fontNamed("Bottom"));
    const TimeLimit limit(60);
    EXPECT_EQ(namesAndPages(scanned(pdf)), "Top [1-2], Bottom [1]");
}

TEST(HostileDocument, DictionariesOfFormsThatAreAlsoFontsOfTheNextFormsAreWalked)
{
    // In each dictionary of forms, one form leads to the next dictionary, and in that, one has the
    // dictionary before it for its fonts: a chain of containers as long as the document likes.
    constexpr int depth = 10'000;
    auto pdf = onePage("<</XObject 4 0 R>>");
    for (int i = 0; i < depth; ++i) {
        const int dictionary = 4 + 3 * i;
        pdf.object(dictionary, "<</A " + reference(dictionary + 1) + "/B " +
                                   reference(dictionary + 2) + "/C<</BaseFont/Foo>>>>");
        pdf.stream(dictionary + 1,
                   "/Subtype/Form/Resources<</XObject " + reference(dictionary + 3) + ">>");
        pdf.stream(dictionary + 2, "/Subtype/Form/Resources<</Font " +
                                       reference(i > 0 ? dictionary - 3 : dictionary) + ">>");
    }
    pdf.object(4 + 3 * depth, "<<>>");
    const TimeLimit limit(60);
    EXPECT_EQ(namesAndPages(scanned(pdf)), "Foo [1]");
}

TEST(HostileDocument, NestedFormsThatAllShareOneDictionaryAreWalked)
{
    // Each form's resources are new and lead back to the dictionary that all forms are in.
    constexpr int forms = 20'000;
    std::string entries;
    for (int i = 0; i < forms; ++i)
        entries += "/X" + std::to_string(i) + ' ' + reference(5 + i);
    auto pdf = onePage("<</XObject 4 0 R>>");
    pdf.object(4, "<</" + std::string(1'900, 'A') + " 1>>");
    for (int i = 0; i < forms; ++i)
        pdf.stream(5 + i, "/Subtype/Form/Resources<</XObject 4 0 R>>");
    pdf.stream(5 + forms, "");
    const TimeLimit limit(30);
    EXPECT_EQ(namesAndPages(scanned(pdf)), "");
}

TEST(HostileDocument, FiftyThousandPagesAreCounted)
{
    constexpr int count = 50'000;
    std::string kids;
    for (int i = 0; i < count; ++i)
        kids += reference(4 + i) + ' ';
    PDFBytes pdf;
    pdf.object(1, "<</Type/Catalog/Pages 2 0 R>>");
    pdf.object(2, "<</Type/Pages/Kids[" + kids + "]/Resources" + fontNamed("Shared") + ">>");
    for (int i = 0; i < count; ++i)
        pdf.object(4 + i, "<</Type/Page/Parent 2 0 R>>");
    const TimeLimit limit(30);
    const auto scan = scanned(pdf);
    EXPECT_EQ(scan.pageCount, count);
    EXPECT_EQ(namesAndPages(scan), "Shared [1-50000]");
}

/// A document that lists one page `count` times.
PDFBytes repeatedPage(int count, const std::string& pageEntries)
{
    std::string kids;
    for (int i = 0; i < count; ++i)
        kids += "3 0 R ";
    PDFBytes pdf;
    pdf.object(1, "<</Type/Catalog/Pages 2 0 R>>");
    pdf.object(2, "<</Type/Pages/Kids[" + kids + "]>>");
    pdf.object(3, "<</Type/Page" + pageEntries + ">>");
    return pdf;
}

std::string manyFonts(int count)
{
    std::string fonts;
    for (int i = 0; i < count; ++i)
        fonts += "/F" + std::to_string(i) + "<</BaseFont/N" + std::to_string(i) + ">>";
    return "<</Font<<" + fonts + ">>>>";
}

TEST(HostileDocument, FontsWithAllTheirPagesShareABudget)
{
    // 20,000 pages with 1,000 fonts each would be 20 million numbers.
    const auto scan = scanned(repeatedPage(20'000, "/Resources" + manyFonts(1'000)));
    ASSERT_EQ(scan.fonts.size(), 1'000U);
    std::size_t numbers = 0;
    for (const auto& font : scan.fonts) {
        ASSERT_FALSE(font.pages.empty());
        EXPECT_EQ(font.pages.front(), 1);
        numbers += font.pages.size();
    }
    EXPECT_EQ(scan.fonts.front().pages.size(), 20'000U);
    EXPECT_EQ(scan.fonts.back().pages.size(), 1U);
    EXPECT_EQ(numbers, Limits::fontPages + 200);
}

/// A dictionary of fonts of one name, each with a subset prefix of its own.
std::string manySubsets(int first, int count, const std::string& name)
{
    std::string fonts;
    for (int i = first; i < first + count; ++i) {
        std::string prefix;
        for (int rest = i; prefix.size() < 6; rest /= 26)
            prefix += static_cast<char>('A' + rest % 26);
        fonts += "/F" + std::to_string(i) + "<</BaseFont/" + prefix + "+" + name + ">>";
    }
    return "<</Font<<" + fonts + ">>>>";
}

TEST(HostileDocument, NamesOfAFontsSubsetsShareABudget)
{
    // The names are as long as names may be.
    const std::string longest(Limits::nameBytes - 7, 'x');
    constexpr std::size_t fitting = Limits::fontNames / (Limits::nameBytes + 32);
    constexpr int perPage = 6'000;
    ASSERT_LT(fitting, 3U * perPage);
    const auto scan = scanned(pages({
        "/Resources" + manySubsets(0, perPage, longest),
        "/Resources" + manySubsets(perPage, perPage, longest),
        "/Resources" + manySubsets(2 * perPage, perPage, longest),
        "/Resources" + manySubsets(0, 2, std::string(longest.size(), 'y')),
    }));
    ASSERT_EQ(scan.fonts.size(), 2U);
    EXPECT_EQ(scan.fonts[0].pdfNames.size(), fitting);
    EXPECT_EQ(scan.fonts[0].pages.size(), 3U);
    EXPECT_EQ(scan.fonts[1].pdfNames.size(), 1U) << "the one that is met first";
    EXPECT_TRUE(scan.fonts[1].subset);
}

TEST(HostileDocument, PagesAreGatheredFromAnnotationsOnlySoOften)
{
    // Every other page of 20,000 has the same annotations, each with states of its own that lead to
    // one appearance; the last one leads to another.
    const auto pages = [](int annotations) {
        std::string kids;
        for (int i = 0; i < 10'000; ++i)
            kids += "3 0 R 4 0 R ";
        std::string annotated;
        for (int i = 0; i < annotations; ++i)
            annotated += "<</AP<</N<</S 6 0 R>>>>>>";
        PDFBytes pdf;
        pdf.object(1, "<</Type/Catalog/Pages 2 0 R>>");
        pdf.object(2, "<</Type/Pages/Kids[" + kids + "]>>");
        pdf.object(3, "<</Type/Page/Annots 5 0 R>>").object(4, "<</Type/Page>>");
        pdf.object(5, "[" + annotated + "<</AP<</N<</S 7 0 R>>>>>>]");
        pdf.stream(6, "/Resources" + fontNamed("Often"));
        pdf.stream(7, "/Resources" + fontNamed("Once"));
        std::string counts;
        for (const auto& font : scanned(pdf).fonts)
            counts += font.baseName + " " + std::to_string(font.pages.size()) + " ";
        return counts;
    };
    EXPECT_EQ(pages(10), "Often 10000 Once 10000 ");
    EXPECT_EQ(pages(1'700), "Often 1 Once 1 ");
}

TEST(HostileDocument, FontsOverTheirLimitAreLeftOut)
{
    const auto count = [](std::size_t fonts) {
        return scanned(onePage(manyFonts(static_cast<int>(fonts)))).fonts.size();
    };
    EXPECT_EQ(count(Limits::fonts), Limits::fonts);
    EXPECT_EQ(count(Limits::fonts + 1), Limits::fonts);
}

TEST(HostileDocument, AnnotationsSharedByManyPagesAreGoneThroughOnce)
{
    std::string annotations;
    for (int i = 0; i < 10'000; ++i)
        annotations += "5 0 R ";
    auto pdf = repeatedPage(20'000, "/Annots 4 0 R");
    pdf.object(4, "[" + annotations + "]");
    pdf.object(5, "<</AP<</N 6 0 R>>>>");
    pdf.stream(6, "/Resources" + fontNamed("Foo"));
    const TimeLimit limit(20);
    EXPECT_EQ(namesAndPages(scanned(pdf)), "Foo [1-20000]");
}

TEST(HostileDocument, AppearancesThatAreEachTheFontsOfTheOneBeforeAreWalked)
{
    // Met from the last to the first, each would pass its pages on to all those behind it.
    constexpr int count = 100'000;
    const auto states = [](int i) { return 4 + 2 * i; };
    std::string annotations;
    for (int i = count; i-- > 0;)
        annotations += "<</AP<</N " + reference(states(i)) + ">>>>";
    auto pdf = pages({"/Annots[" + annotations + "]"});
    for (int i = 0; i < count; ++i) {
        pdf.object(states(i), "<</On " + reference(states(i) + 1) + ">>");
        pdf.stream(states(i) + 1, "/Resources<</Font " + reference(states(i + 1)) + ">>");
    }
    pdf.object(states(count), "<</F<</BaseFont/Last>>>>");
    const TimeLimit limit(60);
    EXPECT_EQ(namesAndPages(scanned(pdf)), "Last [1]");
}

TEST(HostileDocument, FontsSharedByManyResourcesAreGoneThroughOnce)
{
    // 5,000 pages whose own resources all have the same 5,000 fonts.
    std::string kids;
    for (int i = 0; i < 5'000; ++i)
        kids += "<</Type/Page/Resources<</Font 3 0 R>>>>";
    std::string fonts;
    for (int i = 0; i < 5'000; ++i)
        fonts += "/F" + std::to_string(i) + " 4 0 R";
    PDFBytes pdf;
    pdf.object(1, "<</Type/Catalog/Pages 2 0 R>>");
    pdf.object(2, "<</Type/Pages/Kids[" + kids + "]>>");
    pdf.object(3, "<<" + fonts + ">>").object(4, "<</BaseFont/Foo>>");
    const TimeLimit limit(10);
    EXPECT_EQ(namesAndPages(scanned(pdf)), "Foo [1-5000]");
}

/// A page with resources in object 3, which stands in an object stream behind padding.
PDFBytes paddedObjectStream(std::size_t size)
{
    const std::string resources = fontNamed("Foo");
    std::string text = "4 0 ";
    text.resize(size - resources.size(), ' ');
    text += resources;
    PDFBytes pdf;
    pdf.crossReference(CrossReference::stream);
    pdf.object(1, "<</Type/Catalog/Pages 2 0 R>>").object(2, "<</Type/Pages/Kids[3 0 R]>>");
    pdf.object(3, "<</Type/Page/Resources 4 0 R>>");
    const std::string first = std::to_string(size - resources.size());
    pdf.objectStreamAsWritten(5, "/N 1/First " + first + "/Filter/FlateDecode",
                              test::deflated(ascii(text)), {4});
    return pdf;
}

TEST(HostileDocument, ObjectStreamOfTheLargestSizeIsReadAndALargerOneIsNot)
{
    EXPECT_EQ(namesAndPages(scanned(paddedObjectStream(Limits::objectStream))), "Foo [1]");
    EXPECT_EQ(namesAndPages(scanned(paddedObjectStream(Limits::objectStream + 1))), "");
}

TEST(HostileDocument, ObjectStreamsThatAreNotKeptAreUnpackedAgain)
{
    // Five of them are more than are kept; the last page asks for something from the first.
    static_assert(5 * (std::size_t{15} << 20U) > Limits::objectStreamCache);
    PDFBytes pdf;
    pdf.crossReference(CrossReference::stream);
    pdf.object(1, "<</Type/Catalog/Pages 2 0 R>>");
    pdf.object(2, "<</Type/Pages/Kids[10 0 R 11 0 R 12 0 R 13 0 R 14 0 R]>>");
    for (int i = 0; i < 5; ++i) {
        std::string text = std::to_string(10 + i) + " 0 " + std::to_string(20 + i) + " 100 ";
        text.resize(20, ' ');
        text += "<</Type/Page/Resources<</Font<</F<</BaseFont/N" + std::to_string(i) + ">>" +
                (i == 4 ? "/L 20 0 R" : "") + ">>>>>>";
        text.resize(20 + 100, ' ');
        text += "<</BaseFont/Late>>";
        text.resize(std::size_t{15} << 20U, ' ');
        pdf.objectStreamAsWritten(30 + i, "/N 2/First 20/Filter/FlateDecode",
                                  test::deflated(ascii(text)), {10 + i, 20 + i});
    }
    const std::size_t before = mostMemory();
    EXPECT_EQ(namesAndPages(scanned(pdf)), "N0 [1], N1 [2], N2 [3], N3 [4], N4 [5], Late [5]");
    EXPECT_LT(mostMemory() - before, littleMemory);
}

TEST(HostileDocument, ObjectOfTheLargestSizeIsReadAndALargerOneIsNot)
{
    const auto found = [](std::size_t size) {
        const std::string start = "3 0 obj\n";
        const std::string end = "/Type/Page/Resources" + fontNamed("Foo") + ">>";
        std::string text = "<<";
        text.resize(size - start.size() - end.size(), ' ');
        PDFBytes pdf;
        pdf.object(1, "<</Type/Catalog/Pages 2 0 R>>").object(2, "<</Type/Pages/Kids[3 0 R]>>");
        pdf.object(3, text + end);
        return namesAndPages(scanned(pdf));
    };
    EXPECT_EQ(found(Limits::objectText), "Foo [1]");
    EXPECT_EQ(found(Limits::objectText + 1), "");
}

TEST(HostileDocument, ObjectThatIsTooLargeIsNotReadAgain)
{
    // As a page it is asked for 100,000 times; what else there is still counts.
    std::string kids = "4 0 R ";
    for (int i = 0; i < 100'000; ++i)
        kids += "3 0 R ";
    PDFBytes pdf;
    pdf.object(1, "<</Type/Catalog/Pages 2 0 R>>");
    pdf.object(2, "<</Type/Pages/Kids[" + kids + "4 0 R]>>");
    pdf.object(3, "<<" + std::string(Limits::objectText, ' ') + ">>");
    pdf.object(4, "<</Type/Page/Resources" + fontNamed("Foo") + ">>");
    const TimeLimit limit(10);
    EXPECT_EQ(namesAndPages(scanned(pdf)), "Foo [1-2]");
}

/// Far more numbers than one object may have.
std::string tooManyNumbers()
{
    std::string numbers;
    while (numbers.size() < 4 * Limits::objectText)
        numbers += "500 500 500 500 ";
    return numbers;
}

TEST(HostileDocument, ObjectThatIsTooLargeIsNotHandedToLibqpdf)
{
    auto pdf = onePage("<</Font<</F 4 0 R>>>>");
    pdf.object(4, "<</Subtype/Type0/BaseFont/Wide/DescendantFonts[5 0 R]>>");
    pdf.object(5, "<</Subtype/CIDFontType2/W[0[" + tooManyNumbers() + "]]>>");
    const Bytes bytes = pdf.build();
    const std::size_t before = mostMemory();
    EXPECT_EQ(namesAndPages(scanned(bytes)), "Wide [1]");
    EXPECT_LT(mostMemory() - before, littleMemory);
}

TEST(HostileDocument, TrailerThatIsTooLargeIsNotRead)
{
    // Names without a letter take libqpdf the most memory.
    const auto error = [](std::size_t names) {
        std::string text = onePage("<<>>").text();
        text.insert(text.rfind(">>"), "/W[" + std::string(names, '/') + "]");
        return openingError(ascii(text));
    };
    const std::size_t before = mostMemory();
    EXPECT_EQ(error(Limits::foreignObjectText - 1'000), std::nullopt);
    EXPECT_EQ(error(2 * Limits::foreignObjectText), PDFCheckError::Kind::unreadable);
    EXPECT_EQ(error(4 * Limits::objectText), PDFCheckError::Kind::unreadable);
    EXPECT_LT(mostMemory() - before, 2 * littleMemory);
}

/// Pages that begin inside one another's strings, none of which ends within a mebibyte, and then
/// one with a font.
Bytes overlappingPages(int count)
{
    std::string kids;
    std::string nested = "(";
    for (int i = 0; i < count; ++i) {
        kids += reference(10 + i) + ' ';
        nested += std::to_string(10 + i) + " 0 obj (";
    }
    PDFBytes pdf;
    pdf.object(1, "<</Type/Catalog/Pages 2 0 R>>");
    pdf.object(2, "<</Type/Pages/Kids[" + kids + "4 0 R]>>");
    pdf.object(4, "<</Type/Page/Resources" + fontNamed("Foo") + ">>");
    for (int i = 0; i < count; ++i)
        pdf.object(10 + i, "null");
    pdf.object(3, nested + std::string(Limits::mebibyte, 'x'));
    std::string text = pdf.text();
    // The entries of these pages point into that string.
    const auto entry = [](std::size_t offset) {
        char digits[16];
        std::snprintf(digits, sizeof digits, "%010zu", offset);
        return std::string(digits);
    };
    const std::size_t string = text.find("\n3 0 obj");
    const std::size_t table = text.rfind("\nxref");
    for (int i = 0; i < count; ++i) {
        const std::string header = std::to_string(10 + i) + " 0 obj";
        const std::string right = entry(text.find('\n' + header) + 1);
        text.replace(text.find(right, table), 10, entry(text.find('(' + header, string) + 1));
    }
    return ascii(text);
}

TEST(HostileDocument, UnreadableObjectsThatOverlapAreReadOnlySoOften)
{
    // The budget of a document of one megabyte is 144.
    EXPECT_EQ(namesAndPages(scanned(overlappingPages(100))), "Foo [1]");
    EXPECT_EQ(namesAndPages(scanned(overlappingPages(150))), "");
}

TEST(HostileDocument, AnnotationsAreLookedThroughForAppearancesOnlySoOften)
{
    // One long annotation is listed again and again, in front of a page with a font.
    const auto found = [](int count) {
        std::string annotations;
        for (int i = 0; i < count; ++i)
            annotations += "4 0 R ";
        PDFBytes pdf;
        pdf.object(1, "<</Type/Catalog/Pages 2 0 R>>");
        pdf.object(2, "<</Type/Pages/Kids[3 0 R 5 0 R]>>");
        pdf.object(3, "<</Type/Page/Annots[" + annotations + "]>>");
        pdf.object(4, "<</" + std::string(1'900, 'A') + " 1>>");
        pdf.object(5, "<</Type/Page/Resources" + fontNamed("Foo") + ">>");
        return namesAndPages(scanned(pdf));
    };
    EXPECT_EQ(found(10'000), "Foo [2]");
    EXPECT_EQ(found(80'000), "");
}

TEST(HostileDocument, ObjectsThatTakeFarMoreMemoryThanTextShareABudget)
{
    // The nodes of this tree are open at the same time, each with 3 million integers in it, which
    // take 48 MB: 580 MB in all.
    constexpr int nodes = 12;
    std::string junk;
    for (int i = 0; i < 3'000'000; ++i)
        junk += "0 ";
    PDFBytes pdf;
    pdf.crossReference(CrossReference::stream);
    pdf.object(1, "<</Type/Catalog/Pages 10 0 R>>");
    for (int i = 0; i < nodes; ++i) {
        const std::string node = std::to_string(10 + i) + " 0 ";
        pdf.objectStreamAsWritten(
            100 + i, "/N 1/First " + std::to_string(node.size()) + "/Filter/FlateDecode",
            test::deflated(ascii(node + "<</Kids[" + reference(11 + i) + "]/Junk[" + junk + "]>>")),
            {10 + i});
    }
    pdf.object(10 + nodes, "<</Type/Page>>");
    const Bytes bytes = pdf.build();
    const std::size_t before = mostMemory();
    EXPECT_EQ(scanned(bytes).pageCount, 0);
    EXPECT_LT(mostMemory() - before, 2 * littleMemory);
}

/// A page with forms nested in one another, `depth` of them, each among so many XObjects.
PDFBytes formsAmong(int objects, int depth)
{
    std::string entries;
    for (int i = 1; i < objects; ++i)
        entries += "/X" + std::to_string(i) + " 3 0 R";
    auto pdf = onePage("4 0 R");
    for (int i = 0; i < depth; ++i) {
        pdf.object(4 + 2 * i, "<</XObject<</A " + reference(5 + 2 * i) + entries + ">>>>");
        pdf.stream(5 + 2 * i, "/Subtype/Form/Resources " + reference(6 + 2 * i));
    }
    pdf.object(4 + 2 * depth, fontNamed("Innermost"));
    return pdf;
}

TEST(HostileDocument, XObjectsOfNestedFormsAreLimited)
{
    constexpr int objects = Limits::pendingObjects / 10;
    EXPECT_EQ(namesAndPages(scanned(formsAmong(objects, 10))), "Innermost [1]");
    EXPECT_EQ(namesAndPages(scanned(formsAmong(objects, 11))), "");
}

TEST(HostileDocument, NameOfTheLargestSizeIsReadAndALargerOneIsNot)
{
    const auto line = [](std::size_t size) {
        return lines(scanned(
            onePage("<</Font<</F<</Subtype/Type1/BaseFont/" + std::string(size, 'A') + ">>>>>>")));
    };
    EXPECT_EQ(line(Limits::nameBytes),
              std::string(Limits::nameBytes, 'A') + " Type1 notEmbedded [1]\n");
    EXPECT_EQ(line(Limits::nameBytes + 1), "(unnamed font) Type1 notEmbedded [1]\n");
}

TEST(HostileDocument, StreamWithTheLargestDictionaryHasDataAndOneWithALargerHasNone)
{
    const auto line = [](std::size_t size) {
        const std::string start = "6 0 obj\n<<";
        const std::string end = "/Length 11>>\nstream";
        auto pdf = onePage("<</Font<</F 4 0 R>>>>");
        pdf.object(4, "<</Subtype/TrueType/BaseFont/Foo/FontDescriptor<</FontFile2 6 0 R>>>>");
        pdf.streamAsWritten(6, std::string(size - start.size() - end.size(), ' ') + "/Length 11",
                            "the program");
        return lines(scanned(pdf));
    };
    EXPECT_EQ(line(Limits::streamDictionaryText), "Foo TrueType trueType [1] 11 bytes\n");
    EXPECT_EQ(line(Limits::streamDictionaryText + 1), "Foo TrueType trueType [1]\n");
}

TEST(HostileDocument, ObjectsThatOverlapAreReadOnlySoOften)
{
    // 20,000 fonts that are all the same long array in an object stream.
    constexpr int count = 20'000;
    std::string fonts;
    std::string places;
    std::vector<int> members;
    for (int i = 0; i < count; ++i) {
        fonts += "/F" + std::to_string(i) + ' ' + reference(10 + i);
        places += std::to_string(10 + i) + " 0 ";
        members.push_back(10 + i);
    }
    std::string array = "[";
    while (array.size() < 1'000'000)
        array += "1 1 1 1 1 1 1 1 ";
    auto pdf = onePage("<</Font<<" + fonts + ">>>>");
    pdf.crossReference(CrossReference::stream);
    pdf.objectStreamAsWritten(5,
                              "/N " + std::to_string(count) + "/First " +
                                  std::to_string(places.size()) + "/Filter/FlateDecode",
                              test::deflated(ascii(places + array + "]")), members);
    const TimeLimit limit(20);
    EXPECT_EQ(namesAndPages(scanned(pdf)), "");
}

TEST(HostileDocument, StreamsWithoutAnEndAreSearchedForOnlySoOften)
{
    // Each of these streams has a wrong length, and nothing behind it ends a stream.
    constexpr int count = 3'000;
    std::string fonts;
    for (int i = 0; i < count; ++i)
        fonts += "/F" + std::to_string(i) + "<</BaseFont/N" + std::to_string(i) +
                 "/FontDescriptor<</FontFile2 " + reference(10 + i) + ">>>>";
    auto pdf = onePage("<</Font<<" + fonts + ">>>>");
    for (int i = 0; i < count; ++i)
        pdf.streamAsWritten(10 + i, "/Length 999999999", "e en end ende");
    pdf.stream(10 + count, "", std::string(300'000, 'e'));
    std::string text = pdf.text();
    for (std::size_t at = text.find("endstream"); at != std::string::npos;
         at = text.find("endstream", at))
        text.replace(at, 9, "xndstream");
    for (std::size_t at = text.find("endobj"); at != std::string::npos;
         at = text.find("endobj", at))
        text.replace(at, 6, "xndobj");
    const TimeLimit limit(60);
    EXPECT_EQ(scanned(ascii(text)).fonts.size(), static_cast<std::size_t>(count));
}

TEST(HostileDocument, CrossReferenceStreamThatUnpacksToMillionsOfEntriesIsGivenUp)
{
    // 500 MB of entries of one byte each, for a file of half a megabyte.
    const Bytes entries = test::deflated(test::flatedZeros(512));
    std::string text = "%PDF-1.7\n1 0 obj<</Type/Catalog/Pages 2 0 R>>endobj\n"
                       "2 0 obj<</Type/Pages/Kids[3 0 R]>>endobj\n"
                       "3 0 obj<</Type/Page/Resources" +
                       fontNamed("Foo") + ">>endobj\n";
    const std::size_t start = text.size();
    text += "4 0 obj<</Type/XRef/Root 1 0 R/W[1 0 0]/Size 512000000/Filter[/FlateDecode"
            "/FlateDecode]/Length " +
            std::to_string(entries.size()) + ">>stream\n" + std::string(test::asText(entries)) +
            "\nendstream endobj\ntrailer<</Root 1 0 R>>\nstartxref\n" + std::to_string(start) +
            "\n%%EOF\n";
    const std::size_t before = mostMemory();
    const TimeLimit limit(10);
    // The objects are found by looking through the file.
    EXPECT_EQ(namesAndPages(scanned(ascii(text))), "Foo [1]");
    EXPECT_LT(mostMemory() - before, littleMemory);
}

TEST(HostileDocument, CrossReferenceStreamIsReadWithinItsBudgetAndNotBeyond)
{
    // All entries but those of the first three objects say that there is none.
    const auto fonts = [](std::int64_t beyondLimit) {
        std::string objects = "%PDF-1.7\n";
        std::string entries(4, '\0');
        const auto add = [&](const std::string& object) {
            entries += '\1';
            for (const unsigned shift : {16U, 8U, 0U})
                entries += static_cast<char>((objects.size() >> shift) & 0xFFU);
            objects += object;
        };
        add("1 0 obj<</Type/Catalog/Pages 2 0 R>>endobj\n");
        add("2 0 obj<</Type/Pages/Kids[3 0 R]>>endobj\n");
        add("3 0 obj<</Type/Page/Resources" + fontNamed("Foo") + ">>endobj\n");
        // Only who looks through the whole file finds this one, and takes it for the page.
        objects += "3 0 obj<</Type/Page/Resources" + fontNamed("Found") + ">>endobj\n";
        constexpr std::size_t fileSize = 8192;
        const auto size = static_cast<std::size_t>(
            static_cast<std::int64_t>(Limits::crossReferenceBytes(fileSize)) + beyondLimit);
        entries.resize(size, '\0');
        const Bytes packed = test::deflated(ascii(entries));
        std::string text =
            objects + "4 0 obj<</Type/XRef/Root 1 0 R/W[1 3 0]/Size " + std::to_string(size / 4) +
            "/Filter/FlateDecode/Length " + std::to_string(packed.size()) + ">>stream\n" +
            std::string(test::asText(packed)) + "\nendstream endobj\ntrailer<</Root 1 0 R>>\n";
        const std::string end = "startxref\n" + std::to_string(objects.size()) + "\n%%EOF\n";
        EXPECT_LT(text.size() + end.size(), fileSize);
        text.resize(fileSize - end.size(), ' ');
        return namesAndPages(scanned(ascii(text + end)));
    };
    // The packed bytes count as well, which are not so many.
    EXPECT_EQ(fonts(-4096), "Foo [1]");
    EXPECT_EQ(fonts(4), "Found [1]");
}

TEST(HostileDocument, CrossReferenceStreamReadFromManySectionsIsReadOnlySoOften)
{
    // Each of 3,000 sections refers to the same long cross-reference stream.
    std::string text = "%PDF-1.7\n1 0 obj<</Type/Catalog/Pages 2 0 R>>endobj\n"
                       "2 0 obj<</Type/Pages/Kids[3 0 R]>>endobj\n"
                       "3 0 obj<</Type/Page/Resources" +
                       fontNamed("Foo") + ">>endobj\n";
    const std::size_t stream = text.size();
    constexpr std::size_t entries = 300'000;
    text += "4 0 obj<</Type/XRef/Root 1 0 R/W[1 0 0]/Size " + std::to_string(entries) + "/Length " +
            std::to_string(entries) + ">>stream\n" + std::string(entries, '\0') +
            "\nendstream endobj\n";
    std::size_t previous = 0;
    for (int i = 0; i < 3'000; ++i) {
        const std::size_t here = text.size();
        text += "xref\n0 0\ntrailer<</Root 1 0 R/Size 5/XRefStm " + std::to_string(stream);
        if (previous > 0) text += "/Prev " + std::to_string(previous);
        text += ">>\n";
        previous = here;
    }
    text += "startxref\n" + std::to_string(previous) + "\n%%EOF\n";
    const TimeLimit limit(60);
    EXPECT_EQ(namesAndPages(scanned(ascii(text))), "Foo [1]");
}

TEST(HostileDocument, DeepNestingInTheTrailerEnds)
{
    const std::string deep = std::string(100'000, '[') + std::string(100'000, ']');
    auto pdf = onePage(fontNamed("Foo"));
    pdf.trailer("/Info" + deep);
    const auto opened = open(pdf.build());
    EXPECT_FALSE(opened.valueless_by_exception());
}

TEST(HostileDocument, SizeAndCountsThatLieDoNotMatter)
{
    auto pdf = onePage(fontNamed("Foo"));
    pdf.trailer("/Size 2147483647");
    EXPECT_EQ(namesAndPages(scanned(pdf)), "Foo [1]");
    const Bytes many = test::replaced(pdf.build(), "/Count 1", "/Count 2147483647");
    const auto scan = scanned(many);
    EXPECT_EQ(scan.pageCount, 1);
}

TEST(HostileDocument, CrossReferenceStreamWithSenselessFieldsIsGivenUp)
{
    for (const char* fields :
         {"/W[8 8 8]/Size 9", "/W[9 1 1]/Size 9", "/W[1 -1 1]/Size 9", "/W[0 0 0]/Size 9",
          "/W[1 1 1]/Size 2000000000", "/W[1 1 1]/Index[0 2000000000]/Size 9",
          "/W[1 1 1]/Index[2147483647 2]/Size 9", "/W[1 1 1]/Index[0]/Size 9",
          "/W[1 1 1]/Index[-5 2]/Size 9", "/W[1 1]/Size 9", "/W 1/Size 9"}) {
        std::string text = "%PDF-1.7\n1 0 obj<</Type/Catalog/Pages 2 0 R>>endobj\n"
                           "2 0 obj<</Type/Pages/Kids[3 0 R]>>endobj\n"
                           "3 0 obj<</Type/Page/Resources" +
                           fontNamed("Foo") + ">>endobj\n";
        const std::size_t start = text.size();
        text += "4 0 obj<</Type/XRef/Root 1 0 R" + std::string(fields) + "/Length 24>>stream\n" +
                std::string(24, '\1') + "\nendstream endobj\ntrailer<</Root 1 0 R>>\nstartxref\n" +
                std::to_string(start) + "\n%%EOF\n";
        const TimeLimit limit(5);
        const auto opened = open(ascii(text));
        EXPECT_FALSE(opened.valueless_by_exception()) << fields;
    }
}

} // namespace
} // namespace quillmark::PDF
