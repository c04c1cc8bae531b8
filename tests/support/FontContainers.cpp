#include "support/FontContainers.h"

#include "fontfile/ByteReader.h"

#include <algorithm>
#include <array>
#include <map>
#include <memory>
#include <stdexcept>
#include <utility>

#include <brotli/encode.h>
#include <zlib.h>

namespace quillmark::test {
namespace {

std::uint32_t size32(std::span<const std::byte> bytes)
{
    return static_cast<std::uint32_t>(bytes.size());
}

Bytes compressed(std::span<const std::byte> bytes, int windowBits)
{
    z_stream stream{};
    if (::deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, windowBits, 8,
                       Z_DEFAULT_STRATEGY) != Z_OK)
        throw std::runtime_error("zlib");
    Bytes result(::deflateBound(&stream, bytes.size()));
    // zlib only reads the input, but its interface does not say so.
    stream.next_in = const_cast<Bytef*>(reinterpret_cast<const Bytef*>(bytes.data()));
    stream.avail_in = static_cast<uInt>(bytes.size());
    stream.next_out = reinterpret_cast<Bytef*>(result.data());
    stream.avail_out = static_cast<uInt>(result.size());
    const int status = ::deflate(&stream, Z_FINISH);
    result.resize(stream.total_out);
    ::deflateEnd(&stream);
    if (status != Z_STREAM_END) throw std::runtime_error("zlib");
    return result;
}

void padTo4(ByteWriter& writer)
{
    writer.zeros((4 - writer.size() % 4) % 4);
}

/// UIntBase128 of WOFF 2.0.
void base128(ByteWriter& writer, std::uint32_t value)
{
    int bytes = 1;
    while (bytes < 5 && value >> (7U * static_cast<unsigned>(bytes)) != 0)
        ++bytes;
    for (int i = bytes - 1; i >= 0; --i) {
        const std::uint32_t group = value >> (7U * static_cast<unsigned>(i)) & 0x7FU;
        writer.u8(static_cast<std::uint8_t>(group | (i > 0 ? 0x80U : 0U)));
    }
}

/// 255UInt16 of WOFF 2.0, in each of its forms where it is the shortest.
void packed16(ByteWriter& writer, std::uint16_t value)
{
    if (value < 253)
        writer.u8(static_cast<std::uint8_t>(value));
    else if (value < 506)
        writer.u8(255).u8(static_cast<std::uint8_t>(value - 253));
    else if (value < 762)
        writer.u8(254).u8(static_cast<std::uint8_t>(value - 506));
    else
        writer.u8(253).u16(value);
}

/// The tags that WOFF 2.0 writes as a number, in the order of the numbers.
constexpr std::array<std::string_view, 63> knownTags{
    "cmap", "head", "hhea", "hmtx", "maxp", "name", "OS/2", "post", "cvt ", "fpgm", "glyf",
    "loca", "prep", "CFF ", "VORG", "EBDT", "EBLC", "gasp", "hdmx", "kern", "LTSH", "PCLT",
    "VDMX", "vhea", "vmtx", "BASE", "GDEF", "GPOS", "GSUB", "EBSC", "JSTF", "MATH", "CBDT",
    "CBLC", "COLR", "CPAL", "SVG ", "sbix", "acnt", "avar", "bdat", "bloc", "bsln", "cvar",
    "fdsc", "feat", "fmtx", "fvar", "gvar", "hsty", "just", "lcar", "mort", "morx", "opbd",
    "prop", "trak", "Zapf", "Silf", "Glat", "Gloc", "Feat", "Sill",
};

void woff2Record(ByteWriter& writer, const WOFF2Values::Table& table)
{
    constexpr std::uint32_t tagFollows = 63;
    const bool isGlyphs = table.tag == "glyf" || table.tag == "loca";
    const std::uint32_t version = table.transformation.value_or(isGlyphs ? 3 : 0);
    const auto known = std::ranges::find(knownTags, table.tag);
    const std::uint32_t number = known == knownTags.end() || table.spellTag
                                     ? tagFollows
                                     : static_cast<std::uint32_t>(known - knownTags.begin());
    writer.u8(static_cast<std::uint8_t>(version << 6U | number));
    if (number == tagFollows) writer.text(table.tag);
    const std::uint32_t length = table.declaredLength.value_or(size32(table.bytes));
    if (table.transformation) base128(writer, table.originalLength);
    base128(writer, length);
}

/// The encryption of Type 1 programs and of their glyphs (Adobe Type 1 Font Format, chapter 7),
/// after the four bytes that a reader throws away.
Bytes encrypted(std::span<const std::byte> plain, std::uint16_t key)
{
    Bytes bytes(4 + plain.size());
    std::ranges::copy(plain, bytes.begin() + 4);
    for (std::byte& byte : bytes) {
        const auto cipher = static_cast<std::uint8_t>(std::to_integer<unsigned>(byte) ^ key >> 8U);
        key = static_cast<std::uint16_t>((cipher + key) * 52845U + 22719U);
        byte = static_cast<std::byte>(cipher);
    }
    return bytes;
}

void pfbSegment(ByteWriter& writer, std::uint8_t kind, std::span<const std::byte> bytes)
{
    writer.u8(0x80).u8(kind);
    for (unsigned shift = 0; shift < 32; shift += 8) // lower bytes first
        writer.u8(static_cast<std::uint8_t>(size32(bytes) >> shift & 0xFFU));
    writer.bytes(bytes);
}

} // namespace

