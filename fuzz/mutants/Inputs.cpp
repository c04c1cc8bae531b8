#include "Inputs.h"

#include "Mutation.h"
#include "support/FontContainers.h"
#include "support/PDFBytes.h"
#include "support/PDFEncoders.h"
#include "support/PDFEncryption.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <initializer_list>
#include <iterator>
#include <span>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace quillmark::fuzz {
namespace {

using test::ascii;
using test::Bytes;
using test::PDFBytes;

/// The seeds of these harnesses, in an order that the file system does not decide.
std::vector<Seed> seedsOf(const std::filesystem::path& root,
                          std::initializer_list<std::string_view> harnesses)
{
    std::vector<Seed> seeds;
    for (const std::string_view harness : harnesses) {
        for (const auto& entry : std::filesystem::directory_iterator(root / harness)) {
            std::ifstream file(entry.path(), std::ios::binary);
            const std::string content{std::istreambuf_iterator<char>(file), {}};
            if (content.empty()) continue;
            seeds.push_back(
                {std::string(harness) + '-' + entry.path().filename().string(), ascii(content)});
        }
    }
    if (seeds.empty()) throw std::runtime_error("there are no seeds in " + root.string());
    std::ranges::sort(seeds, {}, &Seed::name);
    return seeds;
}

const Seed& oneOf(Random& random, const std::vector<Seed>& seeds)
{
    return random.oneOf(std::span<const Seed>(seeds));
}

/// A mutant of one of the seeds, with pieces of another one.
Mutants::Mutant changed(Random& random, const std::vector<Seed>& seeds,
                        const std::vector<std::string>& words)
{
    const Seed& seed = oneOf(random, seeds);
    const Seed& other = oneOf(random, seeds);
    return {seed.name, mutated(random, seed.bytes, other.bytes, words)};
}

/// The words of a fuzzer's dictionary: quoted, with hexadecimal escapes.
std::vector<std::string> wordsOf(const std::filesystem::path& path)
{
    std::ifstream file(path);
    std::vector<std::string> words;
    for (std::string line; std::getline(file, line);) {
        if (line.size() < 2 || line.front() != '"') continue;
        std::string word;
        for (std::size_t i = 1; i + 1 < line.size(); ++i) {
            if (line.compare(i, 2, "\\x") == 0 && i + 3 < line.size()) {
                word += static_cast<char>(std::stoi(line.substr(i + 2, 2), nullptr, 16));
                i += 3;
            } else {
                word += line[i];
            }
        }
        words.push_back(std::move(word));
    }
    if (words.empty()) throw std::runtime_error("there are no words in " + path.string());
    return words;
}

/// The tables of a plain font, each mutated as often as not, and packed anew: behind compression
/// that is sound.
Bytes packed(Random& random, const Bytes& font)
{
    std::vector<test::TableBytes> tables = test::tablesOf(font);
    const auto change = [&random](Bytes& bytes) {
        if (random.oneIn(2)) bytes = mutated(random, bytes, bytes, {});
    };
    if (random.oneIn(2)) {
        for (test::TableBytes& table : tables)
            change(table.bytes);
        return test::woff(test::trueTypeVersion, tables).build();
    }
    test::WOFF2Values values;
    for (test::TableBytes& table : tables) {
        change(table.bytes);
        values.tables.push_back({.tag = table.tag, .bytes = std::move(table.bytes)});
    }
    return test::woff2(values).build();
}

constexpr auto encryptions = std::to_array<test::Encryption>({
    test::Encryption::aesWith128Bits,
    test::Encryption::aesWith256Bits,
    test::Encryption::rc4With128Bits,
});

/// A sound document, now and then an encrypted one, with such a font program.
Bytes withProgram(Random& random, const Bytes& program)
{
    constexpr std::array keys{"FontFile", "FontFile2", "FontFile3"};
    auto pdf = test::onePage("<</Font<</A 4 0 R>>>>");
    pdf.object(4, "<</Subtype/TrueType/BaseFont/ABCDEF+Seed/FontDescriptor<</" +
                      std::string(keys[random.below(keys.size())]) + " 6 0 R>>>>");
    pdf.stream(6, "/Subtype/OpenType/Filter/FlateDecode", test::deflated(program));
    const Bytes plain = pdf.build();
    // To make a key takes longer than all else.
    if (!random.oneIn(10)) return plain;
    return test::encrypted(plain, random.oneOf(std::span<const test::Encryption>(encryptions)), "");
}

/// A document whose objects stand in a compressed stream, mutated before they were compressed.
Bytes withObjects(Random& random, const std::vector<std::string>& words)
{
    const std::vector<std::pair<int, std::string>> members{
        {1, "<</Type/Catalog/Pages 2 0 R>>"},
        {2, "<</Type/Pages/Kids[3 0 R 3 0 R]/Count 2/Resources 5 0 R>>"},
        {3, "<</Type/Page/Parent 2 0 R/Annots[7 0 R]>>"},
        {5, "<</Font<</A 6 0 R/B<</BaseFont/Direct>>>>/XObject<</X 8 0 R>>>>"},
        {6, "<</Subtype/Type0/BaseFont/Seed/DescendantFonts[<</Subtype/CIDFontType2/W[0[500 600]]"
            "/FontDescriptor<</FontFile2 8 0 R>>>>]>>"},
        {7, "<</AP<</N 8 0 R>>>>"},
    };
    std::string places;
    std::string objects;
    std::vector<int> numbers;
    for (const auto& [number, text] : members) {
        places += std::to_string(number) + ' ' + std::to_string(objects.size()) + ' ';
        objects += text + ' ';
        numbers.push_back(number);
    }
    const Bytes sound = ascii(places + objects);
    const Bytes bytes = mutated(random, sound, sound, words);
    PDFBytes pdf;
    pdf.crossReference(random.oneIn(2) ? PDFBytes::CrossReference::stream
                                       : PDFBytes::CrossReference::flatedStream);
    pdf.objectStreamAsWritten(9,
                              "/Type/ObjStm/N " + std::to_string(members.size()) + "/First " +
                                  std::to_string(places.size()) + "/Filter/FlateDecode",
                              test::deflated(bytes), numbers);
    pdf.stream(8,
               "/Subtype/Form/Resources 5 0 R/Filter/FlateDecode/DecodeParms<</Predictor 12"
               "/Columns 5>>",
               test::deflated(test::pngUp(bytes, 5)));
    return pdf.build();
}

} // namespace

