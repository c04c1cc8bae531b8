// Seeds for the harness of core/pdf: a small document of every kind.

#include "Seeds.h"

#include "support/FontBytes.h"
#include "support/FontContainers.h"
#include "support/PDFBytes.h"
#include "support/PDFEncoders.h"
#include "support/PDFEncryption.h"

#include <array>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace quillmark::fuzz {
namespace {

using test::Bytes;
using test::PDFBytes;

Bytes program()
{
    return test::FontBytes{}.face().name(1, u"Foo").name(6, u"Foo-Regular").os2({}).build();
}

/// A page with one embedded font, whose program is stream 6 with these entries.
PDFBytes embedding(std::string_view key, std::string_view streamEntries, const Bytes& data)
{
    PDFBytes pdf = test::onePage("/Font << /F1 4 0 R >>");
    pdf.object(4, "<< /Type /Font /Subtype /TrueType /BaseFont /ABCDEF+Foo-Regular "
                  "/FontDescriptor 5 0 R >>");
    pdf.object(5, "<< /Type /FontDescriptor /FontName /ABCDEF+Foo-Regular /" + std::string(key) +
                      " 6 0 R >>");
    pdf.stream(6, streamEntries, data);
    return pdf;
}

void writeFilterSeeds()
{
    const Bytes font = program();
    const auto write = [](std::string_view name, std::string_view entries, const Bytes& data) {
        writeSeed("pdf", name, embedding("FontFile2", entries, data).build());
    };
    write("unfiltered", "", font);
    write("flate", "/Filter /FlateDecode", test::deflated(font));
    write("flate-predictor", "/Filter /FlateDecode /DecodeParms << /Predictor 12 /Columns 4 >>",
          test::deflated(test::pngUp(font, 4)));
    write("lzw", "/Filter /LZWDecode", test::lzw(font));
    write("lzw-late", "/Filter /LZWDecode /DecodeParms << /EarlyChange 0 >>",
          test::lzw(font, false));
    write("hex", "/Filter /ASCIIHexDecode", test::asciiHex(font));
    write("ascii85-flate", "/Filter [/ASCII85Decode /FlateDecode]",
          test::ascii85(test::deflated(font)));
    write("run-length", "/Filter /RunLengthDecode", test::runLength(font));
    write("image", "/Filter /DCTDecode", font);
}

void writeProgramSeeds()
{
    const BareFontInfo info{"ABCDEF+Foo", "Foo Bold", "Foo", "Notice", "Copyright"};
    writeSeed("pdf", "cff",
              embedding("FontFile3", "/Subtype /Type1C", test::cffProgram(info)).build());
    writeSeed("pdf", "opentype", embedding("FontFile3", "/Subtype /OpenType", program()).build());
    writeSeed("pdf", "type1", embedding("FontFile", "", test::type1Program(info)).build());

    PDFBytes composite = test::onePage("/Font << /F1 4 0 R /F2 7 0 R >>");
    composite.object(4, "<< /Subtype /Type0 /BaseFont /Foo /DescendantFonts [5 0 R] >>");
    composite.object(5, "<< /Subtype /CIDFontType2 /FontDescriptor << /FontFile2 6 0 R >> >>");
    composite.stream(6, "", program());
    composite.object(7, "<< /Subtype /Type3 /FontDescriptor << /FontName /Drawn >> >>");
    writeSeed("pdf", "type0-and-type3", composite.build());
}

void writeStructureSeeds()
{
    writeSeed("pdf", "no-pages", test::pages({}).build());
    writeSeed(
        "pdf", "inherited",
        test::pages({"", ""}, "/Resources << /Font << /F1 << /BaseFont /Foo >> >> >>").build());

    PDFBytes forms =
        test::onePage("/XObject << /X1 4 0 R >>", "/Annots [<< /AP << /N << /On 5 0 R >> >> >>]");
    forms.stream(4, "/Subtype /Form /Resources << /XObject << /Self 4 0 R >> /Font << /F1 << "
                    "/BaseFont /In#20Form >> >> >>");
    forms.stream(5, "/Resources << /Font << /F1 << /BaseFont /Field >> >> >>");
    writeSeed("pdf", "forms-and-fields", forms.build());

    PDFBytes cycle;
    cycle.object(1, "<< /Type /Catalog /Pages 2 0 R >>");
    cycle.object(2, "<< /Type /Pages /Kids [2 0 R 3 0 R] /Count 9 /Parent 2 0 R >>");
    cycle.object(3, "<< /Type /Page /Parent 2 0 R >>");
    writeSeed("pdf", "cycle", cycle.build());

    for (const auto& [name, kind] :
         {std::pair{"xref-stream", PDFBytes::CrossReference::stream},
          std::pair{"xref-flated-stream", PDFBytes::CrossReference::flatedStream}}) {
        PDFBytes packed = test::onePage("/Font << /F1 4 0 R >>");
        packed.crossReference(kind);
        packed.objectStream(6, {{4, "<< /BaseFont /Packed /FontDescriptor 5 0 R >>"},
                                {5, "<< /FontName /Packed >>"}});
        writeSeed("pdf", name, packed.build());
    }
}

void writeEncryptedSeeds()
{
    using test::Encryption;
    const Bytes pdf = embedding("FontFile2", "", program()).build();
    constexpr std::array kinds{
        std::pair{"rc4-40", Encryption::rc4With40Bits},
        std::pair{"rc4-128", Encryption::rc4With128Bits},
        std::pair{"aes-128", Encryption::aesWith128Bits},
        std::pair{"aes-256", Encryption::aesWith256Bits},
    };
    for (const auto& [name, encryption] : kinds)
        writeSeed("pdf", name, test::encrypted(pdf, encryption, ""));
    writeSeed("pdf", "locked", test::encrypted(pdf, Encryption::aesWith256Bits, "secret"));
}

void writeDamagedSeeds()
{
    const Bytes pdf = embedding("FontFile2", "", program()).build();
    writeSeed("pdf", "truncated", std::span(pdf).first(pdf.size() * 2 / 3));
    writeSeed("pdf", "bad-startxref", test::replaced(pdf, "startxref\n", "startxref\n9"));
    writeSeed("pdf", "no-endobj", test::replaced(pdf, "endobj", "endoxx"));
}

} // namespace

void writePDFSeeds()
{
    writeFilterSeeds();
    writeProgramSeeds();
    writeStructureSeeds();
    writeEncryptedSeeds();
    writeDamagedSeeds();
}

} // namespace quillmark::fuzz