Bytes deflated(std::span<const std::byte> bytes)
{
    return compressed(bytes, 15);
}

Bytes gzipped(std::span<const std::byte> bytes)
{
    return compressed(bytes, 15 + 16);
}

Bytes brotliCompressed(std::span<const std::byte> bytes)
{
    Bytes result(std::max<std::size_t>(::BrotliEncoderMaxCompressedSize(bytes.size()), 16));
    std::size_t size = result.size();
    if (::BrotliEncoderCompress(2, BROTLI_DEFAULT_WINDOW, BROTLI_DEFAULT_MODE, bytes.size(),
                                reinterpret_cast<const std::uint8_t*>(bytes.data()), &size,
                                reinterpret_cast<std::uint8_t*>(result.data())) == BROTLI_FALSE)
        throw std::runtime_error("brotli");
    result.resize(size);
    return result;
}

Bytes brotliZeros(std::uint64_t count)
{
    const std::unique_ptr<BrotliEncoderState, decltype(&::BrotliEncoderDestroyInstance)> encoder(
        ::BrotliEncoderCreateInstance(nullptr, nullptr, nullptr), ::BrotliEncoderDestroyInstance);
    if (!encoder) throw std::runtime_error("brotli");
    ::BrotliEncoderSetParameter(encoder.get(), BROTLI_PARAM_QUALITY, 2);
    const std::vector<std::uint8_t> zeros(std::size_t{1} << 22U);
    std::vector<std::uint8_t> room(std::size_t{1} << 16U);
    Bytes result;
    while (::BrotliEncoderIsFinished(encoder.get()) == BROTLI_FALSE) {
        const std::size_t piece = std::min<std::uint64_t>(count, zeros.size());
        std::size_t inLeft = piece;
        const std::uint8_t* in = zeros.data();
        std::size_t outLeft = room.size();
        std::uint8_t* out = room.data();
        const auto operation = count > 0 ? BROTLI_OPERATION_PROCESS : BROTLI_OPERATION_FINISH;
        if (::BrotliEncoderCompressStream(encoder.get(), operation, &inLeft, &in, &outLeft, &out,
                                          nullptr) == BROTLI_FALSE)
            throw std::runtime_error("brotli");
        count -= piece - inLeft;
        const auto made = std::as_bytes(std::span(room).first(room.size() - outLeft));
        result.insert(result.end(), made.begin(), made.end());
    }
    return result;
}

