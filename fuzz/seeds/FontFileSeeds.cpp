#include "Seeds.h"

#include "support/FontBytes.h"

namespace quillmark::fuzz {
namespace {

using test::ascii;
using test::Bytes;
using test::ByteWriter;
using test::FontBytes;

Bytes truncated(Bytes bytes)
{
    bytes.resize(bytes.size() - bytes.size() / 4);
    return bytes;
}

/// Names of all platforms and of several ranks.
std::vector<test::NameRecord> names()
{
    return {
        {0, 3, 0, 1, test::utf16(u"Foo Unicode")},
        {1, 0, 0, 1,
         ascii("Foo \x8A"
               "pple")},
        {1, 0, 2, 4, ascii("Foo Fett")},
        {3, 1, 0x407, 1, test::utf16(u"Foo Deutsch")},
        {3, 1, 0x409, 1, test::utf16(u"Foo \U0001F600")},
        {3, 0, 0x409, 2, test::utf16(u" \u3000")},
        {3, 10, 0x409, 6, test::utf16(u"Foo-Bold")},
        {3, 1, 0x409, 13, test::utf16(u"SIL Open Font License")},
        {3, 1, 0x409, 256, test::utf16(u"Semi Bold")},
    };
}

Bytes fvar()
{
    return ByteWriter()
        .u16(1)
        .u16(0)
        .u16(16)
        .u16(2)
        .u16(1)
        .u16(20)
        .u16(2)
        .u16(10)
        .text("wght")
        .u32(100U << 16U)
        .u32(400U << 16U)
        .u32(900U << 16U)
        .u16(0)
        .u16(1)
        .u16(256)
        .u16(0)
        .u32(600U << 16U)
        .u16(0xFFFF)
        .u16(2)
        .u16(0)
        .u32(700U << 16U)
        .u16(6)
        .build();
}

FontBytes font(std::string_view version)
{
    FontBytes font;
    font.face(version);
    for (const auto& record : names())
        font.nameRecord(record);
    return font.os2({.fsType = 0x0104}).table("fvar", fvar()).table("name", ascii("short"));
}

void writeSfntSeeds()
{
    writeSeed("sfnt", "truetype", font(std::string_view("\0\1\0\0", 4)).build());
    writeSeed("sfnt", "opentype-cff", font("OTTO").build());
    writeSeed("sfnt", "apple-true", FontBytes().face("true").build());
    writeSeed("sfnt", "apple-typ1", FontBytes().face("typ1").name(4, u"Foo").build());
    writeSeed("sfnt", "collection", font("OTTO").face().name(1, u"Bar").os2({}).build());
    writeSeed("sfnt", "truncated", truncated(font("OTTO").build()));
    auto damaged = font("OTTO").writer();
    writeSeed("sfnt", "name-behind-the-end",
              damaged.overwrite32("face0.name.offset", 0xFFFFFFFF).build());
    writeSeed("sfnt", "too-many-tables", damaged.overwrite16("face0.numTables", 512).build());
    writeSeed("sfnt", "woff", ByteWriter().text("wOFF").zeros(40).build());
}

void writeNameSeeds()
{
    auto table = test::nameTable(names());
    writeSeed("name", "all-platforms", table.build());
    writeSeed("name", "truncated", truncated(table.build()));
    writeSeed("name", "empty", test::nameTable({}).build());
    writeSeed("name", "too-many-records", table.overwrite16("count", 0xFFFF).build());
    writeSeed("name", "strings-over-records", table.overwrite16("stringOffset", 0).build());
    writeSeed("name", "lone-surrogates",
              test::nameTable({{3, 1, 0x409, 1, ascii("\xD8\x3D\xD8\x3D\xDE")}}).build());
}

void writeOS2Seeds()
{
    writeSeed("os2", "version4", test::os2Table({.fsType = 0x0308}));
    writeSeed("os2", "without-vendor", test::os2Table({.version = 0, .size = 10}));
    writeSeed("os2", "too-short", test::os2Table({.size = 9}));
    writeSeed("os2", "odd-vendor", test::os2Table({.vendorID = "\xC3 \x7F"}));
}

const BareFontInfo info{"ABCDEF+Foo-Bold", "Foo Bold", "Foo", "A (nested) notice", "(c) Someone"};

void writeBareProgramSeeds()
{
    const Bytes program = test::cffProgram(info);
    writeSeed("cff", "all-names", program);
    writeSeed("cff", "truncated", truncated(program));
    writeSeed("cff", "no-names", test::cffProgram({}, {}, {}));
    writeSeed("cff", "all-kinds-of-operands",
              test::cffProgram({ascii("Foo")},
                               ascii("\x8B\xF8\x1B\xFC\x1B\x1D\x7F\xFF\xFF\xFF\x1E\xE2\xA2\x5F\x0C"
                                     "\x08\x1C\x01\x87\x02\x16\xFF\x0C"),
                               {ascii("Bar")}));
    writeSeed("type1", "all-names", test::type1Program(info));
    writeSeed("type1", "truncated", truncated(test::type1Program(info)));
    writeSeed("type1", "escapes",
              ascii("\x80\x01/FontName  /Foo def /Notice(a\\)b\\\\(c)) def /FullName ("));
}

} // namespace

void writeFontFileSeeds()
{
    writeSfntSeeds();
    writeNameSeeds();
    writeOS2Seeds();
    writeBareProgramSeeds();
}

} // namespace quillmark::fuzz
