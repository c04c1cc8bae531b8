#include "Seeds.h"

#include "support/FontBytes.h"
#include "support/FontContainers.h"
#include "support/PDFBytes.h"
#include "support/PDFEncoders.h"
#include "support/PDFEncryption.h"

#include <array>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace quillmark::fuzz {
namespace {

using test::ascii;
using test::Bytes;
using test::PDFBytes;
using CrossReference = PDFBytes::CrossReference;

Bytes trueTypeFont()
{
    return test::FontBytes()
        .face()
        .name(1, u"Seed")
        .name(6, u"Seed-Regular")
        .name(13, u"SIL Open Font License")
        .os2({.version = 4, .fsType = 4})
        .build();
}

/// A document with one font of every kind.
PDFBytes everyKind()
{
    auto pdf = test::pages({"/Resources 5 0 R/Annots[6 0 R]", "/Resources 5 0 R"});
    pdf.object(5, "<</Font<</A 10 0 R/B 11 0 R/C 12 0 R/D 13 0 R/E 14 0 R/F 15 0 R>>/XObject<</X 7 "
                  "0 R>>>>");
    pdf.object(6, "<</Subtype/Widget/AP<</N<</On 8 0 R>>>>>>");
    pdf.stream(7, "/Subtype/Form/Resources<</Font<</A 16 0 R>>/XObject<</X 7 0 R>>>>");
    pdf.stream(8, "/Subtype/Form/Resources<</Font<</A 10 0 R>>>>");
    pdf.object(10,
               "<</Subtype/TrueType/BaseFont/ABCDEF+Seed/FontDescriptor<</FontFile2 20 0 R>>>>");
    pdf.object(11, "<</Subtype/Type1/BaseFont/Bare/FontDescriptor<</FontFile3 21 0 R>>>>");
    pdf.object(12, "<</Subtype/Type1/FontDescriptor<</FontName/Old/FontFile 22 0 R>>>>");
    pdf.object(13, "<</Subtype/Type0/BaseFont/Whole/DescendantFonts[<</Subtype/CIDFontType2"
                   "/FontDescriptor<</FontFile3 23 0 R>>>>]>>");
    pdf.object(14, "<</Subtype/Type3>>");
    pdf.object(15, "<</Subtype/Type1/BaseFont/Helvetica>>");
    pdf.object(16, "<</Subtype/Type1/BaseFont/GHIJKL+Seed/FontDescriptor<</FontFile2 20 0 R>>>>");
    pdf.stream(20, "/Filter/FlateDecode", test::deflated(trueTypeFont()));
    pdf.stream(21, "/Subtype/Type1C/Filter[/ASCII85Decode/LZWDecode]",
               test::ascii85(test::lzw(test::cffProgram({"Bare", {}, "Bare", "(c) Seed", {}}))));
    pdf.stream(22, "/Filter/ASCIIHexDecode",
               test::asciiHex(test::type1Program({"Old", "Old Font", {}, "(c) Seed", {}})));
    pdf.stream(23, "/Subtype/OpenType/Filter/RunLengthDecode", test::runLength(trueTypeFont()));
    return pdf;
}

/// The same objects, those that are no streams in an object stream.
PDFBytes compressed(CrossReference crossReference)
{
    PDFBytes pdf;
    pdf.crossReference(crossReference);
    pdf.objectStream(9, {{1, "<</Type/Catalog/Pages 2 0 R>>"},
                         {2, "<</Type/Pages/Kids[3 0 R 3 0 R]/Resources 5 0 R>>"},
                         {3, "<</Type/Page/Parent 2 0 R>>"},
                         {5, "<</Font<</A 6 0 R/B<</BaseFont/Direct>>>>>>"},
                         {6, "<</Subtype/TrueType/BaseFont/Seed/FontDescriptor 7 0 R>>"},
                         {7, "<</FontFile2 8 0 R>>"}});
    pdf.stream(8, "/Filter/FlateDecode/DecodeParms<</Predictor 12/Columns 5>>",
               test::deflated(test::pngUp(trueTypeFont(), 5)));
    return pdf;
}

/// A document with one font whose program has this filter.
Bytes filtered(const std::string& streamEntries, const Bytes& data)
{
    PDFBytes pdf = test::onePage("/Font<</A 4 0 R>>");
    pdf.object(4, "<</BaseFont/Seed/FontDescriptor<</FontFile2 6 0 R>>>>");
    pdf.stream(6, streamEntries, data);
    return pdf.build();
}

void writeFilterSeeds()
{
    const Bytes font = trueTypeFont();
    const auto write = [](const char* name, const char* entries, const Bytes& data) {
        writeSeed("pdf", name, filtered(entries, data));
    };
    write("unfiltered", "", font);
    write("flate", "/Filter/FlateDecode", test::deflated(font));
    write("lzw", "/Filter/LZWDecode", test::lzw(font));
    write("lzw-late", "/Filter/LZWDecode/DecodeParms<</EarlyChange 0>>", test::lzw(font, false));
    write("hex", "/Filter/ASCIIHexDecode", test::asciiHex(font));
    write("ascii85-flate", "/Filter[/ASCII85Decode/FlateDecode]",
          test::ascii85(test::deflated(font)));
    write("run-length", "/Filter/RunLengthDecode", test::runLength(font));
    write("image", "/Filter/DCTDecode", font);

    // Those of one filter alone.
    writeSeed("flate", "font", test::deflated(font));
    writeSeed("ascii85", "font", test::ascii85(font));
    writeSeed("asciihex", "font", test::asciiHex(font));
    writeSeed("runlength", "font", test::runLength(font));
    for (const bool earlyChange : {true, false}) {
        Bytes seed = test::lzw(font, earlyChange);
        seed.insert(seed.begin(), std::byte{earlyChange ? std::uint8_t{0} : std::uint8_t{1}});
        writeSeed("lzw", earlyChange ? "early" : "late", seed);
    }
    for (const std::uint8_t predictor : std::to_array<std::uint8_t>({1, 2, 12})) {
        Bytes seed{std::byte{predictor}, std::byte{1}, std::byte{8}, std::byte{5}};
        seed.resize(seed.size() + 8);
        const Bytes rows = test::pngUp(font, 5);
        seed.insert(seed.end(), rows.begin(), rows.end());
        writeSeed("predictor", std::to_string(predictor), seed);
    }
}

} // namespace