FontMutants::FontMutants(const std::filesystem::path& seeds)
    : m_seeds(seedsOf(seeds, {"sfnt", "woff", "woff2", "type1", "cff"})),
      m_plain(seedsOf(seeds, {"sfnt"}))
{
    // The others are damaged, or collections.
    std::erase_if(m_plain, [](const Seed& seed) {
        return seed.name != "sfnt-truetype" && seed.name != "sfnt-opentype-cff";
    });
    m_seeds.push_back({"type1", test::type1Font()});
    m_seeds.push_back({"bdf", test::bdfFont()});
    m_seeds.push_back({"dfont", test::dfont({m_plain.front().bytes, m_plain.back().bytes})});
    m_seeds.push_back({"gzipped-bdf", test::gzipped(test::bdfFont())});
}

Mutants::Mutant FontMutants::make(std::uint64_t number) const
{
    Random random(number);
    if (!random.oneIn(4)) return changed(random, m_seeds, {});
    const Seed& seed = oneOf(random, m_plain);
    return {"packed-" + seed.name, packed(random, seed.bytes)};
}

DocumentMutants::DocumentMutants(const std::filesystem::path& seeds,
                                 const std::filesystem::path& words)
    : m_seeds(seedsOf(seeds, {"pdf"})), m_programs(seedsOf(seeds, {"sfnt", "cff", "type1"})),
      m_words(wordsOf(words))
{
}

Mutants::Mutant DocumentMutants::make(std::uint64_t number) const
{
    Random random(number);
    switch (random.below(6)) {
    case 0: {
        Mutant program = changed(random, m_programs, {});
        return {"with-" + program.name, withProgram(random, program.bytes)};
    }
    case 1:
        return {"objects", withObjects(random, m_words)};
    default:
        return changed(random, m_seeds, m_words);
    }
}

} // namespace quillmark::fuzz
