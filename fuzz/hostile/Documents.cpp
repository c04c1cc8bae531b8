#include "HostileFiles.h"

#include "support/FontContainers.h"
#include "support/PDFBytes.h"
#include "support/PDFEncoders.h"

#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

namespace quillmark::fuzz {
namespace {

using Size = HostileFile::Size;
using test::ascii;
using test::Bytes;
using test::ByteWriter;
using test::onePage;
using test::pages;
using test::PDFBytes;
using CrossReference = PDFBytes::CrossReference;

std::string reference(int number)
{
    return std::to_string(number) + " 0 R ";
}

std::string fontNamed(std::string_view name)
{
    return "<</Font<</F<</Subtype/TrueType/BaseFont/" + std::string(name) + ">>>>>>";
}

/// A document whose only font, Foo, has this program.
Bytes withProgram(std::string_view key, std::string_view entries, const Bytes& program)
{
    auto pdf = onePage("<</Font<</F 4 0 R>>>>");
    pdf.object(4, "<</Subtype/TrueType/BaseFont/Foo/FontDescriptor<</" + std::string(key) +
                      " 6 0 R>>>>");
    pdf.stream(6, entries, program);
    return pdf.build();
}

// Streams that unpack to far more than they are.

Bytes bombOfOneFilter()
{
    return withProgram("FontFile2", "/Filter/FlateDecode", test::flatedZeros(3'000));
}

Bytes bombOfTwoFilters()
{
    return withProgram("FontFile2", "/Filter[/FlateDecode/FlateDecode]",
                       test::deflated(test::flatedZeros(20'000)));
}

Bytes bombOfTenFilters()
{
    Bytes data = test::flatedZeros(20'000);
    std::string filters;
    for (int i = 0; i < 9; ++i) {
        data = test::deflated(data);
        filters += "/FlateDecode";
    }
    return withProgram("FontFile2", "/Filter[" + filters + "/FlateDecode]", data);
}

Bytes bombOfRuns()
{
    // Each layer makes 64 bytes of one.
    Bytes data = ByteWriter().zeros(2'000'000).build();
    for (std::size_t i = 0; i < data.size(); i += 2)
        data[i] = std::byte{0x81};
    return withProgram("FontFile2", "/Filter[/RunLengthDecode/RunLengthDecode/RunLengthDecode]",
                       data);
}

Bytes crossReferenceBomb()
{
    const Bytes entries = test::deflated(test::flatedZeros(3'000));
    std::string text = "%PDF-1.7\n1 0 obj<</Type/Catalog/Pages 2 0 R>>endobj\n"
                       "2 0 obj<</Type/Pages/Kids[3 0 R]>>endobj\n"
                       "3 0 obj<</Type/Page/Resources" +
                       fontNamed("Foo") + ">>endobj\n";
    const std::size_t start = text.size();
    text += "4 0 obj<</Type/XRef/Root 1 0 R/W[1 0 0]/Size 2147483647/Filter[/FlateDecode"
            "/FlateDecode]/Length " +
            std::to_string(entries.size()) + ">>stream\n" + std::string(test::asText(entries)) +
            "\nendstream endobj\ntrailer<</Root 1 0 R>>\nstartxref\n" + std::to_string(start) +
            "\n%%EOF\n";
    return ascii(text);
}

Bytes objectStreamBomb()
{
    auto pdf = onePage("<</Font<</F<</BaseFont/Foo>>/G 4 0 R>>>>");
    pdf.crossReference(CrossReference::stream);
    pdf.objectStreamAsWritten(5, "/Type/ObjStm/N 1/First 10/Filter/FlateDecode",
                              test::flatedZeros(3'000), {4});
    return pdf.build();
}

Bytes objectStreamOfMillionsOfMembers()
{
    auto pdf = onePage("<</Font<</F<</BaseFont/Foo>>/G 4 0 R>>>>");
    pdf.crossReference(CrossReference::stream);
    pdf.objectStreamAsWritten(5, "/Type/ObjStm/N 2147483647/First 2147483647", ascii("4 0 "), {4});
    return pdf.build();
}

Bytes predictorOfWideRows(std::string_view filter, const Bytes& data)
{
    return withProgram("FontFile2",
                       "/Filter/" + std::string(filter) +
                           "/DecodeParms<</Predictor 12/Columns 1073741824/Colors 32"
                           "/BitsPerComponent 16>>",
                       data);
}

Bytes flatePredictor()
{
    return predictorOfWideRows("FlateDecode", test::deflated(Bytes(100'000)));
}

Bytes lzwPredictor()
{
    return predictorOfWideRows("LZWDecode", test::lzw(Bytes(100'000)));
}

/// The other predictor, which adds to the left neighbour.
Bytes additivePredictor()
{
    return withProgram("FontFile2",
                       "/Filter/FlateDecode/DecodeParms<</Predictor 2/Columns 1073741824/Colors 32"
                       "/BitsPerComponent 16>>",
                       test::deflated(Bytes(100'000)));
}

Bytes cffIndexOfThousandsInFortyBytes()
{
    return withProgram("FontFile3", "/Subtype/Type1C",
                       ByteWriter().u8(1).u8(0).u8(4).u8(1).u16(65535).u8(1).zeros(33).build());
}

Bytes type1OfParentheses()
{
    return withProgram("FontFile", "",
                       ascii("%!PS-AdobeFont-1.0: Open\n/FontName /Open def\n/Notice " +
                             std::string(60'000, '(')));
}

// Structures without an end.

constexpr int depth = 100'000;

Bytes deepPageTree()
{
    PDFBytes pdf;
    pdf.object(1, "<</Type/Catalog/Pages 2 0 R>>");
    for (int i = 0; i < depth; ++i)
        pdf.object(2 + i, "<</Type/Pages/Kids[" + reference(3 + i) + "]>>");
    pdf.object(2 + depth, "<</Type/Page/Resources" + fontNamed("Bottom") + ">>");
    return pdf.build();
}

Bytes pageTreeInItself()
{
    PDFBytes pdf;
    pdf.object(1, "<</Type/Catalog/Pages 2 0 R>>");
    pdf.object(2, "<</Type/Pages/Kids[3 0 R 2 0 R 4 0 R]>>");
    pdf.object(3, "<</Type/Pages/Kids[4 0 R 2 0 R 3 0 R]>>");
    pdf.object(4, "<</Type/Page/Resources" + fontNamed("Foo") + ">>");
    return pdf.build();
}

/// Billions of pages: thousands of nodes that share one list.
Bytes sharedListOfPages()
{
    PDFBytes pdf;
    pdf.object(1, "<</Type/Catalog/Pages 2 0 R>>");
    std::string nodes;
    std::string kids;
    for (int i = 0; i < 20'000; ++i)
        nodes += reference(10 + i);
    for (int i = 0; i < 1'000'000; ++i)
        kids += "3 0 R ";
    pdf.object(2, "<</Type/Pages/Kids[" + nodes + "]>>");
    pdf.object(3, "<</Type/Page>>");
    pdf.object(4, "[" + kids + "]");
    for (int i = 0; i < 20'000; ++i)
        pdf.object(10 + i, "<</Type/Pages/Kids 4 0 R>>");
    return pdf.build();
}

Bytes longParentChain()
{
    PDFBytes pdf;
    pdf.object(1, "<</Type/Catalog/Pages 2 0 R>>");
    std::string kids;
    for (int i = 0; i < 1'000; ++i)
        kids += "3 0 R ";
    pdf.object(2, "<</Type/Pages/Kids[" + kids + "]>>");
    pdf.object(3, "<</Type/Page/Parent 4 0 R>>");
    for (int i = 0; i < depth; ++i)
        pdf.object(4 + i, "<</Parent " + reference(5 + i) + ">>");
    pdf.object(4 + depth, "<</Resources" + fontNamed("Far") + ">>");
    return pdf.build();
}

Bytes parentsInACircle()
{
    PDFBytes pdf;
    pdf.object(1, "<</Type/Catalog/Pages 2 0 R>>");
    pdf.object(2, "<</Type/Pages/Kids[3 0 R]/Parent 3 0 R>>");
    pdf.object(3, "<</Type/Page/Parent 2 0 R>>");
    return pdf.build();
}

Bytes deepForms()
{
    auto pdf = onePage("<</Font<</F<</BaseFont/Top>>>>/XObject<</X 6 0 R>>>>");
    for (int i = 0; i < depth; ++i)
        pdf.stream(6 + i, "/Subtype/Form/Resources<</XObject<</X " + reference(7 + i) + ">>>>");
    pdf.stream(6 + depth, "/Subtype/Form/Resources" + fontNamed("Bottom"));
    return pdf.build();
}

Bytes formsInACircle()
{
    auto pdf = onePage("<</XObject<</X 6 0 R>>>>");
    for (int i = 0; i < 1'000; ++i)
        pdf.stream(6 + i, "/Subtype/Form/Resources<</XObject<</X " +
                              reference(6 + (i + 1) % 1'000) + "/Y " + reference(6 + i) +
                              ">>/Font<</F" + "<</BaseFont/Foo>>>>>>");
    return pdf.build();
}

/// A direct dictionary of resources whose form has it for its own by way of the page.
Bytes dictionaryInItself()
{
    PDFBytes pdf;
    pdf.object(1, "<</Type/Catalog/Pages 2 0 R>>");
    pdf.object(2, "<</Type/Pages/Kids[3 0 R]>>");
    pdf.object(3, "<</Type/Page/Resources<</Font 3 0 R/BaseFont/Foo/XObject<</A 4 0 R/B 3 0 R>>"
                  "/Resources 3 0 R>>/XObject 3 0 R>>");
    pdf.stream(4, "/Subtype/Form/Resources<</XObject<</A 4 0 R/B<</C 4 0 R/Resources 4 0 R>>>>"
                  "/Font<</F<</BaseFont/Bar/DescendantFonts[4 0 R]/FontDescriptor 4 0 R>>>>>>");
    return pdf.build();
}

// Documents of many parts.

constexpr int many = 3'000;

Bytes pagesSharingFonts()
{
    std::string fonts;
    PDFBytes pdf = pages(std::vector<std::string>(many), "/Resources<</Font 3003 0 R>>");
    for (int i = 0; i < many; ++i) {
        fonts += "/F" + std::to_string(i) + ' ' + reference(4000 + i);
        pdf.object(4000 + i, "<</Subtype/TrueType/BaseFont/N" + std::to_string(i) + ">>");
    }
    pdf.object(3003, "<<" + fonts + ">>");
    return pdf.build();
}

/// The same with resources of its own for each page.
Bytes pagesOfTheirOwnSharingFonts()
{
    std::string fonts;
    PDFBytes pdf = pages(std::vector<std::string>(many, "/Resources<</Font 3003 0 R>>"));
    for (int i = 0; i < many; ++i) {
        fonts += "/F" + std::to_string(i) + ' ' + reference(4000 + i);
        pdf.object(4000 + i, "<</Subtype/TrueType/BaseFont/N" + std::to_string(i) + ">>");
    }
    pdf.object(3003, "<<" + fonts + ">>");
    return pdf.build();
}

Bytes fiftyThousandPages()
{
    return pages(std::vector<std::string>(50'000), "/Resources" + fontNamed("Shared")).build();
}

Bytes millionAnnotations()
{
    std::string annotations;
    for (int i = 0; i < 1'000'000; ++i)
        annotations += "5 0 R ";
    auto pdf = pages({"/Annots 4 0 R"});
    pdf.object(4, "[" + annotations + "]");
    pdf.object(5, "<</Subtype/Widget/AP<</N 6 0 R>>>>");
    pdf.stream(6, "/Subtype/Form/Resources" + fontNamed("Foo"));
    return pdf.build();
}

/// The same with a dictionary for each, which are an object of their own.
Bytes millionAnnotationObjects()
{
    constexpr int count = 1'000'000;
    constexpr int inOneStream = 50'000;
    PDFBytes pdf;
    pdf.crossReference(CrossReference::flatedStream);
    pdf.object(1, "<</Type/Catalog/Pages 2 0 R>>");
    std::string kids;
    for (int stream = 0; stream < count / inOneStream; ++stream) {
        std::vector<std::pair<int, std::string>> members;
        std::string annotations;
        for (int i = 0; i < inOneStream; ++i) {
            const int number = 1'000 + stream * inOneStream + i;
            members.emplace_back(number, "<</AP<</N 4 0 R>>>>");
            annotations += reference(number);
        }
        pdf.objectStream(100 + stream, members);
        pdf.object(200 + stream, "<</Type/Page/Annots[" + annotations + "]>>");
        kids += reference(200 + stream);
    }
    pdf.object(2, "<</Type/Pages/Kids[" + kids + "]>>");
    pdf.stream(4, "/Subtype/Form/Resources" + fontNamed("Foo"));
    return pdf.build();
}

// What the syntax allows without a limit. Foo stands behind it in each of these.

Bytes behind(std::string_view value)
{
    return onePage("<</Before " + std::string(value) + "/Font<</F<</BaseFont/Foo>>>>>>").build();
}

std::string repeated(std::string_view text, std::size_t count)
{
    std::string all;
    all.reserve(text.size() * count);
    for (std::size_t i = 0; i < count; ++i)
        all += text;
    return all;
}

Bytes nestedArrays()
{
    return behind(std::string(depth, '[') + std::string(depth, ']'));
}

Bytes nestedDictionaries()
{
    return behind(repeated("<</A", depth) + " 1" + repeated(">>", depth));
}

Bytes openArrays()
{
    return behind(std::string(5'000'000, '['));
}

Bytes nestedStrings()
{
    return behind(std::string(1'000'000, '(') + std::string(1'000'000, ')'));
}

Bytes longNumbers()
{
    return behind("[" + std::string(1'000'000, '9') + " -" + std::string(1'000'000, '0') + "1 ." +
                  std::string(1'000'000, '3') + " --++5 1e400 99999999999999999999]");
}

Bytes longName()
{
    return behind("/" + std::string(2'000'000, 'N'));
}

Bytes escapedFontName()
{
    return onePage("<</Font<</F<</BaseFont/" + repeated("#41", 1'000'000) + ">>>>>>").build();
}

Bytes longHexString()
{
    return behind("<" + std::string(4'000'000, 'f') + ">");
}

Bytes longComment()
{
    return behind("%" + std::string(4'000'000, '%') + "\nnull");
}

Bytes widths()
{
    std::string numbers;
    for (int i = 0; i < 1'000'000; ++i)
        numbers += std::to_string(i % 1000) + ' ';
    auto pdf = onePage("<</Font<</F 4 0 R>>>>");
    pdf.object(4, "<</Subtype/Type0/BaseFont/Wide/DescendantFonts[<</Subtype/CIDFontType2/W[0[" +
                      numbers + "]]>>]>>");
    return pdf.build();
}

/// As many as no font has: 80 MB of them.
Bytes tooManyWidths()
{
    auto pdf = onePage("<</Font<</F 4 0 R>>>>");
    pdf.object(4, "<</Subtype/Type0/BaseFont/Wide/DescendantFonts[5 0 R]>>");
    pdf.object(5, "<</Subtype/CIDFontType2/W[0[" + repeated("500 ", 20'000'000) + "]]>>");
    return pdf.build();
}

Bytes longTrailer()
{
    std::string text = onePage("<<>>").text();
    // Names without a letter, each of which takes a hundred times its text.
    text.insert(text.rfind(">>"), "/W[" + std::string(80'000'000, '/') + "]");
    return ascii(text);
}

Bytes widthsOfThousandsOfFonts()
{
    std::string fonts;
    for (int i = 0; i < 5'000; ++i)
        fonts +=
            "/F" + std::to_string(i) + "<</Subtype/Type0/BaseFont/Wide/DescendantFonts[4 0 R]>>";
    auto pdf = onePage("<</Font<<" + fonts + ">>>>");
    pdf.object(4, "<</Subtype/CIDFontType2/W[0[" + repeated("500 ", 200'000) + "]]>>");
    return pdf.build();
}

Bytes chainOfReferences()
{
    auto pdf = onePage("<</Font<</F<</BaseFont/Foo>>/G 4 0 R>>>>");
    for (int i = 0; i < depth; ++i)
        pdf.object(4 + i, reference(5 + i));
    pdf.object(4 + depth, "<</BaseFont/Bottom>>");
    return pdf.build();
}

Bytes circleOfReferences()
{
    auto pdf = onePage("<</Font<</F<</BaseFont/Foo>>/G 4 0 R>>>>");
    pdf.object(4, "5 0 R").object(5, "4 0 R");
    return pdf.build();
}

/// A document with so many updates behind it, each of which changes the name of its font.
Bytes updates(int count, bool isCircle)
{
    std::string text = onePage("<</Font<</F 4 0 R>>>>").object(4, "<</BaseFont/First>>").text();
    std::size_t previous = std::stoul(text.substr(text.rfind("startxref") + 10));
    const std::size_t original = previous;
    for (int i = 0; i < count; ++i) {
        const std::size_t object = text.size();
        text += "4 0 obj<</Subtype/TrueType/BaseFont/" +
                (i == count - 1 ? std::string("Last") : "N" + std::to_string(i)) + ">>endobj\n";
        const std::size_t here = text.size();
        char entry[32];
        std::snprintf(entry, sizeof entry, "%010zu 00000 n \n", object);
        text += "xref\n4 1\n" + std::string(entry) + "trailer<</Root 1 0 R/Size 5/Prev " +
                std::to_string(previous) + ">>\nstartxref\n" + std::to_string(here) + "\n%%EOF\n";
        previous = here;
    }
    if (isCircle) {
        // The first table has the last one before it.
        const std::size_t trailer = text.find("trailer", original);
        text.insert(text.find(">>", trailer), "/Prev " + std::to_string(previous + 16));
    }
    return ascii(text);
}

Bytes tenThousandUpdates()
{
    return updates(10'000, false);
}

Bytes updatesInACircle()
{
    return updates(3, true);
}

constexpr auto documents = std::to_array<HostileFile>({
    {"bomb-of-one-filter.pdf", bombOfOneFilter, "1 page: Foo trueType 1", Size::large},
    {"bomb-of-two-filters.pdf", bombOfTwoFilters, "1 page: Foo trueType 1", Size::large},
    {"bomb-of-ten-filters.pdf", bombOfTenFilters, "1 page: Foo trueType 1", Size::large},
    {"bomb-of-runs.pdf", bombOfRuns, "1 page: Foo trueType 1", Size::large},
    {"cross-reference-bomb.pdf", crossReferenceBomb, "1 page: Foo notEmbedded 1"},
    {"object-stream-bomb.pdf", objectStreamBomb, "1 page: Foo notEmbedded 1"},
    {"object-stream-of-millions.pdf", objectStreamOfMillionsOfMembers, "1 page: Foo notEmbedded 1"},
    {"predictor-behind-flate.pdf", flatePredictor, "1 page: Foo trueType 1"},
    {"predictor-behind-lzw.pdf", lzwPredictor, "1 page: Foo trueType 1"},
    {"additive-predictor.pdf", additivePredictor, "1 page: Foo trueType 1"},
    {"index-of-thousands.pdf", cffIndexOfThousandsInFortyBytes, "1 page: Foo cff 1"},
    {"parentheses.pdf", type1OfParentheses, "1 page: Open type1 1 with facts"},
    {"deep-page-tree.pdf", deepPageTree, "1 page: Bottom notEmbedded 1", Size::large},
    {"page-tree-in-itself.pdf", pageTreeInItself, "2 pages: Foo notEmbedded 1-2"},
    {"shared-list-of-pages.pdf", sharedListOfPages, "4999995 pages", Size::large},
    {"long-parent-chain.pdf", longParentChain, "1000 pages", Size::large},
    {"parents-in-a-circle.pdf", parentsInACircle, "1 page"},
    {"deep-forms.pdf", deepForms, "1 page: Bottom notEmbedded 1, Top notEmbedded 1", Size::large},
    {"forms-in-a-circle.pdf", formsInACircle, "1 page: Foo notEmbedded 1"},
    {"dictionary-in-itself.pdf", dictionaryInItself,
     "1 page: (unnamed font) notEmbedded 1, Bar notEmbedded 1, Foo notEmbedded 1"},
    {"pages-sharing-fonts.pdf", pagesSharingFonts, "3000 pages: 3000 rows", Size::large},
    {"pages-of-their-own-sharing-fonts.pdf", pagesOfTheirOwnSharingFonts, "3000 pages: 3000 rows",
     Size::large},
    {"fifty-thousand-pages.pdf", fiftyThousandPages, "50000 pages: Shared notEmbedded 1-50000",
     Size::large},
    {"million-annotations.pdf", millionAnnotations, "1 page: Foo notEmbedded 1", Size::large},
    {"million-annotation-objects.pdf", millionAnnotationObjects, "20 pages: Foo notEmbedded 1-20",
     Size::large},
    {"nested-arrays.pdf", nestedArrays, "0 pages"},
    {"nested-dictionaries.pdf", nestedDictionaries, "0 pages"},
    {"open-arrays.pdf", openArrays, "0 pages"},
    {"nested-strings.pdf", nestedStrings, "1 page: Foo notEmbedded 1"},
    {"long-numbers.pdf", longNumbers, "1 page: Foo notEmbedded 1"},
    {"long-name.pdf", longName, "1 page: Foo notEmbedded 1"},
    {"escaped-font-name.pdf", escapedFontName, "1 page: (unnamed font) notEmbedded 1"},
    {"long-hex-string.pdf", longHexString, "1 page: Foo notEmbedded 1"},
    {"long-comment.pdf", longComment, "1 page: Foo notEmbedded 1"},
    {"widths.pdf", widths, "1 page: Wide notEmbedded 1", Size::large},
    {"too-many-widths.pdf", tooManyWidths, "1 page: Wide notEmbedded 1", Size::large},
    {"long-trailer.pdf", longTrailer, "long-trailer.pdf couldn't be opened as a PDF.", Size::large},
    {"widths-of-thousands-of-fonts.pdf", widthsOfThousandsOfFonts, "1 page: Wide notEmbedded 1",
     Size::large},
    {"chain-of-references.pdf", chainOfReferences, "1 page: Foo notEmbedded 1", Size::large},
    {"circle-of-references.pdf", circleOfReferences, "1 page: Foo notEmbedded 1"},
    {"ten-thousand-updates.pdf", tenThousandUpdates, "1 page: Last notEmbedded 1"},
    {"updates-in-a-circle.pdf", updatesInACircle, "1 page: Last notEmbedded 1"},
});

} // namespace

std::span<const HostileFile> hostileDocuments()
{
    return documents;
}

} // namespace quillmark::fuzz
