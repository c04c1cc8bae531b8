#include "HostileFiles.h"

#include "support/FontContainers.h"
#include "support/PDFEncoders.h"

#include <cstdint>
#include <string>
#include <vector>

namespace quillmark::fuzz {
namespace {

using Size = HostileFile::Size;
using test::ascii;
using test::Bytes;
using test::ByteWriter;
using test::FontBytes;

constexpr std::uint32_t mebibyte = 1U << 20U;

FontBytes sound()
{
    return FontBytes().face().name(1, u"Sound").name(6, u"Sound").os2({});
}

Bytes soundFont()
{
    return sound().build();
}

/// A `name` table of as many records as there can be, all for one string of 64 KB.
Bytes fullNameTable()
{
    ByteWriter writer;
    writer.u16(0).u16(65535).u16(0);
    for (std::uint32_t id = 0; id < 65535; ++id)
        writer.u16(3).u16(1).u16(0x409).u16(static_cast<std::uint16_t>(id)).u16(65534).u16(0);
    return writer.build();
}

Bytes recordsOverOneString()
{
    return FontBytes().face().table("name", fullNameTable()).build();
}

/// 9,999 faces that share one directory of 511 tables, each as long as the file.
Bytes facesAtOneOffset()
{
    constexpr std::uint32_t faces = 9'999;
    constexpr std::uint16_t tables = 511;
    const Bytes names = fullNameTable();
    const std::uint32_t directory = 12 + 4 * faces;
    const std::uint32_t data = directory + 12 + 16 * tables;
    const auto length = static_cast<std::uint32_t>(names.size()) + 4 * mebibyte;
    ByteWriter writer;
    writer.text("ttcf").u32(0x00010000).u32(faces);
    for (std::uint32_t i = 0; i < faces; ++i)
        writer.u32(directory);
    writer.text("OTTO").u16(tables).zeros(6);
    for (std::uint16_t i = 0; i < tables; ++i) {
        const char* tag = i == 0 ? "OS/2" : i == 1 ? "fvar" : i < 256 ? "name" : "CFF ";
        writer.text(tag).u32(0).u32(data).u32(length);
    }
    return writer.bytes(names).zeros(4 * mebibyte).build();
}

Bytes directoryBeyondTheEnd()
{
    return ByteWriter().text("ttcf").u32(0x00010000).u32(2).u32(0xFFFFFFFC).u32(0xFFFFFFFF).build();
}

Bytes numberOfFacesThatWraps()
{
    return ByteWriter().text("ttcf").u32(0x00010000).u32(0x40000001).u32(12).zeros(400).build();
}

/// Tables whose ends are back inside the file when their sum wraps at 2^32.
Bytes tablesThatWrap()
{
    auto font = sound().writer();
    for (const char* table : {"name", "OS/2"}) {
        font.overwrite32(std::string("face0.") + table + ".offset", 0xFFFFFFF0);
        font.overwrite32(std::string("face0.") + table + ".length", 0x00000100);
    }
    return font.build();
}

Bytes tableOfLengthThatWraps()
{
    auto font = sound().writer();
    return font.overwrite32("face0.name.length", 0xFFFFFFFF).build();
}

std::vector<test::TableBytes> soundTables()
{
    return test::tablesOf(sound().build());
}

Bytes woffPromisingGigabytes()
{
    auto font = test::woff(test::trueTypeVersion, soundTables());
    font.overwrite32("name.length", 0xFFFFFFFF);
    return font.build();
}

Bytes woffInflatingToGigabytes()
{
    constexpr std::size_t megabytes = 3'000;
    const Bytes bomb = test::flatedZeros(megabytes);
    auto font = test::woff(test::trueTypeVersion, {{"OS/2", test::os2Table({})}, {"name", bomb}});
    font.overwrite32("name.length", megabytes * 1'000'000);
    return font.build();
}

/// A WOFF2 file of one table with this length and this stream.
Bytes woff2(std::uint32_t length, const Bytes& stream)
{
    ByteWriter writer;
    writer.text("wOF2").text(test::trueTypeVersion).u32(0).u16(1).u16(0).u32(0xFFFFFFFF);
    writer.u32(static_cast<std::uint32_t>(stream.size())).u16(1).u16(0).zeros(20);
    writer.u8(0x05); // name
    for (unsigned shift = 28; shift > 0; shift -= 7)
        writer.u8(static_cast<std::uint8_t>(0x80U | (length >> shift & 0x7FU)));
    writer.u8(length & 0x7FU);
    return writer.bytes(stream).build();
}

Bytes woff2PromisingGigabytes()
{
    return woff2(0xFFFFFFFF, test::brotliCompressed(Bytes(100)));
}

Bytes woff2InflatingToGigabytes()
{
    constexpr std::uint32_t count = 3'000'000'000;
    return woff2(count, test::brotliZeros(count));
}

Bytes cffIndexOfThousandsInFortyBytes()
{
    return ByteWriter().u8(1).u8(0).u8(4).u8(1).u16(65535).u8(1).zeros(33).build();
}

Bytes type1OfParentheses()
{
    return ascii("%!PS-AdobeFont-1.0: Open\n/FontName /Open def\n/Notice " +
                 std::string(60'000, '('));
}

constexpr std::string_view nothing = "Holds no font that can be read";

// Without its names a font goes by the name of its file.
constexpr auto fonts = std::to_array<HostileFile>({
    {"sound.ttf", soundFont, "Sound"},
    {"records-over-one-string.ttf", recordsOverOneString, "1 row"},
    {"faces-at-one-offset.ttc", facesAtOneOffset, "2 rows", Size::large},
    {"directory-beyond-the-end.ttc", directoryBeyondTheEnd, nothing},
    {"number-of-faces-that-wraps.ttc", numberOfFacesThatWraps, nothing},
    {"tables-that-wrap.ttf", tablesThatWrap, "tables-that-wrap"},
    {"table-of-length-that-wraps.ttf", tableOfLengthThatWraps, "table-of-length-that-wraps"},
    {"promising-gigabytes.woff", woffPromisingGigabytes, "promising-gigabytes"},
    {"inflating-to-gigabytes.woff", woffInflatingToGigabytes, "inflating-to-gigabytes"},
    {"promising-gigabytes.woff2", woff2PromisingGigabytes, "promising-gigabytes"},
    {"inflating-to-gigabytes.woff2", woff2InflatingToGigabytes, "inflating-to-gigabytes"},
    {"index-of-thousands.cff", cffIndexOfThousandsInFortyBytes, nothing},
    {"parentheses.pfa", type1OfParentheses, nothing},
});

} // namespace

std::span<const HostileFile> hostileFonts()
{
    return fonts;
}

} // namespace quillmark::fuzz