ByteWriter woff(std::string_view version, const std::vector<TableBytes>& tables)
{
    constexpr std::size_t headerSize = 44;
    constexpr std::size_t recordSize = 20;
    std::vector<Bytes> stored;
    std::vector<std::string> names;
    std::map<std::string, int> seen;
    std::size_t end = headerSize + tables.size() * recordSize;
    for (const TableBytes& table : tables) {
        Bytes smaller = deflated(table.bytes);
        const bool isSmaller = smaller.size() < table.bytes.size();
        stored.push_back(isSmaller ? std::move(smaller) : Bytes(table.bytes));
        const int count = ++seen[table.tag];
        names.push_back(count == 1 ? table.tag : table.tag + std::to_string(count));
        end += (stored.back().size() + 3) / 4 * 4;
    }

    ByteWriter writer;
    writer.text("wOFF").mark("flavor").text(version).u32(static_cast<std::uint32_t>(end));
    writer.mark("numTables").u16(static_cast<std::uint16_t>(tables.size()));
    writer.zeros(headerSize - writer.size());
    std::size_t offset = headerSize + tables.size() * recordSize;
    for (std::size_t i = 0; i < tables.size(); ++i) {
        writer.text(tables[i].tag);
        writer.mark(names[i] + ".offset").u32(static_cast<std::uint32_t>(offset));
        writer.mark(names[i] + ".storedLength").u32(size32(stored[i]));
        writer.mark(names[i] + ".length").u32(size32(tables[i].bytes));
        writer.u32(0); // the checksum, which no reader of ours looks at
        offset += (stored[i].size() + 3) / 4 * 4;
    }
    for (std::size_t i = 0; i < tables.size(); ++i) {
        writer.mark(names[i] + ".data").bytes(stored[i]);
        padTo4(writer);
    }
    return writer;
}

ByteWriter woff2(const WOFF2Values& values)
{
    constexpr std::size_t headerSize = 48;
    Bytes plain;
    for (const auto& table : values.tables)
        plain.insert(plain.end(), table.bytes.begin(), table.bytes.end());
    const Bytes stream = brotliCompressed(plain);

    ByteWriter writer;
    writer.text("wOF2").mark("flavor").text(values.faces.empty() ? values.version : "ttcf");
    writer.u32(0).mark("numTables").u16(static_cast<std::uint16_t>(values.tables.size()));
    writer.zeros(6).mark("streamLength").u32(size32(stream));
    writer.zeros(headerSize - writer.size()).mark("directory");
    for (const auto& table : values.tables)
        woff2Record(writer, table);
    if (!values.faces.empty()) {
        writer.u32(0x00010000).mark("numFonts");
        packed16(writer, static_cast<std::uint16_t>(values.faces.size()));
        for (const auto& face : values.faces) {
            packed16(writer, static_cast<std::uint16_t>(face.tables.size()));
            writer.text(face.version);
            for (const std::uint16_t table : face.tables)
                packed16(writer, table);
        }
    }
    writer.mark("stream").bytes(stream);
    return writer;
}

Bytes dfont(const std::vector<Bytes>& fonts)
{
    constexpr std::uint32_t dataStart = 256;
    constexpr std::uint32_t typeListStart = 28;
    constexpr std::uint32_t referencesStart = 10; // from the start of the type list
    constexpr std::uint32_t referenceSize = 12;
    ByteWriter data;
    ByteWriter references;
    for (std::size_t i = 0; i < fonts.size(); ++i) {
        references.u16(static_cast<std::uint16_t>(128 + i)).u16(0xFFFF).u8(0);
        references.u24(static_cast<std::uint32_t>(data.size())).u32(0);
        data.u32(size32(fonts[i])).bytes(fonts[i]);
    }
    const auto dataSize = static_cast<std::uint32_t>(data.size());
    const std::uint32_t mapSize =
        typeListStart + referencesStart + referenceSize * static_cast<std::uint32_t>(fonts.size());

    ByteWriter header;
    header.u32(dataStart).u32(dataStart + dataSize).u32(dataSize).u32(mapSize);
    ByteWriter writer;
    writer.bytes(header.build()).zeros(dataStart - 16).bytes(data.build());
    writer.bytes(header.build()).zeros(8); // handle, file number, attributes
    writer.u16(typeListStart).u16(static_cast<std::uint16_t>(mapSize));
    writer.u16(0).text("sfnt").u16(static_cast<std::uint16_t>(fonts.size() - 1));
    writer.u16(referencesStart).bytes(references.build());
    return writer.build();
}

