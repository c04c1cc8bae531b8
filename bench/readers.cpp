// The readers of core/fontfile and the text functions below them, over fonts made here and, when
// QUILLMARK_BENCH_FONTS names a folder, over the .ttf, .otf and .ttc files in it and below.

#include "fontfile/CFF.h"
#include "fontfile/FontFacts.h"
#include "fontfile/NameTable.h"
#include "fontfile/OS2Info.h"
#include "fontfile/SFNT.h"
#include "fontfile/Type1.h"
#include "fontfile/VariationInstances.h"
#include "support/FontBytes.h"
#include "text/Case.h"
#include "text/Collation.h"
#include "text/FamilyKey.h"
#include "text/Printable.h"
#include "text/Trim.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

using namespace quillmark;
using test::Bytes;
using test::FontBytes;
using test::NameRecord;

const std::u16string licenseText =
    u"This Font Software is licensed under the SIL Open Font License, Version 1.1. This license is "
    u"available with a FAQ at: https://scripts.sil.org/OFL";

/// The names that an ordinary free font has, for Windows and, as far as it goes, Macintosh.
std::vector<NameRecord> ordinaryNames()
{
    const std::vector<std::pair<std::uint16_t, std::u16string>> texts{
        {0, u"Copyright 2020 The Example Project Authors (https://example.org/example)"},
        {1, u"Example Sans"},
        {2, u"Bold Italic"},
        {3, u"2.003;EXMP;ExampleSans-BoldItalic"},
        {4, u"Example Sans Bold Italic"},
        {5, u"Version 2.003; ttfautohint (v1.8.3)"},
        {6, u"ExampleSans-BoldItalic"},
        {7, u"Example is a trademark of the Example Foundry."},
        {8, u"The Example Foundry"},
        {9, u"A. Designer, B. Designer"},
        {11, u"https://example.org"},
        {12, u"https://example.org/designers"},
        {13, licenseText},
        {14, u"https://scripts.sil.org/OFL"},
    };
    std::vector<NameRecord> records;
    for (const auto& [id, text] : texts)
        records.push_back({1, 0, 0, id, test::ascii(std::string(text.begin(), text.end()))});
    for (const auto& [id, text] : texts)
        records.push_back({3, 1, 0x409, id, test::utf16(text)});
    return records;
}

/// Names for Windows in `languages` languages, of which English is the last.
std::vector<NameRecord> translatedNames(int languages)
{
    std::vector<NameRecord> records;
    for (int language = languages - 1; language >= 0; --language)
        for (const NameRecord& record : ordinaryNames())
            if (record.platform == 3) {
                records.push_back(record);
                records.back().language = static_cast<std::uint16_t>(0x409 + language);
            }
    return records;
}

std::vector<NameRecord> chineseNames()
{
    std::vector<NameRecord> records = ordinaryNames();
    for (NameRecord& record : records)
        if (record.platform == 3) record.bytes = test::utf16(u"方正书宋_GBK 版权所有 北京");
    return records;
}

Bytes table(const std::vector<NameRecord>& records)
{
    return test::nameTable(records).build();
}

/// A table of as many records as there can be, each for its own identifier and for a blank text of
/// one byte.
Bytes fullTable()
{
    test::ByteWriter writer;
    writer.u16(0).u16(65535).u16(0);
    for (std::uint32_t id = 65535; id > 0; --id)
        writer.u16(1).u16(0).u16(0).u16(static_cast<std::uint16_t>(id)).u16(1).u16(0);
    return writer.build();
}

Bytes ordinaryFont()
{
    FontBytes font;
    font.face().os2({.fsType = 8});
    for (const NameRecord& record : ordinaryNames())
        font.nameRecord(record);
    for (const char* tag : {"GDEF", "GPOS", "GSUB", "cmap", "glyf", "head", "hhea", "hmtx", "loca",
                            "maxp", "post", "prep"})
        font.table(tag, Bytes(64));
    return font.build();
}

/// A collection of `count` faces that share one directory.
Bytes collection(std::uint32_t count)
{
    const Bytes names = table(ordinaryNames());
    test::ByteWriter writer;
    const std::uint32_t directory = 12 + 4 * count;
    writer.text("ttcf").u32(0x00010000).u32(count);
    for (std::uint32_t i = 0; i < count; ++i)
        writer.u32(directory);
    writer.text("OTTO").u16(1).zeros(6);
    writer.text("name").u32(0).u32(directory + 28).u32(static_cast<std::uint32_t>(names.size()));
    return writer.bytes(names).build();
}

void sfntFaces(benchmark::State& state, const Bytes& font)
{
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(SFNT::faces(font));
}
BENCHMARK_CAPTURE(sfntFaces, ordinary, ordinaryFont());
BENCHMARK_CAPTURE(sfntFaces, collectionOf9999, collection(9999));

