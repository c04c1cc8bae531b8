#include "pdf/ByteSource.h"

#include "support/FaultyCalls.h"
#include "support/FontBytes.h"
#include "support/ShortReads.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <iterator>
#include <span>
#include <string>

#include <sys/stat.h>

namespace quillmark::PDF {
namespace {

using test::TemporaryFolder;

constexpr std::size_t pieceSize = 16384;

std::string textOf(std::span<const std::byte> bytes)
{
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

std::string read(ByteSource& source, std::uint64_t at, std::size_t length)
{
    std::string text(length, '?');
    text.resize(source.read(at, std::as_writable_bytes(std::span(text))));
    return text;
}

/// Letters whose order is another on each page.
std::string letters(std::size_t size)
{
    std::string text(size, '\0');
    for (std::size_t i = 0; i < size; ++i)
        text[i] = static_cast<char>('a' + (i + i / 251) % 26);
    return text;
}

TEST(MemorySource, HandsOutAllFromAPlaceOn)
{
    const test::Bytes bytes = test::ascii("0123456789");
    const auto source = memorySource(bytes);
    EXPECT_EQ(source->size(), 10U);
    EXPECT_EQ(textOf(source->at(0)), "0123456789");
    EXPECT_EQ(textOf(source->at(9)), "9");
    EXPECT_EQ(textOf(source->at(10)), "");
    EXPECT_EQ(textOf(source->at(~std::uint64_t{0})), "");
    EXPECT_EQ(read(*source, 7, 2), "78");
    EXPECT_EQ(read(*source, 7, 9), "789");
    EXPECT_EQ(read(*source, 10, 1), "");
}

TEST(FileSource, HandsOutPieces)
{
    const TemporaryFolder folder;
    const std::string text = letters(2 * pieceSize + 100);
    const auto source = fileSource(folder.write("a", text));
    ASSERT_TRUE(source);
    EXPECT_EQ(source->size(), text.size());
    for (const std::size_t at : {std::size_t{0}, std::size_t{5}, pieceSize - 1, pieceSize,
                                 2 * pieceSize - 1, 2 * pieceSize, 2 * pieceSize + 99}) {
        const std::size_t end = std::min(text.size(), (at / pieceSize + 1) * pieceSize);
        EXPECT_EQ(textOf(source->at(at)), text.substr(at, end - at)) << at;
    }
    EXPECT_EQ(textOf(source->at(text.size())), "");
    EXPECT_EQ(textOf(source->at(~std::uint64_t{0})), "");
}

TEST(FileSource, HandsOutTheRightPieceHoweverManyThereAre)
{
    const TemporaryFolder folder;
    const std::string text = letters(40 * pieceSize);
    const auto source = fileSource(folder.write("a", text));
    ASSERT_TRUE(source);
    for (const std::size_t piece : {0U, 16U, 32U, 0U, 1U, 17U, 39U, 1U})
        EXPECT_EQ(textOf(source->at(piece * pieceSize)), text.substr(piece * pieceSize, pieceSize))
            << piece;
}

TEST(FileSource, ReadsAnyStretch)
{
    const TemporaryFolder folder;
    const std::string text = letters(3 * pieceSize);
    const auto source = fileSource(folder.write("a", text));
    ASSERT_TRUE(source);
    EXPECT_EQ(read(*source, 100, 2 * pieceSize), text.substr(100, 2 * pieceSize));
    EXPECT_EQ(read(*source, text.size() - 3, 10), text.substr(text.size() - 3));
    EXPECT_EQ(read(*source, text.size(), 10), "");
    EXPECT_EQ(read(*source, ~std::uint64_t{0}, 10), "");
}

TEST(FileSource, ReadsOnThroughShortAndInterruptedReads)
{
    const TemporaryFolder folder;
    const std::string text = letters(pieceSize);
    const auto source = fileSource(folder.write("a", text));
    ASSERT_TRUE(source);
    const test::ShortReads reads(3000);
    EXPECT_EQ(read(*source, 7, 5000), text.substr(7, 5000));
    EXPECT_EQ(textOf(source->at(0)), text);
}

TEST(FileSource, EndsWhereAFileWasCutMeanwhile)
{
    const TemporaryFolder folder;
    const std::string text = letters(2 * pieceSize);
    const auto path = folder.write("a", text);
    const auto source = fileSource(path);
    ASSERT_TRUE(source);
    std::filesystem::resize_file(path, pieceSize + 10);
    EXPECT_EQ(source->size(), text.size());
    EXPECT_EQ(textOf(source->at(pieceSize + 4)), text.substr(pieceSize + 4, 6));
    EXPECT_EQ(textOf(source->at(pieceSize + 10)), "");
    EXPECT_EQ(textOf(source->at(pieceSize + 11)), "");
    EXPECT_EQ(read(*source, pieceSize, 100), text.substr(pieceSize, 10));
}

std::ptrdiff_t openFiles()
{
    const std::filesystem::directory_iterator files("/proc/self/fd");
    return std::distance(begin(files), end(files));
}

TEST(FileSource, LetsGoOfItsFile)
{
    const TemporaryFolder folder;
    const auto file = folder.write("a", "text");
    const std::ptrdiff_t before = openFiles();
    auto source = fileSource(file);
    ASSERT_TRUE(source);
    EXPECT_EQ(openFiles(), before + 1);
    source.reset();
    EXPECT_EQ(openFiles(), before);
    EXPECT_FALSE(fileSource(folder.path()));
    EXPECT_EQ(openFiles(), before);
    {
        const test::FaultyCall faulty(test::Call::stat, EIO);
        EXPECT_FALSE(fileSource(file));
    }
    EXPECT_EQ(openFiles(), before);
}

TEST(FileSource, EndsWhereTheDiskFails)
{
    const TemporaryFolder folder;
    const std::string text = letters(2 * pieceSize);
    const auto source = fileSource(folder.write("a", text));
    ASSERT_TRUE(source);
    EXPECT_EQ(textOf(source->at(0)), text.substr(0, pieceSize));
    const test::FailingReads failing(EIO);
    EXPECT_EQ(textOf(source->at(pieceSize)), "");
    EXPECT_EQ(read(*source, 0, 10), "");
    EXPECT_EQ(textOf(source->at(5)), text.substr(5, pieceSize - 5)); // is still there
}

TEST(FileSource, IsOnlyOfARegularFile)
{
    const TemporaryFolder folder;
    ASSERT_EQ(::mkfifo((folder.path() / "pipe").c_str(), 0600), 0);
    for (const std::filesystem::path& path :
         {folder.path(), folder.path() / "pipe", folder.path() / "missing",
          std::filesystem::path("/dev/null")})
        EXPECT_FALSE(fileSource(path)) << path;
}

TEST(LeadingGarbage, IsSkippedUpToAHeaderInTheFirst1024Bytes)
{
    const auto skipped = [](std::size_t garbage) {
        const test::Bytes bytes = test::ascii(std::string(garbage, 'x') + "%PDF-1.7 rest");
        const auto source = skippingLeadingGarbage(memorySource(bytes));
        EXPECT_EQ(source->size(), textOf(source->at(0)).size());
        return garbage + 13 - source->size();
    };
    EXPECT_EQ(skipped(0), 0U);
    EXPECT_EQ(skipped(1), 1U);
    EXPECT_EQ(skipped(1019), 1019U);
    EXPECT_EQ(skipped(1020), 0U);
}

TEST(LeadingGarbage, MovesEveryPlace)
{
    const test::Bytes bytes = test::ascii("xxx%PDF-1.7");
    const auto source = skippingLeadingGarbage(memorySource(bytes));
    EXPECT_EQ(textOf(source->at(0)), "%PDF-1.7");
    EXPECT_EQ(textOf(source->at(7)), "7");
    EXPECT_EQ(textOf(source->at(8)), "");
    EXPECT_EQ(textOf(source->at(~std::uint64_t{0})), "");
    EXPECT_EQ(read(*source, 1, 3), "PDF");
    EXPECT_EQ(read(*source, 7, 3), "7");
    EXPECT_EQ(read(*source, 8, 3), "");
    EXPECT_EQ(read(*source, ~std::uint64_t{0}, 3), "");
}

TEST(LeadingGarbage, StaysWhereThereIsNoHeader)
{
    const test::Bytes bytes = test::ascii("no document");
    EXPECT_EQ(textOf(skippingLeadingGarbage(memorySource(bytes))->at(0)), "no document");
    EXPECT_EQ(skippingLeadingGarbage(memorySource({}))->size(), 0U);
}

} // namespace
} // namespace quillmark::PDF