Bytes type1Font(const LegacyNames& names)
{
    constexpr std::uint16_t programKey = 55665;
    constexpr std::uint16_t glyphKey = 4330;
    const Bytes notdef =
        ByteWriter().u8(139).u8(248).u8(136).u8(13).u8(14).build(); // 0 500 hsbw endchar
    const Bytes glyph = encrypted(notdef, glyphKey);
    ByteWriter hidden;
    hidden.text("dup /Private 8 dict dup begin\n"
                "/RD {string currentfile exch readstring pop} executeonly def\n"
                "/ND {noaccess def} executeonly def\n"
                "/NP {noaccess put} executeonly def\n"
                "/BlueValues [] def\n"
                "/MinFeature {16 16} def\n"
                "/password 5839 def\n"
                "2 index /CharStrings 1 dict dup begin\n");
    hidden.text("/.notdef " + std::to_string(glyph.size()) + " RD ").bytes(glyph).text(" ND\n");
    hidden.text("end end readonly put noaccess put\n"
                "dup/FontName get exch definefont pop\nmark currentfile closefile\n");

    const std::string open = "%!PS-AdobeFont-1.0: " + names.postScriptName +
                             " 001.000\n11 dict begin\n"
                             "/FontInfo 7 dict dup begin\n"
                             "/version (001.000) readonly def\n"
                             "/Notice (" +
                             names.notice + ") readonly def\n/FullName (" + names.fullName +
                             ") readonly def\n/FamilyName (" + names.family +
                             ") readonly def\n/Weight (" + names.weight +
                             ") readonly def\n/ItalicAngle 0 def\n/isFixedPitch false def\n"
                             "end readonly def\n/FontName /" +
                             names.postScriptName +
                             " def\n/PaintType 0 def\n/FontType 1 def\n"
                             "/FontMatrix [0.001 0 0 0.001 0 0] readonly def\n"
                             "/Encoding StandardEncoding def\n"
                             "/FontBBox {0 0 1000 1000} readonly def\n"
                             "currentdict end\ncurrentfile eexec\n";
    const std::string close = std::string(512, '0') + "\ncleartomark\n";

    ByteWriter writer;
    pfbSegment(writer, 1, ascii(open));
    pfbSegment(writer, 2, encrypted(hidden.build(), programKey));
    pfbSegment(writer, 1, ascii(close));
    return writer.u8(0x80).u8(3).build();
}

Bytes bdfFont(const LegacyNames& names)
{
    return ascii("STARTFONT 2.1\nFONT -test-" + names.family +
                 "-bold-r-normal--8-80-75-75-c-80-iso10646-1\nSIZE 8 75 75\n"
                 "FONTBOUNDINGBOX 8 8 0 0\nSTARTPROPERTIES 6\nFAMILY_NAME \"" +
                 names.family + "\"\nWEIGHT_NAME \"" + names.weight +
                 "\"\nSLANT \"R\"\nCOPYRIGHT \"" + names.notice +
                 "\"\nFONT_ASCENT 8\nFONT_DESCENT 0\nENDPROPERTIES\nCHARS 1\nSTARTCHAR A\n"
                 "ENCODING 65\nSWIDTH 1000 0\nDWIDTH 8 0\nBBX 8 8 0 0\nBITMAP\n"
                 "18\n24\n42\n42\n7E\n42\n42\n00\nENDCHAR\nENDFONT\n");
}

std::vector<TableBytes> tablesOf(std::span<const std::byte> font)
{
    const ByteReader reader(font);
    std::vector<TableBytes> tables;
    for (std::size_t i = 0; i < reader.u16(4).value(); ++i) {
        const std::size_t record = 12 + 16 * i;
        const auto tag = reader.slice(record, 4).value();
        const auto bytes =
            reader.slice(reader.u32(record + 8).value(), reader.u32(record + 12).value()).value();
        tables.push_back({std::string(reinterpret_cast<const char*>(tag.data()), tag.size()),
                          Bytes(bytes.begin(), bytes.end())});
    }
    return tables;
}

std::string versionOf(std::span<const std::byte> font)
{
    return {reinterpret_cast<const char*>(font.data()), 4};
}

Bytes collectionOf(const std::vector<Bytes>& fonts)
{
    FontBytes collection;
    collection.collection();
    for (const Bytes& font : fonts) {
        collection.face(versionOf(font));
        for (TableBytes& table : tablesOf(font))
            collection.table(table.tag, std::move(table.bytes));
    }
    return collection.build();
}

} // namespace quillmark::test