void nameStrings(benchmark::State& state, const Bytes& names)
{
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(NameTable::strings(names));
}
BENCHMARK_CAPTURE(nameStrings, ordinary, table(ordinaryNames()));
BENCHMARK_CAPTURE(nameStrings, inTenLanguages, table(translatedNames(10)));
BENCHMARK_CAPTURE(nameStrings, chinese, table(chineseNames()));
BENCHMARK_CAPTURE(nameStrings, fullOfBlankRecords, fullTable());

void os2Info(benchmark::State& state, const Bytes& os2)
{
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(OS2Info::read(os2));
}
BENCHMARK_CAPTURE(os2Info, ordinary, test::os2Table({}));

const BareFontInfo bareInfo{"ABCDEF+ExampleSans-Bold", "Example Sans Bold", "Example Sans",
                            "Example is a trademark.", "Copyright 2020 The Example Project"};

void cff(benchmark::State& state, const Bytes& program)
{
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(CFF::read(program));
}
BENCHMARK_CAPTURE(cff, ordinary, test::cffProgram(bareInfo));
BENCHMARK_CAPTURE(cff, manyStrings,
                  test::cffProgram({}, {}, std::vector<Bytes>(5000, test::ascii("glyph"))));

void type1(benchmark::State& state, const Bytes& program)
{
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(Type1::read(program));
}

Bytes followedBy(Bytes program, std::string_view text, std::size_t size)
{
    while (program.size() < size)
        for (const char character : text)
            program.push_back(static_cast<std::byte>(character));
    return program;
}
BENCHMARK_CAPTURE(type1, ordinary, followedBy(test::type1Program(bareInfo), "\xD9\x11", 40000));
BENCHMARK_CAPTURE(type1, keysWithoutValues,
                  followedBy(test::ascii("/FontName "), "/FullName/FamilyName/Notice/Copyright",
                             65536));
BENCHMARK_CAPTURE(type1, slashes, followedBy(test::ascii("/FontName "), "/", 65536));

void fontFacts(benchmark::State& state, const Bytes& font)
{
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(FontFacts::read(font, "/fonts/a.ttf", FontOrigin::folder));
}
BENCHMARK_CAPTURE(fontFacts, ordinary, ordinaryFont());
BENCHMARK_CAPTURE(fontFacts, collectionOf9999, collection(9999))->Unit(benchmark::kMillisecond);

const std::string asciiText(licenseText.begin(), licenseText.end());
const std::string otherText = "Copyright \u00A9 2020. " + asciiText;

template <typename Function>
void text(benchmark::State& state, Function function, const std::string& input)
{
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(function(input));
}
const auto trim = [](const std::string& input) { return trimmed(input, TrimAlso::nul); };
BENCHMARK_CAPTURE(text, trimmedAscii, trim, asciiText);
BENCHMARK_CAPTURE(text, lowercasedAscii, lowercased, asciiText);
BENCHMARK_CAPTURE(text, lowercasedOther, lowercased, otherText);
BENCHMARK_CAPTURE(text, familyKeyAscii, familyKey, std::string("Example Sans Condensed"));
BENCHMARK_CAPTURE(text, familyKeyOther, familyKey, std::string("\u65B9\u6B63 Sans Condensed"));
BENCHMARK_CAPTURE(text, printableAscii, printable, asciiText);
BENCHMARK_CAPTURE(text, printableOther, printable, otherText);

void collatorMade(benchmark::State& state)
{
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(Collator("en"));
}
BENCHMARK(collatorMade);

void collatorCompares(benchmark::State& state)
{
    const Collator collator("en");
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(collator.compare("Example Sans 10", "Example Sans 9"));
}
BENCHMARK(collatorCompares);

std::vector<Bytes> realFonts()
{
    std::vector<Bytes> fonts;
    const char* folder = std::getenv("QUILLMARK_BENCH_FONTS");
    if (!folder) return fonts;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        const auto extension = entry.path().extension();
        if (extension != ".ttf" && extension != ".otf" && extension != ".ttc") continue;
        std::ifstream file(entry.path(), std::ios::binary);
        const std::vector<char> characters{std::istreambuf_iterator<char>(file), {}};
        fonts.push_back(test::ascii({characters.data(), characters.size()}));
    }
    return fonts;
}

void realFontFacts(benchmark::State& state)
{
    const std::vector<Bytes> fonts = realFonts();
    if (fonts.empty()) {
        state.SkipWithError("QUILLMARK_BENCH_FONTS names no folder with fonts");
        return;
    }
    std::size_t faces = 0;
    for ([[maybe_unused]] auto _ : state)
        for (const Bytes& font : fonts)
            faces += FontFacts::read(font, "/fonts/a.ttf", FontOrigin::folder).size();
    state.counters["time per face"] = benchmark::Counter(
        static_cast<double>(faces), benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
    state.counters["files"] = static_cast<double>(fonts.size());
}
BENCHMARK(realFontFacts);

} // namespace