void writePDFSeeds()
{
    writeFilterSeeds();
    const auto write = [](const char* name, const Bytes& pdf) { writeSeed("pdf", name, pdf); };
    const Bytes sound = everyKind().build();
    write("every-kind", sound);
    write("no-pages", test::pages({}).build());
    write("object-stream", compressed(CrossReference::stream).build());
    write("object-stream-flated", compressed(CrossReference::flatedStream).build());
    write("garbage-first", everyKind().garbage("leading garbage\n").build());
    write("wrong-startxref", test::replaced(sound, "startxref\n", "startxref\n9"));
    write("wrong-offsets", test::replaced(sound, "1 0 obj", "        1 0 obj"));
    write("no-endobj", test::replaced(sound, "\nendobj", ""));
    write("wrong-length", test::replaced(sound, "/Length ", "/Length 9"));
    write("cut-short", Bytes(sound.begin(), sound.begin() + 900));
    write("page-cycle", test::pages({"/Kids[2 0 R]"}, "/Parent 2 0 R").build());
    write("form-cycle", test::onePage("<</XObject 4 0 R>>")
                            .object(4, "<</X 5 0 R>>")
                            .stream(5, "/Subtype/Form/Resources<</XObject 4 0 R>>")
                            .build());
    const std::vector<std::pair<const char*, test::Encryption>> encryptions{
        {"rc4-40", test::Encryption::rc4With40Bits},
        {"rc4-128", test::Encryption::rc4With128Bits},
        {"aes-128", test::Encryption::aesWith128Bits},
        {"aes-256", test::Encryption::aesWith256Bits},
    };
    const Bytes small =
        compressed(CrossReference::table).crossReference(CrossReference::stream).build();
    for (const auto& [name, encryption] : encryptions)
        write(name, encrypted(small, encryption, ""));
    write("locked", encrypted(small, test::Encryption::aesWith256Bits, "secret"));
}

} // namespace quillmark::fuzz
