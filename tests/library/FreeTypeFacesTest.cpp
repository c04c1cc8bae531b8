#include "library/FreeTypeFaces.h"

#include "CountingSource.h"
#include "Fonts.h"
#include "Tables.h"
#include "library/Limits.h"
#include "support/FontContainers.h"

#include <gmock/gmock.h>

#include <fstream>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

namespace quillmark {
namespace {

using test::Bytes;
using test::CountingSource;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Key;
using testing::Le;
using testing::Not;
using testing::Pair;
using testing::SizeIs;

std::vector<PlatformFont> read(const Bytes& bytes, Faces which = Faces::all)
{
    return FreeTypeFaces::faces(MemorySource(bytes), which);
}

/// A real font, which FreeType accepts: one that is made of names only is none to it.
Bytes dejaVu()
{
    std::ifstream file("/usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf", std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    EXPECT_FALSE(text.empty()) << "fonts-dejavu-core is not installed";
    return test::ascii(text);
}

TEST(FreeTypeFaces, AType1FontHasTheNamesOfItsProgram)
{
    const auto faces = read(test::type1Font());
    ASSERT_THAT(faces, SizeIs(1));
    EXPECT_EQ(faces[0].index, 0U);
    EXPECT_EQ(faces[0].format, FontFormat::postScript);
    EXPECT_FALSE(faces[0].name);
    EXPECT_FALSE(faces[0].os2);
    EXPECT_THAT(faces[0].names,
                ElementsAre(Pair(0, "Copyright of the legacy font"), Pair(1, "Legacy Font"),
                            Pair(2, "Bold"), Pair(4, "Legacy Font Bold"), Pair(6, "LegacyFont")));
}

TEST(FreeTypeFaces, Type1NamesAreTrimmedLatin1)
{
    const auto faces = read(test::type1Font({.notice = "  \xA9 Foo "}));
    ASSERT_THAT(faces, SizeIs(1));
    EXPECT_THAT(faces[0].names, Contains(Pair(0, "\u00A9 Foo")));
}

TEST(FreeTypeFaces, BlankType1NamesAreAbsent)
{
    const auto faces = read(test::type1Font({.fullName = " ", .notice = ""}));
    ASSERT_THAT(faces, SizeIs(1));
    EXPECT_THAT(faces[0].names, AllOf(Not(Contains(Key(0))), Not(Contains(Key(4)))));
}

TEST(FreeTypeFaces, ABitmapFontHasFamilyStyleAndCopyright)
{
    const auto faces = read(test::bdfFont());
    ASSERT_THAT(faces, SizeIs(1));
    EXPECT_EQ(faces[0].format, FontFormat::bitmap);
    EXPECT_THAT(faces[0].names, ElementsAre(Pair(0, "Copyright of the legacy font"),
                                            Pair(1, "Legacy Font"), Pair(2, "Bold")));
}

TEST(FreeTypeFaces, ABitmapFontWithoutACopyrightHasNone)
{
    const Bytes font = test::bdfFont();
    std::string text(reinterpret_cast<const char*>(font.data()), font.size());
    const std::size_t line = text.find("COPYRIGHT");
    text.erase(line, text.find('\n', line) + 1 - line);
    text.replace(text.find("PROPERTIES 6"), 12, "PROPERTIES 5");
    const auto faces = read(test::ascii(text));
    ASSERT_THAT(faces, SizeIs(1));
    EXPECT_THAT(faces[0].names, AllOf(Contains(Pair(1, "Legacy Font")), Not(Contains(Key(0)))));
}

TEST(FreeTypeFaces, AGzippedFileThatIsDamagedHasNone)
{
    Bytes font = test::gzipped(test::bdfFont());
    font.resize(font.size() / 2);
    EXPECT_THAT(read(font), IsEmpty());
    EXPECT_THAT(read(test::ascii("\x1F\x8B garbage")), IsEmpty());
}

TEST(FreeTypeFaces, AGzippedBitmapFontIsReadLikeAPlainOne)
{
    const auto faces = read(test::gzipped(test::bdfFont()));
    ASSERT_THAT(faces, SizeIs(1));
    EXPECT_EQ(faces[0].format, FontFormat::bitmap);
    EXPECT_THAT(faces[0].names, Contains(Pair(1, "Legacy Font")));
}

TEST(FreeTypeFaces, OtherCompressionIsNotUnpacked)
{
    EXPECT_THAT(read(test::gzipped(test::gzipped(test::bdfFont()))), IsEmpty());
    EXPECT_THAT(read(test::ascii("\x1F\x9D\x90 compress")), IsEmpty());
    EXPECT_THAT(read(test::ascii("BZh91AY&SY")), IsEmpty());
}

TEST(FreeTypeFaces, AGzippedFileOfMoreThan64MiBIsNoFont)
{
    static_assert(Limits::freeTypeFileBytes == 64U << 20U);
    // Comments between the properties make it long.
    Bytes font = test::bdfFont();
    const Bytes end = test::ascii("\n");
    font.resize(64U << 20U, std::byte{'\n'});
    EXPECT_THAT(read(test::gzipped(font)), SizeIs(1));
    font.push_back(std::byte{'\n'});
    EXPECT_THAT(read(test::gzipped(font)), IsEmpty());
    EXPECT_THAT(read(font), IsEmpty());
}

TEST(FreeTypeFaces, ADfontGivesTheTablesOfEveryFace)
{
    const auto faces = read(test::dfont({dejaVu(), dejaVu()}));
    EXPECT_THAT(test::summaries(faces), ElementsAre("0 format 3 name DejaVu Sans fsType 0",
                                                    "1 format 3 name DejaVu Sans fsType 0"));
}

TEST(FreeTypeFaces, ATableMayBeOneByteLong)
{
    test::FontBytes font;
    font.face(test::versionOf(dejaVu()));
    for (auto& table : test::tablesOf(dejaVu()))
        font.table(table.tag, table.tag == "OS/2" ? Bytes(1, std::byte{7}) : table.bytes);
    const auto faces = read(test::dfont({font.build()}));
    ASSERT_THAT(faces, SizeIs(1));
    EXPECT_EQ(faces[0].os2, Bytes(1, std::byte{7}));
}

TEST(FreeTypeFaces, VariableFacesAreThoseWithAnFvarTable)
{
    EXPECT_THAT(read(test::dfont({dejaVu()}), Faces::variable), IsEmpty());
    EXPECT_THAT(read(test::type1Font(), Faces::variable), IsEmpty());
    test::FontBytes font;
    font.face(test::versionOf(dejaVu()));
    for (auto& table : test::tablesOf(dejaVu()))
        font.table(table.tag, table.bytes);
    font.table("fvar", Bytes(20));
    EXPECT_THAT(test::summaries(read(test::dfont({font.build()}), Faces::variable)),
                ElementsAre("0 format 3 name DejaVu Sans fsType 0 fvar 20"));
}

TEST(FreeTypeFaces, OtherFilesHaveNone)
{
    EXPECT_THAT(read({}), IsEmpty());
    EXPECT_THAT(read(test::ascii("text that is no font at all")), IsEmpty());
    EXPECT_THAT(read(Bytes(100000)), IsEmpty());
}

TEST(FreeTypeFaces, ATruncatedFontDoesNoHarm)
{
    for (const Bytes& whole :
         {test::type1Font(), test::bdfFont(), test::dfont({test::fontFile(u"A", u"A")})})
        for (std::size_t size = 0; size < whole.size(); size += 7)
            EXPECT_THAT(read(Bytes(whole.begin(), whole.begin() + static_cast<long>(size))),
                        SizeIs(Le(1U)));
}

TEST(FreeTypeFaces, ASegmentThatIsSaidToHaveGigabytesIsNoFont)
{
    Bytes font = test::type1Font();
    ASSERT_THAT(read(font), SizeIs(1));
    font.at(5) = std::byte{0xBB}; // the highest byte of the first segment's length
    EXPECT_THAT(read(font), IsEmpty());
}

TEST(FreeTypeFaces, FreeTypeReadsABoundedAmount)
{
    // A suitcase with 2,000 references to one font of a mebibyte, which is read for each of them.
    test::FontBytes font;
    font.face(test::versionOf(dejaVu()));
    for (auto& table : test::tablesOf(dejaVu()))
        font.table(table.tag, table.bytes);
    font.table("pad ", Bytes(1U << 20U));
    const Bytes large = font.build();
    Bytes suitcase = test::dfont({large});
    // The one reference is the last twelve bytes; repeat it, and correct the lengths.
    const Bytes reference(suitcase.end() - 12, suitcase.end());
    for (int i = 1; i < 2000; ++i)
        suitcase.insert(suitcase.end(), reference.begin(), reference.end());
    const std::size_t map = 256 + 4 + large.size();
    const auto write16 = [&suitcase](std::size_t at, std::size_t value) {
        suitcase.at(at) = static_cast<std::byte>(value >> 8U);
        suitcase.at(at + 1) = static_cast<std::byte>(value & 0xFFU);
    };
    for (const std::size_t header : {std::size_t{0}, map})
        write16(header + 14, 28 + 10 + 12 * 2000);
    write16(map + 28 + 6, 1999);

    const CountingSource source(suitcase);
    const auto faces = FreeTypeFaces::faces(source, Faces::all);
    EXPECT_GT(faces.size(), 50U);
    EXPECT_LT(faces.size(), 500U);
    EXPECT_LE(source.bytesRead, Limits::freeTypeReadBytes + 100);
}

TEST(FreeTypeFaces, MayBeReadOnSeveralThreads)
{
    const Bytes font = test::type1Font();
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&font] {
            for (int i = 0; i < 50; ++i)
                EXPECT_THAT(read(font), SizeIs(1));
        });
    for (std::thread& thread : threads)
        thread.join();
}

} // namespace
} // namespace quillmark
